#include "forms/check_list_box.h"

#include <windows.h>

#include <commctrl.h>

#include "forms/form.h"
#include "forms/text_fit.h"
#include "forms/while_set.h"
#include "platform/code_page.h"

namespace {

constexpr UINT CheckState(bool checked) { return INDEXTOSTATEIMAGEMASK(checked ? 2 : 1); }

}  // namespace

TControl::TWindowParams TCheckListBox::WindowParams() const {
  return {WC_LISTVIEWW,
          LVS_REPORT | LVS_NOCOLUMNHEADER | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_OWNERDATA |
              TabStopStyle(),
          WS_EX_CLIENTEDGE};
}

void TCheckListBox::Created() {
  const DWORD style = LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT;
  Send(LVM_SETEXTENDEDLISTVIEWSTYLE, style, static_cast<LPARAM>(style));
  Send(LVM_SETCALLBACKMASK, LVIS_STATEIMAGEMASK);
  LVCOLUMNW column{};
  column.mask = LVCF_WIDTH;
  Send(LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
  FitColumn();
}

TNotifyEvent* TCheckListBox::FindEvent(std::string_view property) {
  return property == "click-check" ? &OnClickCheck : TControl::FindEvent(property);
}

void TCheckListBox::SetBounds(const RECT& bounds) {
  TControl::SetBounds(bounds);
  FitColumn();
}

void TCheckListBox::FitColumn() {
  RECT client{};
  GetClientRect(Handle(), &client);
  if (Send(LVM_GETCOLUMNWIDTH, 0) != client.right) Send(LVM_SETCOLUMNWIDTH, 0, client.right);
}

// ---- rows ----

const TCheckListBox::TRow* TCheckListBox::Row(int index) const {
  return index >= 0 && index < Count() ? &FRows[static_cast<std::size_t>(index)] : nullptr;
}

/// While the list is not redrawn, it is told of its new rows once, in the end.
void TCheckListBox::ShowCount() {
  if (FRedraws) Send(LVM_SETITEMCOUNT, FRows.size());
}

std::wstring TCheckListBox::ItemWide(int index) const {
  const TRow* row = Row(index);
  return row ? row->Text : std::wstring();
}

int TCheckListBox::AddItem(std::string_view text, bool enabled, bool checked) {
  FRows.push_back({ToWide(text), enabled, checked});
  ShowCount();
  return Count() - 1;
}

void TCheckListBox::DeleteItem(int index) {
  if (!Row(index)) return;
  FRows.erase(FRows.begin() + index);
  ShowCount();
}

void TCheckListBox::ClearItems() {
  FRows.clear();
  // At once, so that no item is selected and the list begins at its top again.
  const TWhileSet updating(FUpdating);
  Send(LVM_SETITEMCOUNT, 0);
}

int TCheckListBox::ItemIndex() const {
  return static_cast<int>(Send(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}

void TCheckListBox::SetItemIndex(int index) {
  // Said of no item it would be asked of all; the list knows which one it is.
  const int target = index < 0 ? ItemIndex() : index;
  if (target < 0) return;
  LVITEMW item{};
  item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
  item.state = index < 0 ? 0 : item.stateMask;
  const TWhileSet updating(FUpdating);
  Send(LVM_SETITEMSTATE, static_cast<WPARAM>(target), reinterpret_cast<LPARAM>(&item));
  if (index >= 0) Send(LVM_ENSUREVISIBLE, static_cast<WPARAM>(index), FALSE);
}

std::wstring TCheckListBox::CutText(POINT at) const {
  LVHITTESTINFO hit{};
  hit.pt = at;
  if (Send(LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)) < 0) return {};
  RECT label{};
  label.left = LVIR_LABEL;
  Send(LVM_GETITEMRECT, static_cast<WPARAM>(hit.iItem), reinterpret_cast<LPARAM>(&label));
  return TextUnlessFits(Handle(), ItemWide(hit.iItem), label.right - label.left);
}

int TCheckListBox::IndexOf(std::string_view text) const { return Find(ToWide(text), 0, false); }

int TCheckListBox::Find(const std::wstring& text, int start, bool beginning) const {
  const int length = static_cast<int>(text.size());
  for (int i = 0; i < Count(); ++i) {
    const int index = (start + i) % Count();
    const std::wstring& row = FRows[static_cast<std::size_t>(index)].Text;
    if (row.size() < text.size() || (!beginning && row.size() != text.size())) continue;
    if (CompareStringOrdinal(row.c_str(), length, text.c_str(), length, TRUE) == CSTR_EQUAL)
      return index;
  }
  return -1;
}

bool TCheckListBox::Checked(int index) const {
  const TRow* row = Row(index);
  return row && row->Checked;
}

void TCheckListBox::SetChecked(int index, bool checked) {
  if (!Row(index) || Checked(index) == checked) return;
  FRows[static_cast<std::size_t>(index)].Checked = checked;
  Send(LVM_REDRAWITEMS, static_cast<WPARAM>(index), index);
  NotifyWinEvent(EVENT_OBJECT_STATECHANGE, Handle(), OBJID_CLIENT, index + 1);
}

// ---- what the list view asks and tells ----

bool TCheckListBox::HandleNotify(const NMHDR& header, LRESULT& result) {
  switch (header.code) {
    case LVN_GETDISPINFOW:
      GiveRow(const_cast<NMLVDISPINFOW&>(reinterpret_cast<const NMLVDISPINFOW&>(header)).item);
      return true;
    case LVN_ODFINDITEMW: {
      const auto& find = reinterpret_cast<const NMLVFINDITEMW&>(header);
      const bool byText = find.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL);
      result = byText ? Find(find.lvfi.psz, find.iStart, find.lvfi.flags & LVFI_PARTIAL) : -1;
      return true;
    }
    case LVN_ITEMCHANGED: {
      const auto& change = reinterpret_cast<const NMLISTVIEW&>(header);
      if (FUpdating) return true;
      FUnselected = (change.uOldState & ~change.uNewState & LVIS_SELECTED) != 0;
      if (change.uNewState & ~change.uOldState & LVIS_SELECTED) {
        FSelectionRaised = true;
        Raise(OnClick);
      }
      return true;
    }
    case NM_CLICK:
      Clicked(reinterpret_cast<const NMITEMACTIVATE&>(header));
      return true;
    case NM_DBLCLK:
      if (const int index = reinterpret_cast<const NMITEMACTIVATE&>(header).iItem; index >= 0) {
        SetItemIndex(index);
        Raise(OnDblClick);
      }
      return true;
    case NM_CUSTOMDRAW:
      result = CustomDraw(reinterpret_cast<const NMLVCUSTOMDRAW&>(header));
      return true;
    default:
      return false;
  }
}

void TCheckListBox::GiveRow(LVITEMW& item) const {
  const TRow* row = Row(item.iItem);
  if (!row) return;
  if (item.mask & LVIF_TEXT && item.pszText) {
    lstrcpynW(item.pszText, row->Text.c_str(), item.cchTextMax);
  }
  if (item.mask & LVIF_STATE) {
    item.state = (item.state & ~LVIS_STATEIMAGEMASK) | CheckState(row->Checked);
  }
}

void TCheckListBox::Clicked(const NMITEMACTIVATE& click) {
  const bool raised = FSelectionRaised;
  FSelectionRaised = false;
  SelectAgain();
  if (!Row(click.iItem)) return;
  LVHITTESTINFO hit{};
  hit.pt = click.ptAction;
  Send(LVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit));
  const bool onBox = (hit.flags & LVHT_ONITEM) == LVHT_ONITEMSTATEICON;
  if (onBox && FRows[static_cast<std::size_t>(click.iItem)].Enabled) return Toggle(click.iItem);
  // A click on the box, or on the item that is current already, moves no selection.
  if (onBox) SetItemIndex(click.iItem);
  if (!raised) Raise(OnClick);
}

