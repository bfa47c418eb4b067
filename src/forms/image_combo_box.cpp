#include "forms/image_combo_box.h"

#include <windows.h>

#include <commctrl.h>

#include <algorithm>

#include "forms/form.h"
#include "platform/code_page.h"
#include "platform/common_controls.h"

TControl::TWindowParams TImageComboBox::WindowParams() const {
  return {WC_COMBOBOXEXW, CBS_DROPDOWNLIST | WS_VSCROLL | TabStopStyle(), 0};
}

void TImageComboBox::Created() { Attach(Inner()); }

HWND TImageComboBox::Inner() const { return reinterpret_cast<HWND>(Send(CBEM_GETCOMBOCONTROL)); }

// The outer window takes its height from the inner one, which in turn gets no more than that closed
// height from it: its list would open with no room.
void TImageComboBox::SetBounds(const RECT& bounds) {
  const auto fit = [&] {
    FDropDown.Fit(Inner(), bounds.bottom - bounds.top, Number("list-lines", kDropDownLines));
  };
  fit();
  TControl::SetBounds(bounds);
  fit();
}

void TImageComboBox::SetImages(const TImageList* images) {
  const RECT bounds = Bounds();
  Send(CBEM_SETIMAGELIST, 0, images ? reinterpret_cast<LPARAM>(images->Handle()) : 0);
  SetBounds(bounds);
}

int TImageComboBox::ImageWidth() const {
  int width = 0;
  int height = 0;
  CommonControls().ImageList_GetIconSize(reinterpret_cast<HIMAGELIST>(Send(CBEM_GETIMAGELIST)),
                                         &width, &height);
  constexpr int kGap = 4;  // between image and text
  return width + kGap;
}

std::wstring TImageComboBox::CutText(POINT /*at*/) const {
  return FDropDown.CutText(Inner(), ImageWidth());
}

int TImageComboBox::Count() const { return static_cast<int>(Send(CB_GETCOUNT)); }

std::wstring TImageComboBox::ItemWide(int index) const {
  // The control cuts what does not fit: names longer than this are found nowhere in a database.
  std::wstring text(1024, L'\0');
  COMBOBOXEXITEMW item{};
  item.mask = CBEIF_TEXT;
  item.iItem = index;
  item.pszText = text.data();
  item.cchTextMax = static_cast<int>(text.size());
  if (!Send(CBEM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item))) return {};
  // The control may answer with a pointer of its own instead of filling the buffer.
  return item.pszText ? std::wstring(item.pszText) : std::wstring();
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
    if (lstrcmpiW(ItemWide(i).c_str(), wanted.c_str()) == 0) return i;
  }
  return -1;
}

void TImageComboBox::HandleCommand(WORD code) {
  if (code == CBN_SETFOCUS) Form().ControlFocused(*this, nullptr);
  if (FDropDown.Chosen(Inner(), code)) Raise(OnChange);
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
  // One letter again and again walks from item to item.
  const bool walking = FTyped.find_first_not_of(typed) == std::wstring::npos;
  const std::wstring wanted = walking ? std::wstring(1, typed) : FTyped;
  const int count = Count();
  const int from = std::max(ItemIndex() + (walking ? 1 : 0), 0);
  for (int i = 0; i < count; ++i) {
    const int index = (from + i) % count;
    if (lstrcmpiW(ItemWide(index).substr(0, wanted.size()).c_str(), wanted.c_str()) != 0) continue;
    if (index != ItemIndex()) {
      SetItemIndex(index);
      if (FDropDown.Moved()) Raise(OnChange);
    }
    return;
  }
}
