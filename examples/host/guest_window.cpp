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
  const bool view = guest == TGuest::View;
  if (!CreateHandle({ZEF_GUEST_WINDOW_CLASS, view ? L"Vue" : L"Boîte non modale",
                     WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN, WS_EX_CONTROLPARENT,
                     owner, view ? CreateViewMenu() : nullptr},
                    {}, {})) {
    return;
  }
  CreateGuest();
  ShowWindow(Handle(), SW_SHOW);
}

TGuestWindow::~TGuestWindow() { DestroyHandle(); }

void TGuestWindow::CreateGuest() {
  if (FGuest == TGuest::View) {
    const HWND view = FLibrary.CreateView(Handle(), FDialog);
    if (!view) return;
    FLibrary.GiveToView(FDialog, &ViewServices);
    FitAround(view);
    FLibrary.ShowView(FDialog);
  } else {
    FDialog = FLibrary.OpenDialog(Handle());
    FitAround(GetWindow(Handle(), GW_CHILD));
  }
}

void TGuestWindow::FitAround(HWND guest) {
  RECT bounds;
  if (!GetWindowRect(guest, &bounds)) return;
  // As wide a margin on the far sides as the guest left on the near ones.
  POINT corner = {bounds.left, bounds.top};
  ScreenToClient(Handle(), &corner);
  RECT frame = {0, 0, bounds.right - bounds.left + 2 * corner.x,
                bounds.bottom - bounds.top + 2 * corner.y};
  AdjustWindowRectEx(&frame, static_cast<DWORD>(GetWindowLongW(Handle(), GWL_STYLE)),
                     GetMenu(Handle()) != nullptr, WS_EX_CONTROLPARENT);
  RECT owner;
  GetWindowRect(GetWindow(Handle(), GW_OWNER), &owner);
  SetWindowPos(Handle(), nullptr, owner.left + 60, owner.top + 90, frame.right - frame.left,
               frame.bottom - frame.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

void TGuestWindow::ShowChanged() {
  SetWindowTextW(Handle(),
                 FLibrary.ViewChanged(FDialog) ? L"Vue - modifiée" : L"Vue - non modifiée");
}

LRESULT TGuestWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_COMMAND:
      if (LOWORD(wParam) == IDM_VIEW_CLEAR) FLibrary.ClearViewChanged(FDialog);
      ShowChanged();
      return 0;
    case WM_SETFOCUS:
      // The guest was made while this window was hidden, and did not take the focus then.
      SetFocus(GetWindow(Handle(), GW_CHILD));
      return 0;
    case WM_DESTROY:
      // A view goes with this window; a dialog is ours until we give it back.
      if (FGuest == TGuest::Dialog) FLibrary.FreeDialog(FDialog);
      return 0;
    default:
      return DefWindowProcW(Handle(), message, wParam, lParam);
  }
}
