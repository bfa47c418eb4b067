#include "forms/std_controls.h"

#include <windows.h>

#include <commctrl.h>

#include "forms/code_page_edit.h"
#include "forms/form.h"
#include "forms/text_fit.h"
#include "platform/code_page.h"

// ---- labels ----

TControl::TWindowParams TLabel::WindowParams() const {
  return {WC_STATICW, SS_LEFT | SS_NOTIFY, 0};
}

TControl::TWindowParams TStaticText::WindowParams() const {
  const DWORD bevel = Word("bevel", "none") == "sunken" ? SS_SUNKEN : 0;
  return {WC_STATICW,
          SS_LEFTNOWORDWRAP | SS_NOPREFIX | SS_NOTIFY | SS_CENTERIMAGE | SS_ENDELLIPSIS | bevel, 0};
}

std::wstring TStaticText::CutText(POINT /*at*/) const {
  RECT client{};
  GetClientRect(Handle(), &client);
  return TextUnlessFits(Handle(), WindowTextWide(Handle()), client.right);
}

// ---- edits ----

TControl::TWindowParams TEdit::WindowParams() const {
  DWORD style = ES_AUTOHSCROLL | TabStopStyle();
  if (HasFlag("read-only")) style |= ES_READONLY;
  if (HasFlag("show-selection")) style |= ES_NOHIDESEL;
  return {WC_EDITW, style, WS_EX_CLIENTEDGE};
}

// The native default of 30,000 characters would cut long lines short.
void TEdit::Created() { Send(EM_SETLIMITTEXT, 0); }

bool TEdit::Modified() const { return Send(EM_GETMODIFY) != 0; }

void TEdit::SetModified(bool modified) { Send(EM_SETMODIFY, modified); }

void TEdit::SetSelection(int start, int length) {
  const std::string text = Text();
  const auto units = [&](int bytes) {
    const auto count = static_cast<std::size_t>(std::max(bytes, 0));
    return static_cast<DWORD>(ToWide(std::string_view(text).substr(0, count)).size());
  };
  SetSelectionUnits(units(start), units(start + length));
}

std::pair<DWORD, DWORD> TEdit::SelectionUnits() const {
  DWORD start = 0;
  DWORD end = 0;
  Send(EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  return {start, end};
}

void TEdit::SetSelectionUnits(DWORD start, DWORD end) {
  Send(EM_SETSEL, start, static_cast<LPARAM>(end));
  Send(EM_SCROLLCARET);
}

void TEdit::HandleCommand(WORD code) {
  if (code != EN_CHANGE) return;
  // What the program writes into memos is in the code page; edits take what the user types.
  const auto style = static_cast<DWORD>(GetWindowLongW(Handle(), GWL_STYLE));
  if (!(style & (ES_MULTILINE | ES_READONLY)) && ShowInCodePage(Handle())) return;
  Raise(OnChange);
}

// ---- check box ----

TControl::TWindowParams TCheckBox::WindowParams() const {
  return {WC_BUTTONW, BS_3STATE | TabStopStyle(), 0};
}

void TCheckBox::Created() {
  if (HasFlag("checked")) SetChecked(true);
}

TCheckBox::TState TCheckBox::State() const {
  switch (Send(BM_GETCHECK)) {
    case BST_CHECKED:
      return TState::Checked;
    case BST_INDETERMINATE:
      return TState::Grayed;
    default:
      return TState::Unchecked;
  }
}

void TCheckBox::SetState(TState state) {
  Send(BM_SETCHECK, state == TState::Checked  ? BST_CHECKED
                    : state == TState::Grayed ? BST_INDETERMINATE
                                              : BST_UNCHECKED);
}

void TCheckBox::HandleCommand(WORD code) {
  if (code != BN_CLICKED) return;
  // The third state is only shown, never chosen by a click.
  SetState(Checked() ? TState::Unchecked : TState::Checked);
  Raise(OnClick);
}

// ---- what has a range ----

void TRangeControl::SetRange(UINT message) const {
  const auto* range = Layout().Find("range");
  Send(message, static_cast<WPARAM>(range ? LayoutNumber(range->Values[0]) : 0),
       range ? LayoutNumber(range->Values[1]) : 100);
}

// ---- up-down ----

TControl::TWindowParams TUpDown::WindowParams() const {
  return {UPDOWN_CLASSW, UDS_HORZ | TabStopStyle(), 0};
}

void TUpDown::Created() {
  SetRange(UDM_SETRANGE32);
  FTold = Position();
}

int TUpDown::Position() const { return static_cast<int>(Send(UDM_GETPOS32)); }

void TUpDown::SetPosition(int position) {
  Send(UDM_SETPOS32, 0, position);
  FTold = Position();
}

void TUpDown::HandleScroll() {
  // The native arrows tell of every click and of its end, also where they cannot step further.
  if (Position() == FTold) return;
  FTold = Position();
  Raise(OnClick);
}

void TUpDown::Step(int delta) {
  Send(UDM_SETPOS32, 0, Position() + delta);
  HandleScroll();
}

LRESULT TUpDown::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  // The native arrows take no keys of their own: without these a mouse would be needed.
  switch (message) {
    case WM_GETDLGCODE:
      return DLGC_WANTARROWS;
    case WM_KEYDOWN:
      if (wParam == VK_LEFT || wParam == VK_DOWN) return Step(-1), 0;
      if (wParam == VK_RIGHT || wParam == VK_UP) return Step(+1), 0;
      break;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      InvalidateRect(window, nullptr, FALSE);
      break;
    case WM_PAINT: {
      const LRESULT result = TControl::WindowProc(window, message, wParam, lParam);
      if (GetFocus() == window) {
        RECT frame{};
        GetClientRect(window, &frame);
        InflateRect(&frame, -2, -2);
        DrawFocusRect(TWindowDc(window).Get(), &frame);
      }
      return result;
    }
    default:
      break;
  }
  return TControl::WindowProc(window, message, wParam, lParam);
}

// ---- progress bar ----

TControl::TWindowParams TProgressBar::WindowParams() const { return {PROGRESS_CLASSW, 0, 0}; }

void TProgressBar::Created() { SetRange(PBM_SETRANGE32); }

int TProgressBar::Position() const { return static_cast<int>(Send(PBM_GETPOS)); }

void TProgressBar::SetPosition(int position) {
  if (GetWindowThreadProcessId(Handle(), nullptr) == GetCurrentThreadId()) {
    Send(PBM_SETPOS, static_cast<WPARAM>(position));
  } else {
    // The thread of the window may be waiting for this one, and could not take a sent message.
    PostMessageW(Handle(), PBM_SETPOS, static_cast<WPARAM>(position), 0);
  }
}
