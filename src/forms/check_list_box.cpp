#include <windows.h>

#include <commctrl.h>

#include "forms/form.h"
#include "forms/list_controls.h"
#include "platform/code_page.h"

namespace {

constexpr UINT CheckState(bool checked) { return INDEXTOSTATEIMAGEMASK(checked ? 2 : 1); }

/// Marks changes that the program makes, which raise no events.
class TUpdating {
 public:
  explicit TUpdating(int& count) : FCount(count) { ++FCount; }
  TUpdating(const TUpdating&) = delete;
  TUpdating& operator=(const TUpdating&) = delete;
  ~TUpdating() { --FCount; }

 private:
  int& FCount;
};

}  // namespace

TControl::TWindowParams TCheckListBox::WindowParams() const {
  return {WC_LISTVIEWW,
          LVS_REPORT | LVS_NOCOLUMNHEADER | LVS_SINGLESEL | LVS_SHOWSELALWAYS | TabStopStyle(),
          WS_EX_CLIENTEDGE};
}

void TCheckListBox::Created() {
  const DWORD style = LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT | LVS_EX_LABELTIP;
  Send(LVM_SETEXTENDEDLISTVIEWSTYLE, style, static_cast<LPARAM>(style));
  LVCOLUMNW column{};
  column.mask = LVCF_WIDTH;
  Send(LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
  FitColumn();
}

bool TCheckListBox::Accepts(std::string_view property) const {
  return property == "click-check" || property == "dblclick" || TControl::Accepts(property);
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
  Send(LVM_SETCOLUMNWIDTH, 0,
       client.right - (Count() > Send(LVM_GETCOUNTPERPAGE) ? 0 : GetSystemMetrics(SM_CXVSCROLL)));
}

int TCheckListBox::Count() const { return static_cast<int>(Send(LVM_GETITEMCOUNT)); }

std::string TCheckListBox::Item(int index) const {
  std::wstring text(256, L'\0');
  for (;;) {
    LVITEMW item{};
    item.pszText = text.data();
    item.cchTextMax = static_cast<int>(text.size());
    const auto length = static_cast<std::size_t>(
        Send(LVM_GETITEMTEXTW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item)));
    if (length + 1 < text.size()) {
      text.resize(length);
      return ToAnsi(text);
    }
    text.resize(text.size() * 4);
  }
}

int TCheckListBox::AddItem(std::string_view text, bool enabled, bool checked) {
  const TUpdating updating(FUpdating);
  std::wstring wide = ToWide(text);
  LVITEMW item{};
  item.mask = LVIF_TEXT;
  item.iItem = static_cast<int>(FItemEnabled.size());
  item.pszText = wide.data();
  FItemEnabled.push_back(enabled);
  const auto index = static_cast<int>(Send(LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item)));
  if (checked) SetChecked(index, true);
  return index;
}

void TCheckListBox::DeleteItem(int index) {
  const TUpdating updating(FUpdating);
  if (Send(LVM_DELETEITEM, static_cast<WPARAM>(index)))
    FItemEnabled.erase(FItemEnabled.begin() + index);
}

void TCheckListBox::ClearItems() {
  const TUpdating updating(FUpdating);
  Send(LVM_DELETEALLITEMS);
  FItemEnabled.clear();
}

int TCheckListBox::ItemIndex() const {
  return static_cast<int>(Send(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}

void TCheckListBox::SetItemIndex(int index) {
  const TUpdating updating(FUpdating);
  LVITEMW item{};
  item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
  item.state = index < 0 ? 0 : item.stateMask;
  Send(LVM_SETITEMSTATE, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
  if (index >= 0) Send(LVM_ENSUREVISIBLE, static_cast<WPARAM>(index), FALSE);
}

int TCheckListBox::IndexOf(std::string_view text) const {
  const std::wstring wide = ToWide(text);
  LVFINDINFOW find{};
  find.flags = LVFI_STRING;
  find.psz = wide.c_str();
  return static_cast<int>(
      Send(LVM_FINDITEMW, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&find)));
}

bool TCheckListBox::Checked(int index) const {
  return (static_cast<UINT>(
              Send(LVM_GETITEMSTATE, static_cast<WPARAM>(index), LVIS_STATEIMAGEMASK)) &
          LVIS_STATEIMAGEMASK) == CheckState(true);
}

void TCheckListBox::SetChecked(int index, bool checked) {
  const TUpdating updating(FUpdating);
  LVITEMW item{};
  item.stateMask = LVIS_STATEIMAGEMASK;
  item.state = CheckState(checked);
  Send(LVM_SETITEMSTATE, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&item));
}

bool TCheckListBox::ItemEnabled(int index) const {
  return index >= 0 && index < static_cast<int>(FItemEnabled.size()) &&
         FItemEnabled[static_cast<std::size_t>(index)];
}

bool TCheckListBox::HandleNotify(const NMHDR& header, LRESULT& result) {
  switch (header.code) {
    case LVN_ITEMCHANGING: {
      const auto& change = reinterpret_cast<const NMLISTVIEW&>(header);
      const bool check = (change.uChanged & LVIF_STATE) &&
                         (change.uNewState ^ change.uOldState) & LVIS_STATEIMAGEMASK;
      result = check && FUpdating == 0 && !ItemEnabled(change.iItem);
      return true;
    }
    case LVN_ITEMCHANGED:
      ItemChanged(reinterpret_cast<const NMLISTVIEW&>(header));
      return true;
    case NM_CLICK:
      // A click on the item that is current already changes nothing the list would tell of.
      if (!FSelectionRaised && reinterpret_cast<const NMITEMACTIVATE&>(header).iItem >= 0) {
        Raise(OnClick);
      }
      FSelectionRaised = false;
      return true;
    case NM_DBLCLK:
      if (reinterpret_cast<const NMITEMACTIVATE&>(header).iItem >= 0) Raise(OnDblClick);
      return true;
    case NM_CUSTOMDRAW:
      result = CustomDraw(reinterpret_cast<const NMLVCUSTOMDRAW&>(header));
      return true;
    default:
      return false;
  }
}

void TCheckListBox::ItemChanged(const NMLISTVIEW& change) {
  if (FUpdating || !(change.uChanged & LVIF_STATE)) return;
  const UINT old = change.uOldState & LVIS_STATEIMAGEMASK;
  const UINT now = change.uNewState & LVIS_STATEIMAGEMASK;
  if (old && now && old != now) {
    SetItemIndex(change.iItem);
    FSelectionRaised = true;
    Raise(OnClickCheck);
    Raise(OnClick);
  } else if ((change.uNewState & ~change.uOldState) & LVIS_SELECTED) {
    FSelectionRaised = true;
    Raise(OnClick);
  }
}

LRESULT TCheckListBox::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_LBUTTONDOWN || message == WM_KEYDOWN) FSelectionRaised = false;
  return TItemsControl::WindowProc(window, message, wParam, lParam);
}

LRESULT TCheckListBox::CustomDraw(const NMLVCUSTOMDRAW& draw) const {
  if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
  if (draw.nmcd.dwDrawStage == CDDS_ITEMPREPAINT &&
      !ItemEnabled(static_cast<int>(draw.nmcd.dwItemSpec))) {
    const_cast<NMLVCUSTOMDRAW&>(draw).clrText = GetSysColor(COLOR_GRAYTEXT);
  }
  return CDRF_DODEFAULT;
}
