#include <algorithm>

#include "forms/accessibility.h"
#include "forms/buttons.h"
#include "forms/focus.h"
#include "forms/form.h"
#include "forms/modeless_keyboard.h"
#include "forms/radio_group.h"
#include "platform/guard.h"

namespace {

constexpr int kFormOffset = DLGWINDOWEXTRA;

bool TooDarkForText(COLORREF background) {
  const COLORREF text = GetSysColor(COLOR_WINDOWTEXT);
  const auto light = [](COLORREF color) {
    return 3 * GetRValue(color) + 6 * GetGValue(color) + GetBValue(color);
  };
  return std::abs(light(background) - light(text)) < 10 * 64;
}

}  // namespace

LRESULT CALLBACK TForm::FormProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const TCallScope scope;
  if (message == WM_NCCREATE) {
    auto* self = static_cast<TForm*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
    SetWindowLongPtrW(window, kFormOffset, reinterpret_cast<LONG_PTR>(self));
    self->FHandle = window;
  }
  auto* form = reinterpret_cast<TForm*>(GetWindowLongPtrW(window, kFormOffset));
  if (!form) return DefDlgProcW(window, message, wParam, lParam);
  const TFormPin pin(*form);
  return Guarded<LRESULT>(0, [&] { return form->WindowProc(message, wParam, lParam); },
                          {std::source_location::current(), window, message});
}

LRESULT TForm::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND window = FHandle;
  LRESULT result = 0;
  if (message == WM_DESTROY) {
    FTips.reset();
    ForgetAnnotations(*this);
  }
  if (!FDying && HandleMessage(message, wParam, lParam, result)) return result;
  result = DefDlgProcW(window, message, wParam, lParam);
  if (message == WM_NCDESTROY) WindowGone();
  return result;
}

bool TForm::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  switch (message) {
    case WM_COMMAND:
      HandleCommand(wParam, lParam);
      return true;
    case WM_NOTIFY: {
      auto& header = *reinterpret_cast<NMHDR*>(lParam);
      if (FTips && FTips->HandleNotify(header)) return true;
      TControl* control = FindControl(header.hwndFrom);
      return control && control->HandleNotify(header, result);
    }
    case WM_HSCROLL:
    case WM_VSCROLL:
      if (!lParam) {
        HandleScrollBar(message == WM_VSCROLL ? SB_VERT : SB_HORZ, LOWORD(wParam));
      } else if (TControl* control = FindControl(reinterpret_cast<HWND>(lParam))) {
        control->HandleScroll();
      }
      return true;
    case WM_DRAWITEM: {
      const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
      const TControl* control = FindControl(item.hwndItem);
      if (control) control->Draw(item);
      result = TRUE;
      return control != nullptr;
    }
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORLISTBOX:
      return ControlColor(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam), result);
    case WM_HELP:
      HandleHelp(*reinterpret_cast<const HELPINFO*>(lParam));
      result = TRUE;
      return true;
    case WM_CLOSE:
      Close();
      return true;
    case WM_SHOWWINDOW:
      // By whoever hides it, and while the focus is still there to be told from one that is
      // nowhere.
      if (!wParam && !lParam && FParentWindow && HasFocus(FHandle)) {
        GiveFocusBack(FHandle, FFocusBefore);
      }
      return false;
    case WM_SETFOCUS:
      FocusArrived(reinterpret_cast<HWND>(wParam));
      [[fallthrough]];
    case WM_ACTIVATE:
      // Left to itself the system would focus the first control now, and select an edit's text,
      // before the control that is to have the focus gets it.
      return FActivating;
    case WM_LBUTTONUP:
      if (OnClick) OnClick();
      return false;
    case WM_LBUTTONDBLCLK:
      if (OnDblClick) OnDblClick();
      return false;
    case WM_PAINT:
      if (OnPaint) OnPaint();
      return false;
    default:
      return HandlePlacement(message, wParam, lParam);
  }
}

void TForm::HandleCommand(WPARAM wParam, LPARAM lParam) {
  const HWND window = reinterpret_cast<HWND>(lParam);
  if (TControl* control = FindControl(window)) {
    if (auto* group = dynamic_cast<TRadioGroup*>(control)) {
      if (HIWORD(wParam) == BN_CLICKED) group->ItemClicked(window);
    } else {
      control->HandleCommand(HIWORD(wParam));
    }
    return;
  }
  // Escape comes as this number, whatever number the Cancel button bears.
  if (LOWORD(wParam) == IDCANCEL && FCancelButton) FCancelButton->Click();
}

bool TForm::ControlColor(HDC dc, HWND window, LRESULT& result) {
  const TControl* control = FindControl(window);
  if (!control || control->Color() < 0) return false;
  int color = control->Color();
  if (TooDarkForText(GetSysColor(color))) color = COLOR_BTNFACE;
  SetBkColor(dc, GetSysColor(color));
  SetTextColor(dc, GetSysColor(color == COLOR_INFOBK ? COLOR_INFOTEXT : COLOR_WINDOWTEXT));
  result = reinterpret_cast<LRESULT>(GetSysColorBrush(color));
  return true;
}

void TForm::HandleHelp(const HELPINFO& info) {
  const TControl* control = FindControl(static_cast<HWND>(info.hItemHandle));
  const int context =
      control && control->HelpContext() != 0 ? control->HelpContext() : FHelpContext;
  // A form with the question mark explains its controls in place; others open the help file.
  const bool popup = (GetWindowLongW(FHandle, GWL_EXSTYLE) & WS_EX_CONTEXTHELP) != 0;
  Help(popup ? HELP_CONTEXTPOPUP : HELP_CONTEXT, context);
}

void TForm::WindowGone() {
  RemoveModelessForm(FHandle);
  FHandle = nullptr;
  FEntered = nullptr;
  Abandon();
  WindowDestroyed();
}
