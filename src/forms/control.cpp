#include "forms/control.h"

#include <windows.h>

#include <algorithm>
#include <climits>
#include <unordered_map>

#include "forms/form.h"
#include "platform/code_page.h"
#include "platform/common_controls.h"
#include "platform/guard.h"
#include "platform/kept.h"

namespace {

constexpr wchar_t kNameProperty[] = L"ControlName";

/// A window of a control, and the procedure that it had.
struct TAttached {
  TControl* Control;
  WNDPROC Next;
};

/// Found by us, not by the common controls' subclassing, which asks the system for a property of
/// the window several times a message: that was a quarter of the time until a dialog was painted.
using TAttachedWindows = std::unordered_map<HWND, TAttached>;

TAttachedWindows& AttachedWindows() { return Kept<TAttachedWindows>(); }

/// To the window's own procedure.
LRESULT PassOn(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto& windows = AttachedWindows();
  const auto found = windows.find(window);
  if (found == windows.end()) return DefWindowProcW(window, message, wParam, lParam);
  const WNDPROC next = found->second.Next;
  if (message == WM_NCDESTROY) windows.erase(found);
  return CallWindowProcW(next, window, message, wParam, lParam);
}

int SystemColor(const std::string& name) {
  if (name == "window") return COLOR_WINDOW;
  if (name == "info") return COLOR_INFOBK;
  if (name == "face") return COLOR_BTNFACE;
  if (name == "inactive-border") return COLOR_INACTIVEBORDER;
  if (name == "inactive-gradient") return COLOR_GRADIENTINACTIVECAPTION;
  if (name == "inactive-text") return COLOR_INACTIVECAPTIONTEXT;
  return -1;
}

TAnchors ReadAnchors(const TLayoutItem& layout) {
  const auto* property = layout.Find("anchors");
  if (!property) return {};
  const auto has = [&](const char* side) {
    return std::ranges::find(property->Values, side) != property->Values.end();
  };
  return {has("left"), has("top"), has("right"), has("bottom")};
}

}  // namespace

std::string WindowText(HWND window) { return ToAnsi(WindowTextWide(window)); }

std::wstring WindowTextWide(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)), L'\0');
  const int length = GetWindowTextW(window, text.data(), static_cast<int>(text.size()) + 1);
  text.resize(static_cast<std::size_t>(std::max(length, 0)));
  return text;
}

TControl::TControl(TForm& form, const TLayoutItem& layout)
    : TComponent(layout.Name), FForm(form), FLayout(layout) {
  FHint = Utf8ToWide(Word("hint", ""));
  FHelpContext = Number("help", 0);
  FAnchors = ReadAnchors(layout);
  FColor = SystemColor(Word("color", ""));
  if (Word("cursor", "default") == "hand") FCursor = reinterpret_cast<LPCWSTR>(IDC_HAND);
}

TControl::~TControl() {
  if (FHandle) DestroyWindow(FHandle);
  std::erase_if(AttachedWindows(), [&](const auto& entry) { return entry.second.Control == this; });
}

void TControl::Create(const RECT& bounds, HFONT font) {
  const auto params = WindowParams();
  DWORD style = params.Style | WS_CHILD | WS_GROUP;
  if (!HasFlag("hidden")) style |= WS_VISIBLE;
  if (HasFlag("disabled")) style |= WS_DISABLED;
  // Numbers from 100 up stay clear of the system's own IDOK, IDCANCEL and so on.
  const auto id = static_cast<INT_PTR>(100) + FForm.NextControlId();
  FHandle = CreateWindowExW(params.ExStyle, params.ClassName,
                            Utf8ToWide(Word("caption", "")).c_str(), style, bounds.left, bounds.top,
                            bounds.right - bounds.left, bounds.bottom - bounds.top, FForm.Handle(),
                            reinterpret_cast<HMENU>(id), TApplication::Instance(), nullptr);
  if (!FHandle) throw std::runtime_error("window refused: " + Name());
  SetWindowName(FHandle, Name());
  Attach(FHandle);
  Created();
  SetFont(font);
}

void TControl::Attach(HWND window) {
  const auto next = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC));
  // Replaces what a window left that went without a message, with the thread that it belonged to.
  AttachedWindows().insert_or_assign(window, TAttached{this, next});
  SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(AttachedProc));
}

void TControl::SetWindowName(HWND window, const std::string& name) {
  const ATOM atom = GlobalAddAtomA(name.c_str());
  SetPropW(window, kNameProperty, reinterpret_cast<HANDLE>(static_cast<ULONG_PTR>(atom)));
}

LRESULT CALLBACK TControl::AttachedProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const TCallScope scope;
  const auto found = AttachedWindows().find(window);
  if (found == AttachedWindows().end()) return PassOn(window, message, wParam, lParam);
  TControl* control = found->second.Control;
  const TFormPin pin(control->FForm);
  return Guarded<LRESULT>(0,
                          [&] {
                            const TOurControls controls;
                            return control->WindowProc(window, message, wParam, lParam);
                          },
                          {std::source_location::current(), window, message});
}

