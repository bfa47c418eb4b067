#include "user/items.h"

#include <commctrl.h>

#include <algorithm>

#include "user/user.h"
#include "user/window.h"

namespace {
/// Memory that a control of another process can be pointed to.
template <class T>
class TShared {
 public:
  TShared(HWND window, const T& value, size_t extra = 0)
      : FSize(sizeof(T) + extra),
        FProcess(OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE,
                             ProcessOf(window))),
        FMemory(static_cast<char*>(
            VirtualAllocEx(FProcess, nullptr, FSize, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE))) {
    if (!FMemory) throw TUserError("no memory in the control's process");
    Set(value);
  }
  TShared(const TShared&) = delete;
  TShared& operator=(const TShared&) = delete;
  ~TShared() {
    if (FMemory) VirtualFreeEx(FProcess, FMemory, 0, MEM_RELEASE);
    CloseHandle(FProcess);
  }

  LPARAM Address() const { return reinterpret_cast<LPARAM>(FMemory); }
  void Set(const T& value) { WriteProcessMemory(FProcess, FMemory, &value, sizeof value, nullptr); }
  T Get() const {
    T value{};
    ReadProcessMemory(FProcess, FMemory, &value, sizeof value, nullptr);
    return value;
  }
  wchar_t* ExtraText() const { return reinterpret_cast<wchar_t*>(FMemory + sizeof(T)); }
  std::string Text() const {
    std::wstring text((FSize - sizeof(T)) / sizeof(wchar_t), L'\0');
    ReadProcessMemory(FProcess, ExtraText(), text.data(), text.size() * sizeof(wchar_t), nullptr);
    return Utf8(text.c_str());
  }

 private:
  size_t FSize;
  HANDLE FProcess;
  char* FMemory;
};

constexpr int MaxItemText = 1024;

enum class TKind { ListBox, ComboBox, ImageCombo, ListView };

TKind KindOf(HWND control) {
  const std::string name = ClassOf(control);
  if (name == "ListBox" || name == "ComboLBox") return TKind::ListBox;
  if (name == "ComboBox") return TKind::ComboBox;
  if (name == WC_COMBOBOXEXA) return TKind::ImageCombo;
  if (name == WC_LISTVIEWA) return TKind::ListView;
  throw TUserError(NameOf(control) + " of class " + name + " has no items");
}

std::string PlainItem(HWND control, UINT lengthMessage, UINT textMessage, int index) {
  const auto item = static_cast<WPARAM>(index);
  std::wstring text(
      static_cast<size_t>(std::max<LRESULT>(0, Ask(control, lengthMessage, item))) + 1, L'\0');
  Ask(control, textMessage, item, reinterpret_cast<LPARAM>(text.data()));
  return Utf8(text.c_str());
}

std::string ImageComboItem(HWND control, int index) {
  TShared<COMBOBOXEXITEMW> item(control, {}, MaxItemText * sizeof(wchar_t));
  COMBOBOXEXITEMW request{};
  request.mask = CBEIF_TEXT;
  request.iItem = index;
  request.pszText = item.ExtraText();
  request.cchTextMax = MaxItemText;
  item.Set(request);
  Ask(control, CBEM_GETITEMW, 0, item.Address());
  return item.Text();
}

std::string ListViewItem(HWND control, int index) {
  TShared<LVITEMW> item(control, {}, MaxItemText * sizeof(wchar_t));
  LVITEMW request{};
  request.pszText = item.ExtraText();
  request.cchTextMax = MaxItemText;
  item.Set(request);
  Ask(control, LVM_GETITEMTEXTW, static_cast<WPARAM>(index), item.Address());
  return item.Text();
}

int CountOf(HWND control, TKind kind) {
  const UINT message = kind == TKind::ListBox    ? LB_GETCOUNT
                       : kind == TKind::ListView ? LVM_GETITEMCOUNT
                                                 : CB_GETCOUNT;
  return static_cast<int>(Ask(control, message));
}

std::string ItemOf(HWND control, TKind kind, int index) {
  switch (kind) {
    case TKind::ListBox:
      return PlainItem(control, LB_GETTEXTLEN, LB_GETTEXT, index);
    case TKind::ComboBox:
      return PlainItem(control, CB_GETLBTEXTLEN, CB_GETLBTEXT, index);
    case TKind::ImageCombo:
      return ImageComboItem(control, index);
    case TKind::ListView:
      return ListViewItem(control, index);
  }
  return {};
}

