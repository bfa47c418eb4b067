#include "forms/window_class.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <vector>

#include "forms/application.h"
#include "platform/kept.h"
#include "platform/window_list.h"

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

bool IsMadeHere(HWND window) {
  // Tooltips are of a class of the system's, and belong to the host's window around a form.
  return IsOurs(window) || GetWindowLongPtrW(window, GWLP_HINSTANCE) ==
                               reinterpret_cast<LONG_PTR>(TApplication::Instance());
}

bool IsRegisteredAs(const WNDCLASSEXW& wanted) {
  WNDCLASSEXW found{};
  found.cbSize = sizeof found;
  return GetClassInfoExW(wanted.hInstance, wanted.lpszClassName, &found) &&
         found.lpfnWndProc == wanted.lpfnWndProc && found.cbWndExtra == wanted.cbWndExtra;
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
  // An earlier load leaves a class behind that has windows then. Those are stripped of our code,
  // and the class serves while they wait for their thread to close them.
  if (!RegisterClassExW(&info) &&
      (!UnregisterClassW(info.lpszClassName, info.hInstance) || !RegisterClassExW(&info)) &&
      !IsRegisteredAs(info)) {
    throw std::runtime_error("window class refused");
  }
  Registered().push_back(name);
}

void UnregisterWindowClasses() {
  for (const auto& name : Registered()) UnregisterClassW(name.c_str(), TApplication::Instance());
  Registered().clear();
}

bool LeaveWindows(DWORD thread) {
  std::vector<HWND> windows;
  for (const HWND top : WindowsOfThread(thread)) {
    if (IsMadeHere(top)) windows.push_back(top);
    std::ranges::copy_if(WindowsWithin(top), std::back_inserter(windows), IsMadeHere);
  }
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
  return !windows.empty();
}
