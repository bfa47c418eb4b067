#include "forms/buttons.h"

#include <windows.h>

#include <commctrl.h>

#include "forms/form.h"
#include "forms/theme.h"
#include "platform/code_page.h"

// ---- button ----

TControl::TWindowParams TButton::WindowParams() const {
  return {WC_BUTTONW, BS_PUSHBUTTON | TabStopStyle(), 0};
}

void TButton::SetDefault() { Form().SetDefaultButton(*this); }

void TButton::Click() {
  if (Enabled()) HandleCommand(BN_CLICKED);
}

void TButton::HandleCommand(WORD code) {
  if (code != BN_CLICKED) return;
  if (ModalResult() != mrNone) Form().SetModalResult(ModalResult());
  try {
    Raise(OnClick);
  } catch (...) {
    // What was to be done has not been: the dialog stays, unless the user wants to leave it anyway.
    if (ModalResult() != mrCancel) Form().SetModalResult(mrNone);
    throw;
  }
}

// ---- bitmap button ----

TControl::TWindowParams TBitBtn::WindowParams() const {
  auto params = TButton::WindowParams();
  // The system greys a picture to a blot, so a button that is all picture draws itself; its text is
  // then for screen readers only.
  if (AllPicture()) params.Style |= BS_OWNERDRAW;
  return params;
}

void TBitBtn::Created() {
  if (AllPicture()) SetWindowTextW(Handle(), HintWide().c_str());
  DpiChanged(Form().Dpi());
}

void TBitBtn::DpiChanged(int dpi) {
  const auto glyph = Word("glyph", "");
  if (glyph.empty()) return;
  TImageList images({glyph}, dpi);
  if (!AllPicture()) {
    BUTTON_IMAGELIST list{};
    list.himl = images.Handle();
    list.margin = {Form().Scaled(4), 0, 0, 0};
    list.uAlign = BUTTON_IMAGELIST_ALIGN_LEFT;
    // Hosts without the newer common controls refuse this: the caption then stands alone.
    Send(BCM_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(&list));
  }
  FImages = std::move(images);
}

void TBitBtn::Draw(const DRAWITEMSTRUCT& item) const {
  const bool pressed = (item.itemState & ODS_SELECTED) != 0;
  RECT area = item.rcItem;
  DrawButtonFrame(Handle(), item.hDC, area, pressed, Enabled());
  int width = 0;
  int height = 0;
  CommonControls().ImageList_GetIconSize(FImages.Handle(), &width, &height);
  const int shift = pressed ? 1 : 0;
  FImages.Draw(0, item.hDC, (area.left + area.right - width) / 2 + shift,
               (area.top + area.bottom - height) / 2 + shift, Enabled());
  if (item.itemState & ODS_FOCUS) {
    InflateRect(&area, -3, -3);
    DrawFocusRect(item.hDC, &area);
  }
}

LRESULT TBitBtn::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  // To the system a button that draws itself is no push button: Enter would go past it to the
  // default one, and the style of a default button would take its picture away.
  if (AllPicture() && message == WM_GETDLGCODE) {
    return DLGC_BUTTON | (FLooksDefault ? DLGC_DEFPUSHBUTTON : DLGC_UNDEFPUSHBUTTON);
  }
  if (AllPicture() && message == BM_SETSTYLE) {
    FLooksDefault = (wParam & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
    InvalidateRect(window, nullptr, TRUE);
    return 0;
  }
  return TButton::WindowProc(window, message, wParam, lParam);
}

// ---- speed button ----

LRESULT TSpeedButton::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto inside = [&] {
    RECT client{};
    GetClientRect(window, &client);
    const POINT at{static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
    return PtInRect(&client, at) != FALSE;
  };
  switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      FPressed = true;
      SetCapture(window);
      Send(BM_SETSTATE, TRUE);
      return 0;
    case WM_MOUSEMOVE:
      if (!FPressed) break;
      Send(BM_SETSTATE, inside());
      return 0;
    case WM_LBUTTONUP:
      if (!FPressed) break;
      FPressed = false;
      ReleaseCapture();
      Send(BM_SETSTATE, FALSE);
      if (inside()) Click();
      return 0;
    case WM_CAPTURECHANGED:
      if (!FPressed) break;
      FPressed = false;
      Send(BM_SETSTATE, FALSE);
      return 0;
    default:
      break;
  }
  return TBitBtn::WindowProc(window, message, wParam, lParam);
}
