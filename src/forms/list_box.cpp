#include <windows.h>

#include <commctrl.h>

#include "forms/form.h"
#include "forms/list_controls.h"
#include "platform/code_page.h"

namespace {

LPARAM TextParam(const std::wstring& text) { return reinterpret_cast<LPARAM>(text.c_str()); }

}  // namespace

// ---- items ----

int TNativeItemsControl::Count() const { return static_cast<int>(Send(Messages().Count)); }

std::string TNativeItemsControl::Item(int index) const {
  const LRESULT length = Send(Messages().TextLength, static_cast<WPARAM>(index));
  if (length < 0) return {};
  std::wstring text(static_cast<std::size_t>(length), L'\0');
  Send(Messages().Text, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
  return ToAnsi(text);
}

int TNativeItemsControl::AddItem(std::string_view text) {
  return static_cast<int>(Send(Messages().Add, 0, TextParam(ToWide(text))));
}

void TNativeItemsControl::InsertItem(int index, std::string_view text) {
  Send(Messages().Insert, static_cast<WPARAM>(index), TextParam(ToWide(text)));
}

void TNativeItemsControl::DeleteItem(int index) {
  Send(Messages().Delete, static_cast<WPARAM>(index));
}

void TNativeItemsControl::ClearItems() { Send(Messages().Clear); }

int TNativeItemsControl::ItemIndex() const { return static_cast<int>(Send(Messages().Selection)); }

void TNativeItemsControl::SetItemIndex(int index) {
  Send(Messages().Select, static_cast<WPARAM>(index));
}

int TNativeItemsControl::IndexOf(std::string_view text) const {
  return static_cast<int>(Send(Messages().Find, static_cast<WPARAM>(-1), TextParam(ToWide(text))));
}

// ---- list box ----

TControl::TWindowParams TListBox::WindowParams() const {
  DWORD style = LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | LBS_HASSTRINGS | WS_VSCROLL | TabStopStyle();
  if (HasFlag("sorted")) style |= LBS_SORT;
  return {WC_LISTBOXW, style, WS_EX_CLIENTEDGE};
}

bool TListBox::Accepts(std::string_view property) const {
  return property == "sorted" || property == "dblclick" || TControl::Accepts(property);
}

const TNativeItemsControl::TMessages& TListBox::Messages() const {
  static constexpr TMessages messages{
      LB_GETCOUNT,     LB_GETTEXTLEN,   LB_GETTEXT,   LB_ADDSTRING, LB_INSERTSTRING,
      LB_DELETESTRING, LB_RESETCONTENT, LB_GETCURSEL, LB_SETCURSEL, LB_FINDSTRINGEXACT};
  return messages;
}

void TListBox::HandleCommand(WORD code) {
  if (code == LBN_SELCHANGE) Raise(OnClick);
  if (code == LBN_DBLCLK) Raise(OnDblClick);
}

// ---- combo box ----

TControl::TWindowParams TComboBox::WindowParams() const {
  DWORD style = CBS_AUTOHSCROLL | CBS_HASSTRINGS | WS_VSCROLL | TabStopStyle();
  style |= Word("style", "drop-down") == "drop-down-list" ? CBS_DROPDOWNLIST : CBS_DROPDOWN;
  if (HasFlag("sorted")) style |= CBS_SORT;
  return {WC_COMBOBOXW, style, 0};
}

void TComboBox::Created() { SetBounds(Bounds()); }

bool TComboBox::Accepts(std::string_view property) const {
  return property == "sorted" || property == "style" || property == "list-lines" ||
         property == "change" || TControl::Accepts(property);
}

void TComboBox::SetBounds(const RECT& bounds) {
  // The height given to a combo box counts its open list in; the closed part takes its own.
  RECT open = bounds;
  const auto line = static_cast<int>(Send(CB_GETITEMHEIGHT, 0));
  open.bottom += line * Number("list-lines", 8) + Form().Scaled(4);
  TControl::SetBounds(open);
}

const TNativeItemsControl::TMessages& TComboBox::Messages() const {
  static constexpr TMessages messages{
      CB_GETCOUNT,     CB_GETLBTEXTLEN, CB_GETLBTEXT, CB_ADDSTRING, CB_INSERTSTRING,
      CB_DELETESTRING, CB_RESETCONTENT, CB_GETCURSEL, CB_SETCURSEL, CB_FINDSTRINGEXACT};
  return messages;
}

void TComboBox::HandleCommand(WORD code) {
  if (code == CBN_SETFOCUS) Form().ControlFocused(*this);
  if (code == CBN_EDITCHANGE) Raise(OnChange);
  if (code == CBN_SELCHANGE) {
    // The edit part still shows the old text when the system tells of a choice.
    if (Word("style", "drop-down") == "drop-down") SetText(SelectedText());
    Raise(OnChange);
  }
}
