#include "forms/list_box.h"

#include <windows.h>

#include <commctrl.h>

#include "forms/text_fit.h"

TControl::TWindowParams TListBox::WindowParams() const {
  DWORD style = LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | LBS_HASSTRINGS | WS_VSCROLL | TabStopStyle();
  if (HasFlag("sorted")) style |= LBS_SORT;
  return {WC_LISTBOXW, style, WS_EX_CLIENTEDGE};
}

const TNativeItemsControl::TMessages& TListBox::Messages() const {
  static constexpr TMessages messages{
      LB_GETCOUNT,     LB_GETTEXTLEN,   LB_GETTEXT,   LB_ADDSTRING, LB_INSERTSTRING,
      LB_DELETESTRING, LB_RESETCONTENT, LB_GETCURSEL, LB_SETCURSEL, LB_FINDSTRINGEXACT};
  return messages;
}

int TListBox::ItemAt(POINT at) const {
  const LRESULT item = Send(LB_ITEMFROMPOINT, 0, MAKELPARAM(at.x, at.y));
  // Beside the items the nearest one comes back, marked as such.
  return HIWORD(item) ? -1 : LOWORD(item);
}

std::wstring TListBox::CutText(POINT at) const {
  const int item = ItemAt(at);
  if (item < 0) return {};
  RECT row{};
  Send(LB_GETITEMRECT, static_cast<WPARAM>(item), reinterpret_cast<LPARAM>(&row));
  return TextUnlessFits(Handle(), ItemWide(item), row.right - row.left);
}

void TListBox::HandleCommand(WORD code) {
  if (code == LBN_SELCHANGE) Raise(OnClick);
  if (code == LBN_DBLCLK) {
    // The list tells of two clicks below its last item as well, as if on the selected one.
    const DWORD screen = GetMessagePos();
    POINT at{static_cast<short>(LOWORD(screen)), static_cast<short>(HIWORD(screen))};
    ScreenToClient(Handle(), &at);
    if (ItemAt(at) >= 0) Raise(OnDblClick);
  }
}
