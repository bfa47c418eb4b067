#include "forms/window_class.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "forms/application.h"
#include "platform/kept.h"

namespace {

struct TRegistered {
  std::vector<std::wstring> Names;
};

std::vector<std::wstring>& Registered() { return Kept<TRegistered>().Names; }

bool IsOurs(HWND window) {
  return GetClassLongPtrW(window, GCLP_HMODULE) ==
         reinterpret_cast<ULONG_PTR>(TApplication::Instance());
}

/// Back to the procedure of its class, under all that was put before it.
BOOL CALLBACK Strip(HWND window, LPARAM /*unused*/) {
  const auto plain = IsOurs(window) ? reinterpret_cast<LONG_PTR>(DefWindowProcW)
                                    : static_cast<LONG_PTR>(GetClassLongPtrW(window, GCLP_WNDPROC));
  SetWindowLongPtrW(window, GWLP_WNDPROC, plain);
  return TRUE;
}

BOOL CALLBACK CollectOurs(HWND window, LPARAM found) {
  // Tooltips are of a class of the system's, and belong to the host's window around a form.
  const bool madeHere = GetWindowLongPtrW(window, GWLP_HINSTANCE) ==
                        reinterpret_cast<LONG_PTR>(TApplication::Instance());
  if (madeHere || IsOurs(window)) reinterpret_cast<std::vector<HWND>*>(found)->push_back(window);
  return TRUE;
}

BOOL CALLBACK CollectOursWithin(HWND window, LPARAM found) {
  CollectOurs(window, found);
  EnumChildWindows(window, CollectOurs, found);
  return TRUE;
}

}  // namespace

void RegisterWindowClass(const std::wstring& name, WNDPROC proc, int extra, HBRUSH background) {
  if (std::ranges::find(Registered(), name) != Registered().end()) return;
  WNDCLASSEXW info{};
  info.cbSize = sizeof info;
  info.style = CS_DBLCLKS;
  info.lpfnWndProc = proc;
  info.cbWndExtra = extra;
  info.hInstance = TApplication::Instance();
  info.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
  info.hbrBackground = background;
  info.lpszClassName = name.c_str();
  // One that an earlier load left behind, since it had windows then, points into the code of that
  // load.
  if (!RegisterClassExW(&info) &&
      (!UnregisterClassW(info.lpszClassName, info.hInstance) || !RegisterClassExW(&info))) {
    throw std::runtime_error("window class refused");
  }
  Registered().push_back(name);
}

void UnregisterWindowClasses() {
  for (const auto& name : Registered()) UnregisterClassW(name.c_str(), TApplication::Instance());
  Registered().clear();
}

void LeaveWindows(DWORD thread) {
  std::vector<HWND> windows;
  EnumThreadWindows(thread, CollectOursWithin, reinterpret_cast<LPARAM>(&windows));
  for (const HWND window : windows) {
    EnumChildWindows(window, Strip, 0);
    Strip(window, 0);
  }
  const bool here = thread == GetCurrentThreadId();
  for (const HWND window : windows) {
    if (here) {
      DestroyWindow(window);
    } else {
      PostMessageW(window, WM_CLOSE, 0, 0);
    }
  }
}
