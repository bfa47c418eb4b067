#include "forms/form.h"

#include <algorithm>

#include "forms/accessibility.h"
#include "forms/buttons.h"
#include "forms/dpi.h"
#include "forms/focus.h"
#include "forms/form_loader.h"
#include "forms/modal_run.h"
#include "forms/modeless_keyboard.h"
#include "forms/radio_group.h"
#include "forms/window_class.h"
#include "platform/code_page.h"
#include "platform/common_controls.h"
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

/// Messages that point to something, but for one that some program sent without.
bool PointsNowhere(UINT message, LPARAM lParam) {
  constexpr UINT pointing[] = {WM_NOTIFY, WM_DRAWITEM, WM_HELP, WM_GETMINMAXINFO, WM_DPICHANGED};
  return lParam == 0 && std::ranges::find(pointing, message) != std::end(pointing);
}

/// Runs a step of making a form; an error in it names whose step it was.
template <class TStep>
void Naming(const std::string& name, TStep&& step) {
  try {
    step();
  } catch (const std::exception& error) {
    throw TLayoutError(name + ": " + error.what());
  }
}

}  // namespace

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

// ---- making ----

void TForm::Load() {
  const TOurControls controls;
  const TLayout layout = LoadLayout(ClassName());
  FLayout = layout.Form;
  FDpi = DpiOf(FParentWindow ? FParentWindow : Application().MainWindow());
  FFont = MakeFont();
  if (const auto* help = FLayout.Find("help")) FHelpContext = LayoutNumber(help->Values[0]);
  Naming(ClassName(), [&] {
    CreateFormWindow();
    CreateControls(layout);
    TFormBinder binder(*this);
    Bind(binder);
    BindEvents(binder);
  });
  AnnotateControls(*this);
  if (const auto* active = FLayout.Find("active")) {
    FFirstActive = FActiveControl = &Child(active->Values[0]);
  }
  if (OnCreate) OnCreate();
}

TFontHandle TForm::MakeFont() const {
  const auto* name = FLayout.Find("font");
  const auto* height = FLayout.Find("font-height");
  const std::string face = name ? name->Values[0] : "MS Sans Serif";
  LOGFONTW font{};
  font.lfHeight = MulDiv(height ? LayoutNumber(height->Values[0]) : -11, FDpi, 96);
  font.lfCharSet = DEFAULT_CHARSET;
  // The bitmap font of that name has no sizes between: its outline twin takes over off 96 DPI.
  const bool bitmapFace = FDpi != 96 && face == "MS Sans Serif";
  const auto wide = bitmapFace ? std::wstring(L"Microsoft Sans Serif") : Utf8ToWide(face);
  wide.copy(font.lfFaceName, LF_FACESIZE - 1);
  return TFontHandle(CreateFontIndirectW(&font));
}

void TForm::SetDpi(int dpi) {
  FDpi = dpi;
  TFontHandle font = MakeFont();
  for (TControl* control : FControls) {
    control->SetFont(font.Get());
    control->DpiChanged(dpi);
  }
  FFont = std::move(font);
  DpiChanged();
}

void TForm::CreateParams(TCreateParams& params) {
  const auto has = [&](const char* property, const char* value) {
    const auto* found = FLayout.Find(property);
    return found && std::ranges::find(found->Values, value) != found->Values.end();
  };
  // Children are not clipped: a group box shows the form between its radio buttons.
  params.Style = has("border", "none") ? 0 : WS_CAPTION;
  if (has("icons", "system")) params.Style |= WS_SYSMENU;
  if (has("icons", "minimize")) params.Style |= WS_MINIMIZEBOX;
  if (has("icons", "maximize")) params.Style |= WS_MAXIMIZEBOX;
  // The system offers the question mark only beside a lone close box.
  if (has("icons", "help")) params.ExStyle |= WS_EX_CONTEXTHELP;
  if (has("border", "sizeable") || has("border", "sizeable-tool")) {
    params.Style |= WS_THICKFRAME;
  } else if (has("border", "dialog")) {
    params.Style |= DS_MODALFRAME;
  }
  // This one also keeps the icon out of the caption.
  params.ExStyle |= WS_EX_DLGMODALFRAME;
  if (has("border", "sizeable-tool")) params.ExStyle |= WS_EX_TOOLWINDOW;
  if (FLayout.Find("stay-on-top")) params.ExStyle |= WS_EX_TOPMOST;
  params.ExStyle |= WS_EX_CONTROLPARENT;
  if (FParentWindow) {
    params.Style |= WS_CHILD | WS_CLIPSIBLINGS;
    params.Parent = FParentWindow;
    params.Centred = false;
  } else {
    params.Style |= WS_POPUP;
    params.Parent = Application().MainWindow();
  }
}