/// The list that an open combo box shows.
HWND OpenList(HWND combo) {
  for (const HWND window : TopWindows(ProcessOf(combo)))
    if (ClassOf(window) == "ComboLBox" && Shown(window)) return window;
  throw TUserError("the list of " + NameOf(combo) + " is not open");
}

RECT ListViewRect(HWND control, int index, int part) {
  RECT request{};
  request.left = part;
  TShared<RECT> rect(control, request);
  Ask(control, LVM_GETITEMRECT, static_cast<WPARAM>(index), rect.Address());
  return rect.Get();
}

POINT ToScreen(HWND window, POINT point) {
  ClientToScreen(window, &point);
  return point;
}
}  // namespace

std::vector<std::string> ItemsOf(HWND control) {
  const TKind kind = KindOf(control);
  std::vector<std::string> items;
  for (int index = 0; index < CountOf(control, kind); ++index)
    items.push_back(ItemOf(control, kind, index));
  return items;
}

int SelectedItemOf(HWND control) {
  switch (KindOf(control)) {
    case TKind::ListBox:
      return static_cast<int>(Ask(control, LB_GETCURSEL));
    case TKind::ListView:
      return static_cast<int>(
          Ask(control, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
    default:
      return static_cast<int>(Ask(control, CB_GETCURSEL));
  }
}

int IndexOfItem(HWND control, std::string_view item) {
  const std::vector<std::string> items = ItemsOf(control);
  const auto found = std::find(items.begin(), items.end(), item);
  return found == items.end() ? -1 : static_cast<int>(found - items.begin());
}

bool ItemChecked(HWND control, int index) {
  const LRESULT state =
      Ask(control, LVM_GETITEMSTATE, static_cast<WPARAM>(index), LVIS_STATEIMAGEMASK);
  return state >> 12 == 2;
}

POINT PointOnItem(HWND control, int index) {
  const TKind kind = KindOf(control);
  const auto item = static_cast<WPARAM>(index);
  RECT rect{};
  if (kind == TKind::ListView) {
    Ask(control, LVM_ENSUREVISIBLE, item, FALSE);
    rect = ListViewRect(control, index, LVIR_LABEL);
    // Labels may be wider than the control; their start is always in it.
    return ToScreen(control, {rect.left + 4, (rect.top + rect.bottom) / 2});
  }
  const HWND list = kind == TKind::ListBox ? control : OpenList(control);
  // An open list may lie under its owner for a moment.
  const ULONGLONG deadline = GetTickCount64() + TUser::PatienceMs;
  for (;; Sleep(TUser::LookAgainMs)) {
    Ask(list, LB_SETTOPINDEX, item);
    Ask(list, LB_GETITEMRECT, item, reinterpret_cast<LPARAM>(&rect));
    const POINT point =
        ToScreen(list, {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2});
    if (WindowFromPoint(point) == list) return point;
    if (GetTickCount64() > deadline)
      throw TUserError("an item of " + NameOf(control) + " cannot be seen in its list");
  }
}

int ItemUnder(HWND combo, POINT point) {
  if (!Ask(combo, CB_GETDROPPEDSTATE)) return -1;
  const HWND list = OpenList(combo);
  ScreenToClient(list, &point);
  const auto place = static_cast<LPARAM>(MAKELPARAM(point.x, point.y));
  return static_cast<int>(Ask(list, LB_ITEMFROMPOINT, 0, place, -1));
}

POINT PointOnItemCheckBox(HWND control, int index) {
  Ask(control, LVM_ENSUREVISIBLE, static_cast<WPARAM>(index), FALSE);
  const RECT row = ListViewRect(control, index, LVIR_BOUNDS);
  TShared<LVHITTESTINFO> hit(control, {});
  for (LONG x = row.left; x < row.right; x += 2) {
    LVHITTESTINFO request{};
    request.pt = {x, (row.top + row.bottom) / 2};
    hit.Set(request);
    Ask(control, LVM_HITTEST, 0, hit.Address());
    // Two pixels further: the very edge is no place to aim at.
    if (hit.Get().flags == LVHT_ONITEMSTATEICON) return ToScreen(control, {x + 2, request.pt.y});
  }
  throw TUserError("the items of " + NameOf(control) + " have no check box");
}
