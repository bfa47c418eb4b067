#include "forms/combo_box.h"

#include <windows.h>

#include <commctrl.h>

#include "forms/code_page_edit.h"
#include "forms/form.h"

TControl::TWindowParams TComboBox::WindowParams() const {
  DWORD style = CBS_AUTOHSCROLL | CBS_HASSTRINGS | WS_VSCROLL | TabStopStyle();
  style |= Typed() ? CBS_DROPDOWN : CBS_DROPDOWNLIST;
  if (HasFlag("sorted")) style |= CBS_SORT;
  return {WC_COMBOBOXW, style, 0};
}

void TComboBox::SetBounds(const RECT& bounds) {
  TControl::SetBounds(bounds);
  FDropDown.Fit(Handle(), bounds.bottom - bounds.top, Number("list-lines", kDropDownLines));
}

const TNativeItemsControl::TMessages& TComboBox::Messages() const {
  static constexpr TMessages messages{
      CB_GETCOUNT,     CB_GETLBTEXTLEN, CB_GETLBTEXT, CB_ADDSTRING, CB_INSERTSTRING,
      CB_DELETESTRING, CB_RESETCONTENT, CB_GETCURSEL, CB_SETCURSEL, CB_FINDSTRINGEXACT};
  return messages;
}

std::wstring TComboBox::CutText(POINT /*at*/) const { return FDropDown.CutText(Handle(), 0); }

void TComboBox::HandleCommand(WORD code) {
  if (code == CBN_SETFOCUS) Form().ControlFocused(*this, nullptr);
  if (code == CBN_EDITCHANGE) {
    COMBOBOXINFO info{};
    info.cbSize = sizeof info;
    // Changing the edit tells of it once more.
    if (GetComboBoxInfo(Handle(), &info) && ShowInCodePage(info.hwndItem)) return;
  }
  if (!FDropDown.Chosen(Handle(), code)) return;
  // The edit part still shows the old text when the system tells of a choice.
  if (Typed() && code != CBN_EDITCHANGE) SetText(SelectedText());
  Raise(OnChange);
}