void TForm::CreateFormWindow() {
  const std::wstring className = Utf8ToWide(ClassName());
  RegisterWindowClass(className, FormProc, DLGWINDOWEXTRA + static_cast<int>(sizeof(TForm*)),
                      reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1));
  TCreateParams params;
  CreateParams(params);
  FCentred = params.Centred;
  const auto* caption = FLayout.Find("caption");
  // Any size that is more than borders: what is right is known once there are borders to measure.
  FHandle = CreateWindowExW(params.ExStyle, className.c_str(),
                            caption ? Utf8ToWide(caption->Values[0]).c_str() : L"", params.Style, 0,
                            0, Scaled(400), Scaled(200), params.Parent, nullptr,
                            TApplication::Instance(), this);
  if (!FHandle) throw std::runtime_error("window refused: " + std::string(ClassName()));
  FPlacement.SizeAsWanted();
  SendMessageW(FHandle, WM_SETFONT, reinterpret_cast<WPARAM>(FFont.Get()), FALSE);
}

void TForm::CreateControls(const TLayout& layout) {
  for (const auto& item : layout.Controls) FControls.push_back(&Adopt(MakeControl(*this, item)));
  for (const auto& place : FPlacement.SetControls(TabSequence(FControls)))
    Naming(place.Control->Name(), [&] { place.Control->Create(place.Bounds, Font()); });
  FPlacement.Arrange();
}

TNotifyEvent* TForm::FindEvent(std::string_view property) {
  const struct {
    std::string_view Property;
    TNotifyEvent* Event;
  } events[] = {{"click", &OnClick},  {"dblclick", &OnDblClick}, {"close", &OnClose},
                {"paint", &OnPaint},  {"show", &OnShow},         {"hide", &OnHide},
                {"create", &OnCreate}};
  const auto found =
      std::ranges::find(events, property, &std::decay_t<decltype(*events)>::Property);
  return found == std::end(events) ? nullptr : found->Event;
}

void TForm::BindEvents(const TFormBinder& binder) {
  binder.BindEvents(FLayout, [&](std::string_view property) { return FindEvent(property); });
  for (TControl* control : FControls) {
    const TLayoutItem& layout = control->Layout();
    Naming(control->Name(), [&] {
      binder.BindEvents(layout,
                        [&](std::string_view property) { return control->FindEvent(property); });
    });
    if (layout.Find("default")) FDefaultButton = dynamic_cast<TButton*>(control);
    if (layout.Find("cancel")) FCancelButton = dynamic_cast<TButton*>(control);
  }
  if (FDefaultButton) SetDefaultButton(*FDefaultButton);
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
      FPlacement.KeepOnScreen();
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
  FPlacement.RememberSize();
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

int TForm::ShowModal() {
  if (!FHandle || Modal()) return mrCancel;
  const TCallScope scope;
  TModalRun(*this).Run();
  return FModalResult;
}

bool TForm::TranslateKey(const MSG& message) const {
  if (message.message < WM_KEYFIRST || message.message > WM_KEYLAST) return false;
  TControl* control = FindControl(message.hwnd);
  return control && control->TranslateKey(message);
}

void TForm::Abandon() {
  if (FModalRun) FModalRun->Abandon();
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
  if (!IsOfHost(FHandle, from)) return;
  // A window that is activated has the focus for a moment, on its way to one of its controls.
  if (from == GetAncestor(from, GA_ROOT) && CanHaveFocus(FFocusBefore)) return;
  FFocusBefore = from;
}

void TForm::ControlFocused(TControl& control, HWND from) {
  FocusArrived(from);
  if (FActivating || FDying) return;
  FPlacement.Reveal(control);
  FActiveControl = &control;
  if (FEntered == &control) return;
  // The focus leaves a control when another of the same form gets it: going to another window and
  // back is no exit.
  TControl* left = FEntered;
  FEntered = &control;
  if (left && left->OnExit) left->OnExit();
  if (FEntered == &control && control.OnEnter) control.OnEnter();
}

void TForm::PointerArrived() {
  if (FTips || FDying || !FLayout.Find("show-hints")) return;
  const TOurControls controls;
  FTips.emplace(*this);
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

// ---- messages ----

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
  if (PointsNowhere(message, lParam)) return 0;
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
      if (!lParam) return FPlacement.HandleMessage(message, wParam, lParam);
      if (TControl* control = FindControl(reinterpret_cast<HWND>(lParam))) control->HandleScroll();
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
    case WM_SETCURSOR:
      PointerArrived();
      return false;
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
      return FPlacement.HandleMessage(message, wParam, lParam);
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
