#include "forms/items_control.h"

#include <algorithm>

#include "forms/text_fit.h"
#include "platform/code_page.h"

namespace {

LPARAM TextParam(const std::wstring& text) { return reinterpret_cast<LPARAM>(text.c_str()); }

}  // namespace

std::string TItemsControl::Item(int index) const { return ToAnsi(ItemWide(index)); }

int TItemsControl::WidestItem() const {
  constexpr int kMargins = 8;
  int widest = 0;
  for (int i = 0, count = Count(); i < count; ++i) {
    widest = std::max(widest, TextWidth(Handle(), ItemWide(i)));
  }
  return widest + kMargins;
}

int TNativeItemsControl::Count() const { return static_cast<int>(Send(Messages().Count)); }

std::wstring TNativeItemsControl::ItemWide(int index) const {
  const LRESULT length = Send(Messages().TextLength, static_cast<WPARAM>(index));
  if (length < 0) return {};
  std::wstring text(static_cast<std::size_t>(length), L'\0');
  Send(Messages().Text, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
  return text;
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
