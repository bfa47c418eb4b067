#include "guest_window.h"

#include "commands.h"

// What the program hands to a view for the view's own use.
struct IExClass1 {};

namespace {

IExClass1 ViewServices;

HMENU CreateViewMenu() {
  const HMENU popup = CreatePopupMenu();
  AppendMenuW(popup, MF_STRING, IDM_VIEW_CHANGED, L"&Modifiée ?");
  AppendMenuW(popup, MF_STRING, IDM_VIEW_CLEAR, L"&Oublier les modifications");
  const HMENU bar = CreateMenu();
  AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(popup), L"&Vue");
  return bar;
}

}  // namespace

TGuestWindow::TGuestWindow(TLibrary& library, TGuest guest, HWND owner)
    : FLibrary(library), FGuest(guest) {
  WNDCLASSEXW windowClass = {};
  windowClass.cbSize = sizeof windowClass;
  windowClass.lpfnWndProc = WindowProc;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  windowClass.lpszClassName = ZEF_GUEST_WINDOW_CLASS;
  RegisterClassExW(&windowClass);

  const bool view = guest == TGuest::View;
  CreateWindowExW(WS_EX_CONTROLPARENT, ZEF_GUEST_WINDOW_CLASS, view ? L"Vue" : L"Boîte non modale",
                  WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN, 0, 0, 0, 0, owner,
                  view ? CreateViewMenu() : nullptr, windowClass.hInstance, this);
  if (!FHandle) return;
  CreateGuest();
  ShowWindow(FHandle, SW_SHOW);
}

TGuestWindow::~TGuestWindow() {
  if (FHandle) DestroyWindow(FHandle);
}

void TGuestWindow::CreateGuest() {
  if (FGuest == TGuest::View) {
    const HWND view = FLibrary.CreateView(FHandle, FDialog);
    if (!view) return;
    FLibrary.GiveToView(FDialog, &ViewServices);
    FitAround(view);
    FLibrary.ShowView(FDialog);
  } else {
    FDialog = FLibrary.OpenDialog(FHandle);
    FitAround(GetWindow(FHandle, GW_CHILD));
  }
}

void TGuestWindow::FitAround(HWND guest) {
  RECT bounds;
  if (!GetWindowRect(guest, &bounds)) return;
  // As wide a margin on the far sides as the guest left on the near ones.
  POINT corner = {bounds.left, bounds.top};
  ScreenToClient(FHandle, &corner);
  RECT frame = {0, 0, bounds.right - bounds.left + 2 * corner.x,
                bounds.bottom - bounds.top + 2 * corner.y};
  AdjustWindowRectEx(&frame, static_cast<DWORD>(GetWindowLongW(FHandle, GWL_STYLE)),
                     GetMenu(FHandle) != nullptr, WS_EX_CONTROLPARENT);
  RECT owner;
  GetWindowRect(GetWindow(FHandle, GW_OWNER), &owner);
  SetWindowPos(FHandle, nullptr, owner.left + 60, owner.top + 90, frame.right - frame.left,
               frame.bottom - frame.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

void TGuestWindow::ShowChanged() {
  SetWindowTextW(FHandle,
                 FLibrary.ViewChanged(FDialog) ? L"Vue - modifiée" : L"Vue - non modifiée");
}

LRESULT CALLBACK TGuestWindow::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    auto* self =
        static_cast<TGuestWindow*>(reinterpret_cast<const CREATESTRUCTW*>(lParam)->lpCreateParams);
    self->FHandle = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
  }
  auto* self = reinterpret_cast<TGuestWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (!self) return DefWindowProcW(window, message, wParam, lParam);
  switch (message) {
    case WM_COMMAND:
      if (LOWORD(wParam) == IDM_VIEW_CLEAR) self->FLibrary.ClearViewChanged(self->FDialog);
      self->ShowChanged();
      return 0;
    case WM_SETFOCUS:
      // The guest was made while this window was hidden, and did not take the focus then.
      SetFocus(GetWindow(self->FHandle, GW_CHILD));
      return 0;
    case WM_DESTROY:
      // A view goes with this window; a dialog is ours until we give it back.
      if (self->FGuest == TGuest::Dialog) self->FLibrary.FreeDialog(self->FDialog);
      self->FHandle = nullptr;
      return 0;
    default:
      return DefWindowProcW(window, message, wParam, lParam);
  }
}