LRESULT TControl::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_SETFOCUS: {
      const LRESULT result = PassOn(window, message, wParam, lParam);
      FForm.ControlFocused(*this, reinterpret_cast<HWND>(wParam));
      return result;
    }
    case WM_MOUSEMOVE:
      FForm.PointerMoved(*this, window,
                         {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))});
      break;
    case WM_SETCURSOR:
      FForm.PointerArrived();
      if (FCursor && LOWORD(lParam) == HTCLIENT) {
        ::SetCursor(LoadCursorW(nullptr, FCursor));
        return TRUE;
      }
      break;
    case WM_NCDESTROY: {
      const auto atom = reinterpret_cast<ULONG_PTR>(RemovePropW(window, kNameProperty));
      if (atom) GlobalDeleteAtom(static_cast<ATOM>(atom));
      if (window == FHandle) FHandle = nullptr;
      break;
    }
    default:
      break;
  }
  return PassOn(window, message, wParam, lParam);
}

std::string TControl::Text() const { return WindowText(FHandle); }

void TControl::SetText(std::string_view text) { SetWindowTextW(FHandle, ToWide(text).c_str()); }

void TControl::SetTextUtf8(std::string_view text) {
  SetWindowTextW(FHandle, Utf8ToWide(text).c_str());
}

bool TControl::Enabled() const { return IsWindowEnabled(FHandle) != FALSE; }

void TControl::SetEnabled(bool enabled) {
  HWND focus = enabled ? nullptr : GetFocus();
  if (focus && !Owns(focus)) focus = nullptr;
  EnableWindows(enabled);
  FForm.ShowTips(*this);
  if (!focus) return;
  // The system would leave the focus nowhere, and the keyboard dead. Where Tab would lead is asked
  // from here: a disabled window has no focus to start from any more.
  while (GetParent(focus) != FForm.Handle()) focus = GetParent(focus);
  const HWND next = GetNextDlgTabItem(FForm.Handle(), focus, FALSE);
  if (!next || next == focus) return;
  SendMessageW(FForm.Handle(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(next), TRUE);
}

void TControl::EnableWindows(bool enabled) { EnableWindow(FHandle, enabled); }

bool TControl::Visible() const { return (GetWindowLongW(FHandle, GWL_STYLE) & WS_VISIBLE) != 0; }

void TControl::SetVisible(bool visible) {
  ShowWindow(FHandle, visible ? SW_SHOWNA : SW_HIDE);
  FForm.ShowTips(*this);
}

bool TControl::CanFocus() const { return FHandle && Enabled() && Visible(); }

void TControl::SetFocus() {
  FForm.SetActiveControl(this);
  if (FForm.Visible() && CanFocus()) ::SetFocus(FHandle);
}

bool TControl::Focused() const {
  const HWND focus = GetFocus();
  return focus && Owns(focus);
}

bool TControl::Owns(HWND window) const { return window == FHandle || IsChild(FHandle, window); }

RECT TControl::Bounds() const {
  RECT bounds{};
  GetWindowRect(FHandle, &bounds);
  MapWindowPoints(nullptr, FForm.Handle(), reinterpret_cast<POINT*>(&bounds), 2);
  return bounds;
}

void TControl::SetBounds(const RECT& bounds) {
  // The system would go through all its steps for nothing.
  if (const RECT before = Bounds(); EqualRect(&before, &bounds)) return;
  SetWindowPos(FHandle, nullptr, bounds.left, bounds.top, bounds.right - bounds.left,
               bounds.bottom - bounds.top, SWP_NOZORDER | SWP_NOACTIVATE);
  FForm.ShowTips(*this);
}

void TControl::SetColor(int systemColor) {
  if (FColor == systemColor) return;
  FColor = systemColor;
  InvalidateRect(FHandle, nullptr, TRUE);
}

void TControl::SetFont(HFONT font) { Send(WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE); }

TNotifyEvent* TControl::FindEvent(std::string_view property) {
  if (property == "click") return &OnClick;
  if (property == "dblclick") return &OnDblClick;
  if (property == "change") return &OnChange;
  if (property == "enter") return &OnEnter;
  if (property == "exit") return &OnExit;
  return nullptr;
}

int TControl::TabOrder() const { return Number("tab", INT_MAX); }

std::string TControl::Word(std::string_view property, std::string_view fallback) const {
  const auto* found = FLayout.Find(property);
  return found ? found->Values.front() : std::string(fallback);
}

int TControl::Number(std::string_view property, int fallback) const {
  const auto* found = FLayout.Find(property);
  return found ? LayoutNumber(found->Values.front()) : fallback;
}

DWORD TControl::ScrollStyle() const {
  const auto scroll = Word("scroll", "none");
  DWORD style = 0;
  if (scroll == "vertical" || scroll == "both") style |= WS_VSCROLL;
  if (scroll == "horizontal" || scroll == "both") style |= WS_HSCROLL;
  return style;
}