/// A click beside the rows, or with Ctrl, takes no selection away: as in a list box.
void TCheckListBox::SelectAgain() {
  if (FUnselected && FSelectedBefore >= 0 && ItemIndex() < 0) SetItemIndex(FSelectedBefore);
  FUnselected = false;
}

void TCheckListBox::Toggle(int index) {
  const TRow* row = Row(index);
  if (!row || !row->Enabled) return;
  SetItemIndex(index);
  SetChecked(index, !row->Checked);
  Raise(OnClickCheck);
  Raise(OnClick);
}

LRESULT TCheckListBox::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_LBUTTONDOWN || message == WM_KEYDOWN) FSelectionRaised = false;
  if (message == WM_KEYDOWN && wParam == VK_SPACE) {
    Toggle(static_cast<int>(Send(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED)));
    return 0;
  }
  const bool byMouse = message >= WM_MOUSEFIRST && message <= WM_MOUSELAST;
  if (byMouse) {
    FUnselected = false;
    FSelectedBefore = ItemIndex();
  }
  // Some systems leave the focus where it was when a box is clicked.
  if (message == WM_LBUTTONDOWN && !Focused()) SetFocus();
  const LRESULT result = TItemsControl::WindowProc(window, message, wParam, lParam);
  if (byMouse && IsWindow(window)) SelectAgain();
  if (message == WM_SETREDRAW) {
    FRedraws = wParam != FALSE;
    ShowCount();
  }
  // The scroll bar comes and goes with the rows.
  if (message == WM_SIZE) FitColumn();
  return result;
}

LRESULT TCheckListBox::CustomDraw(const NMLVCUSTOMDRAW& draw) const {
  if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
  const TRow* row = Row(static_cast<int>(draw.nmcd.dwItemSpec));
  if (draw.nmcd.dwDrawStage == CDDS_ITEMPREPAINT && row && !row->Enabled) {
    const_cast<NMLVCUSTOMDRAW&>(draw).clrText = GetSysColor(COLOR_GRAYTEXT);
  }
  return CDRF_DODEFAULT;
}
