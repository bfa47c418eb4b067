#include "forms/form.h"

#include <algorithm>

#include "forms/buttons.h"
#include "forms/dpi.h"
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
  FTooltips = nullptr;
  FModalRun = nullptr;
  FPins = 0;
}

// ---- showing and hiding ----

void TForm::Show() {
  if (!FHandle) return;
  const bool fresh = !Visible();
  if (fresh) {
    Place();
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
  if (!FHandle) return;
  RemoveModelessForm(FHandle);
  if (!Visible()) return;
  ShowWindow(FHandle, SW_HIDE);
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

void TForm::Place() {
  if (!FCentred || IsIconic(FHandle)) return;
  const HWND owner = Application().MainWindow();
  if (const int dpi = DpiOf(owner ? owner : FHandle); dpi != FDpi) ScaleTo(dpi);
  RECT around{};
  const auto* position = FLayout.Find("position");
  const bool onScreen = position && position->Values[0] == "screen";
  if (onScreen || !owner || IsIconic(owner) || !GetWindowRect(owner, &around)) {
    around = WorkAreaOf(around);
  }
  const RECT area = WorkAreaOf(around);
  const RECT bounds = WindowBounds();
  const LONG width = bounds.right - bounds.left;
  const LONG height = bounds.bottom - bounds.top;
  const LONG left = (around.left + around.right - width) / 2;
  const LONG top = (around.top + around.bottom - height) / 2;
  // A window larger than the screen keeps its caption in reach.
  SetWindowPos(FHandle, nullptr, std::max(std::min(left, area.right - width), area.left),
               std::max(std::min(top, area.bottom - height), area.top), 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void TForm::FocusFirst(TControl* first) {
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

SIZE TForm::ClientSize() const {
  RECT client{};
  GetClientRect(FHandle, &client);
  return {client.right, client.bottom};
}

void TForm::SetClientSize(SIZE size) {
  const RECT window = WindowBounds();
  const SIZE client = ClientSize();
  SetWindowPos(FHandle, nullptr, 0, 0, window.right - window.left + size.cx - client.cx,
               window.bottom - window.top + size.cy - client.cy,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
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

void TForm::ControlFocused(TControl& control) {
  if (FActivating || FDying) return;
  FActiveControl = &control;
  if (FEntered == &control) return;
  // The focus leaves a control when another of the same form gets it: going to another window and
  // back is no exit.
  TControl* left = FEntered;
  FEntered = &control;
  if (left && left->OnExit) left->OnExit();
  if (FEntered == &control && control.OnEnter) control.OnEnter();
}

void TForm::ArrangeControls() {
  const SIZE client = ClientSize();
  const LONG wider = client.cx - FDesignSize.cx;
  const LONG higher = client.cy - FDesignSize.cy;
  for (const auto& placement : FPlacements) {
    if (!placement.Control->Handle()) continue;
    const TAnchors& anchors = placement.Control->Anchors();
    RECT bounds = placement.Bounds;
    if (anchors.Right) {
      bounds.right += wider;
      if (!anchors.Left) bounds.left += wider;
    }
    if (anchors.Bottom) {
      bounds.bottom += higher;
      if (!anchors.Top) bounds.top += higher;
    }
    placement.Control->SetBounds(bounds);
  }
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
