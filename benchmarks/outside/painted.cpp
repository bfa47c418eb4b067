#include "painted.h"

#include <algorithm>
#include <string>
#include <vector>

#include "bench.h"

namespace {

constexpr wchar_t kBareClass[] = L"BareDialog";

const wchar_t* awaitedClass = nullptr;
double paintedAt = 0;
std::function<void(HWND)> whenPainted;

/// A control as the system made it.
struct TNativeControl {
  std::wstring Class, Text;
  LONG Style, ExStyle;
  RECT Place;
};

RECT dialogPlace;
std::vector<TNativeControl> dialogControls;

void NoteControls(HWND dialog) {
  GetWindowRect(dialog, &dialogPlace);
  dialogControls.clear();
  for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    wchar_t name[64], text[256] = L"";
    GetClassNameW(child, name, 64);
    GetWindowTextW(child, text, 256);
    TNativeControl control{
        name, text, GetWindowLongW(child, GWL_STYLE), GetWindowLongW(child, GWL_EXSTYLE), {}};
    GetWindowRect(child, &control.Place);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&control.Place), 2);
    dialogControls.push_back(std::move(control));
  }
}

/// Comes after the dialog's own messages, has it paint, and closes it.
LRESULT CALLBACK WaiterProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_APP) return DefWindowProcW(window, message, wParam, lParam);
  const HWND awaited = FindWindowW(awaitedClass, nullptr);
  if (!awaited || !IsWindowVisible(awaited)) {
    PostMessageW(window, WM_APP, 0, 0);
    return 0;
  }
  RedrawWindow(awaited, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  paintedAt = Seconds();
  if (whenPainted) whenPainted(awaited);
  if (std::wstring(awaitedClass) != kBareClass) NoteControls(awaited);
  PostMessageW(awaited, WM_CLOSE, 0, 0);
  return 0;
}

HWND Waiter() {
  WNDCLASSW info{};
  info.lpfnWndProc = WaiterProc;
  info.hInstance = GetModuleHandleW(nullptr);
  info.lpszClassName = L"Waiter";
  RegisterClassW(&info);
  static const HWND waiter =
      CreateWindowW(L"Waiter", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, info.hInstance, nullptr);
  return waiter;
}

LRESULT CALLBACK BareProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_CLOSE) {
    DestroyWindow(window);
    PostQuitMessage(0);
    return 0;
  }
  // What the controls would have their parent draw.
  if (message == WM_DRAWITEM || message == WM_MEASUREITEM) return TRUE;
  return DefDlgProcW(window, message, wParam, lParam);
}

/// A native dialog made of the same controls as the last one that was painted.
void OpenBareDialog() {
  WNDCLASSW info{};
  info.lpfnWndProc = BareProc;
  info.cbWndExtra = DLGWINDOWEXTRA;
  info.hInstance = GetModuleHandleW(nullptr);
  info.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  info.lpszClassName = kBareClass;
  RegisterClassW(&info);
  const HWND dialog = CreateWindowExW(
      WS_EX_CONTROLPARENT, kBareClass, L"", WS_POPUP | WS_CAPTION | WS_SYSMENU, dialogPlace.left,
      dialogPlace.top, dialogPlace.right - dialogPlace.left, dialogPlace.bottom - dialogPlace.top,
      nullptr, nullptr, info.hInstance, nullptr);
  for (const auto& [name, text, style, exStyle, place] : dialogControls) {
    const HWND control =
        CreateWindowExW(static_cast<DWORD>(exStyle), name.c_str(), text.c_str(),
                        static_cast<DWORD>(style), place.left, place.top, place.right - place.left,
                        place.bottom - place.top, dialog, nullptr, info.hInstance, nullptr);
    if (control)
      SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)),
                   FALSE);
  }
  ShowWindow(dialog, SW_SHOW);
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (IsDialogMessageW(dialog, &message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

}  // namespace

double Seconds() {
  LARGE_INTEGER count;
  LARGE_INTEGER frequency;
  QueryPerformanceCounter(&count);
  QueryPerformanceFrequency(&frequency);
  return static_cast<double>(count.QuadPart) / static_cast<double>(frequency.QuadPart);
}

double SecondsToPainted(const wchar_t* className, const std::function<void()>& open,
                        const std::function<void(HWND)>& act) {
  awaitedClass = className;
  whenPainted = act;
  PostMessageW(Waiter(), WM_APP, 0, 0);
  const double start = Seconds();
  open();
  return paintedAt - start;
}

void PrintAgainstBare(const std::string& subject, int rounds, const wchar_t* className,
                      const std::function<void()>& open) {
  // The first opening loads what all the others find.
  SecondsToPainted(className, open);
  double ours = 1e9;
  double bare = 1e9;
  for (int i = 0; i < rounds; ++i) {
    ours = std::min(ours, SecondsToPainted(className, open));
    bare = std::min(bare, SecondsToPainted(kBareClass, OpenBareDialog));
  }
  PrintRow(subject + "/ours", rounds, ours * 1e3, "ms");
  PrintRow(subject + "/bare_dialog", rounds, bare * 1e3, "ms");
}
