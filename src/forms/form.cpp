#include "forms/form.h"

#include <algorithm>

#include "forms/buttons.h"
#include "forms/dpi.h"
#include "forms/focus.h"
#include "forms/modeless_keyboard.h"
#include "platform/code_page.h"

TForm::~TForm() {
  std::erase(Application().FForms, this);
  Application().ReleaseOwnedBy(*this);
  // The handlers belong to the derived classes, which are gone already.
  FDying = true;
  if (FHandle) DestroyWindow(FHandle);
}

void TForm::LoseWindow() {
  RemoveModelessForm(FHandle);
  FHandle = nullptr;
  FTips.reset();
  FModalRun = nullptr;
  FPins = 0;
}

// ---- showing and hiding ----

void TForm::Show() {
  if (!FHandle) return;
  const bool fresh = !Shown();
  if (fresh) {
    // Where the user left it, unless no monitor is there any more.
    const bool stands = FPlaced && MonitorFromWindow(FHandle, MONITOR_DEFAULTTONULL);
    if (Modal() || !stands) {
      Place();
    } else {
      KeepOnScreen();
    }
    FPlaced = true;
    if (OnShow) OnShow();
    if (!Modal()) AddModelessForm(FHandle);
  }
  TControl* const first = FActiveControl;
  // The system puts the focus somewhere as it activates the window; only where we put it counts.
  FActivating = fresh;
  ShowWindow(FHandle, SW_SHOW);
  FActivating = false;
  if (fresh) FocusFirst(first);
}

void TForm::Hide() {
  if (!Shown()) return;
  RememberSize();
  const bool active = !FParentWindow && HasFocus(FHandle);
  ShowWindow(FHandle, SW_HIDE);
  if (active) GiveFocusBack(FHandle, FFocusBefore);
  FEntered = nullptr;
  if (OnHide) OnHide();
}

void TForm::Close() {
  if (Modal()) {
    FModalResult = mrCancel;
  } else if (CloseQuery()) {
    if (OnClose) OnClose();
    Hide();
  }
}

void TForm::BringToFront() {
  if (!Visible()) return;
  SetForegroundWindow(FHandle);
  BringWindowToTop(FHandle);
}

bool TForm::Shown() const {
  return FHandle && (GetWindowLongW(FHandle, GWL_STYLE) & WS_VISIBLE) != 0;
}

void TForm::FocusFirst(TControl* first) {
  // The host may be at work elsewhere, with this form on a page that is not in view.
  if (!CanHaveFocus(FHandle)) return;
  HWND target = nullptr;
  if (first && first->CanFocus()) target = first->Handle();
  if (!target) target = GetNextDlgTabItem(FHandle, nullptr, FALSE);
  if (target) SendMessageW(FHandle, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(target), TRUE);
}

// ---- properties ----

void TForm::SetCaption(std::string_view text) { SetWindowTextW(FHandle, ToWide(text).c_str()); }

RECT TForm::WindowBounds() const {
  RECT bounds{};
  GetWindowRect(FHandle, &bounds);
  return bounds;
}

TControl* TForm::FindControl(std::string_view name) const {
  const auto found =
      std::ranges::find_if(FControls, [&](const auto* control) { return control->Name() == name; });
  return found == FControls.end() ? nullptr : *found;
}

TControl* TForm::FindControl(HWND window) const {
  if (!window) return nullptr;
  // A control's own window first: lists tell of each of their items, and asking every control for
  // its inner windows each time is slow.
  auto found = std::ranges::find(FControls, window, &TControl::Handle);
  if (found == FControls.end()) {
    found =
        std::ranges::find_if(FControls, [&](const auto* control) { return control->Owns(window); });
  }
  return found == FControls.end() ? nullptr : *found;
}

bool TForm::Owns(const TForm& dialog) const {
  return std::ranges::any_of(Components(),
                             [&](const auto& component) { return component.get() == &dialog; });
}

TControl& TForm::Child(std::string_view name) const {
  TControl* control = FindControl(name);
  if (!control) throw std::logic_error("no such control: " + std::string(name));
  return *control;
}

void TForm::SetDefaultButton(TButton& button) {
  FDefaultButton = &button;
  SendMessageW(FHandle, DM_SETDEFID, static_cast<WPARAM>(GetDlgCtrlID(button.Handle())), 0);
}

void TForm::FocusArrived(HWND from) {
  if (IsOfHost(FHandle, from)) FFocusBefore = from;
}

void TForm::ControlFocused(TControl& control, HWND from) {
  FocusArrived(from);
  if (FActivating || FDying) return;
  Reveal(control);
  FActiveControl = &control;
  if (FEntered == &control) return;
  // The focus leaves a control when another of the same form gets it: going to another window and
  // back is no exit.
  TControl* left = FEntered;
  FEntered = &control;
  if (left && left->OnExit) left->OnExit();
  if (FEntered == &control && control.OnEnter) control.OnEnter();
}

// ---- help ----

bool TForm::Help(UINT command, int data) {
  bool callHelp = true;
  const bool handled = OnHelp && OnHelp(command, data, callHelp);
  if (callHelp) AskHelp(command, data);
  return handled || callHelp;
}

void TForm::AskHelp(UINT command, int data) const {
  Application().HelpCommand(command, static_cast<ULONG_PTR>(data));
}
