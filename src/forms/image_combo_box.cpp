#include <windows.h>

#include <commctrl.h>

#include <algorithm>

#include "forms/form.h"
#include "forms/list_controls.h"
#include "platform/code_page.h"

TControl::TWindowParams TImageComboBox::WindowParams() const {
  return {WC_COMBOBOXEXW, CBS_DROPDOWNLIST | WS_VSCROLL | TabStopStyle(), 0};
}

void TImageComboBox::Created() {
  Attach(Inner());
  SetBounds(Bounds());
}

HWND TImageComboBox::Inner() const { return reinterpret_cast<HWND>(Send(CBEM_GETCOMBOCONTROL)); }

bool TImageComboBox::Accepts(std::string_view property) const {
  return property == "list-lines" || property == "change" || TControl::Accepts(property);
}

void TImageComboBox::SetBounds(const RECT& bounds) {
  TControl::SetBounds(bounds);
  // The outer window gives the inner one its closed height only: its list would open with no room.
  const auto line = static_cast<int>(Send(CB_GETITEMHEIGHT, 0));
  const int closed = static_cast<int>(bounds.bottom - bounds.top);
  SetWindowPos(Inner(), nullptr, 0, 0, bounds.right - bounds.left,
               closed + line * Number("list-lines", 8) + Form().Scaled(4),
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void TImageComboBox::SetImages(const TImageList* images) {
  Send(CBEM_SETIMAGELIST, 0, images ? reinterpret_cast<LPARAM>(images->Handle()) : 0);
}

int TImageComboBox::Count() const { return static_cast<int>(Send(CB_GETCOUNT)); }

std::string TImageComboBox::Item(int index) const {
  // The control cuts what does not fit: names longer than this are found nowhere in a database.
  std::wstring text(1024, L'\0');
  COMBOBOXEXITEMW item{};
  item.mask = CBEIF_TEXT;
  item.iItem = index;
  item.pszText = text.data();
  item.cchTextMax = static_cast<int>(text.size());
  if (!Send(CBEM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item))) return {};
  // The control may answer with a pointer of its own instead of filling the buffer.
  return ToAnsi(item.pszText ? std::wstring_view(item.pszText) : std::wstring_view());
}

int TImageComboBox::AddItem(std::string_view text, int image) {
  std::wstring wide = ToWide(text);
  COMBOBOXEXITEMW item{};
  item.mask = CBEIF_TEXT | CBEIF_IMAGE | CBEIF_SELECTEDIMAGE | CBEIF_OVERLAY | CBEIF_INDENT;
  item.iItem = -1;
  item.pszText = wide.data();
  item.iImage = image;
  item.iSelectedImage = image;
  return static_cast<int>(Send(CBEM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item)));
}

void TImageComboBox::DeleteItem(int index) { Send(CBEM_DELETEITEM, static_cast<WPARAM>(index)); }

void TImageComboBox::ClearItems() { Send(CB_RESETCONTENT); }

int TImageComboBox::ItemIndex() const { return static_cast<int>(Send(CB_GETCURSEL)); }

void TImageComboBox::SetItemIndex(int index) { Send(CB_SETCURSEL, static_cast<WPARAM>(index)); }

int TImageComboBox::IndexOf(std::string_view text) const {
  const std::wstring wanted = ToWide(text);
  for (int i = 0, count = Count(); i < count; ++i) {
    if (lstrcmpiW(ToWide(Item(i)).c_str(), wanted.c_str()) == 0) return i;
  }
  return -1;
}

void TImageComboBox::HandleCommand(WORD code) {
  if (code == CBN_SETFOCUS) Form().ControlFocused(*this);
  if (code == CBN_SELCHANGE) Raise(OnChange);
}

LRESULT TImageComboBox::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_CHAR && window != Handle() && wParam > L' ') {
    TypeAhead(static_cast<wchar_t>(wParam));
    return 0;
  }
  if (message == WM_KILLFOCUS) FTyped.clear();
  return TItemsControl::WindowProc(window, message, wParam, lParam);
}

void TImageComboBox::TypeAhead(wchar_t typed) {
  // The control draws its items itself and so cannot search them as a plain list does.
  constexpr DWORD kPauseMilliseconds = 1000;
  const DWORD now = GetTickCount();
  if (now - FTypedAt > kPauseMilliseconds) FTyped.clear();
  FTypedAt = now;
  FTyped += typed;
  const int count = Count();
  const int from = std::max(ItemIndex(), 0) + (FTyped.size() == 1 ? 1 : 0);
  for (int i = 0; i < count; ++i) {
    const int index = (from + i) % count;
    const auto start = ToWide(Item(index)).substr(0, FTyped.size());
    if (lstrcmpiW(start.c_str(), FTyped.c_str()) != 0) continue;
    if (index != ItemIndex()) {
      SetItemIndex(index);
      Raise(OnChange);
    }
    return;
  }
}
