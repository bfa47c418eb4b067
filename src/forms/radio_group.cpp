#include "forms/radio_group.h"

#include <windows.h>

#include <commctrl.h>

#include <algorithm>

#include "forms/form.h"
#include "platform/code_page.h"

TControl::TWindowParams TRadioGroup::WindowParams() const { return {WC_BUTTONW, BS_GROUPBOX, 0}; }

void TRadioGroup::Created() {
  const auto* items = Layout().Find("items");
  if (!items) return;
  for (const auto& item : items->Values) {
    // Only the first opens the group, so that the arrow keys stay among its buttons. They are the
    // frame's neighbours, not its children: that is where the system's dialog keys look for them.
    const DWORD group = FItems.empty() ? WS_GROUP : 0;
    const auto id = static_cast<INT_PTR>(100) + Form().NextControlId();
    const HWND button = CreateWindowExW(0, WC_BUTTONW, Utf8ToWide(item).c_str(),
                                        WS_CHILD | WS_VISIBLE | BS_AUTORADIOBUTTON | group, 0, 0, 0,
                                        0, Form().Handle(), reinterpret_cast<HMENU>(id),
                                        TApplication::Instance(), nullptr);
    if (!button) throw std::runtime_error("window refused: " + Name());
    SetWindowName(button, Name() + std::to_string(FItems.size()));
    Attach(button);
    FItems.push_back(button);
  }
  SetItemIndex(Number("item", -1));
  Arrange();
}

void TRadioGroup::SetItemIndex(int index) {
  FItemIndex = index;
  for (std::size_t i = 0; i < FItems.size(); ++i) {
    const bool checked = static_cast<int>(i) == index;
    SendMessageW(FItems[i], BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED, 0);
    // One stop for the whole group.
    const bool stop = TabStopStyle() && static_cast<int>(i) == std::max(index, 0);
    const LONG style = GetWindowLongW(FItems[i], GWL_STYLE) & ~WS_TABSTOP;
    SetWindowLongW(FItems[i], GWL_STYLE, stop ? style | WS_TABSTOP : style);
  }
}

void TRadioGroup::ItemClicked(HWND item) {
  const auto found = std::ranges::find(FItems, item);
  const int index = static_cast<int>(found - FItems.begin());
  if (found == FItems.end() || index == FItemIndex) return;
  FItemIndex = index;
  Raise(OnClick);
  if (FItemIndex == index || FItemIndex < 0 || GetFocus() != item) return;
  ::SetFocus(FItems[static_cast<std::size_t>(FItemIndex)]);
}

void TRadioGroup::EnableWindows(bool enabled) {
  TControl::EnableWindows(enabled);
  for (const HWND item : FItems) EnableWindow(item, enabled);
}

void TRadioGroup::SetVisible(bool visible) {
  TControl::SetVisible(visible);
  for (const HWND item : FItems) ShowWindow(item, visible ? SW_SHOWNA : SW_HIDE);
}

void TRadioGroup::SetFont(HFONT font) {
  TControl::SetFont(font);
  for (const HWND item : FItems)
    SendMessageW(item, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
}

bool TRadioGroup::Owns(HWND window) const {
  return TControl::Owns(window) || std::ranges::find(FItems, window) != FItems.end();
}

void TRadioGroup::Arrange() {
  if (FItems.empty()) return;
  const RECT frame = Bounds();
  const int columns = std::max(Number("columns", 1), 1);
  const int rows = (static_cast<int>(FItems.size()) + columns - 1) / columns;
  const int margin = Form().Scaled(8);
  const int top = frame.top + Form().Scaled(15);
  const int width = (frame.right - frame.left - 2 * margin) / columns;
  const int height = (frame.bottom - top - Form().Scaled(4)) / rows;
  for (int i = 0; i < static_cast<int>(FItems.size()); ++i) {
    SetWindowPos(FItems[static_cast<std::size_t>(i)], Handle(),
                 frame.left + margin + i / rows * width, top + i % rows * height, width, height,
                 SWP_NOACTIVATE | SWP_NOZORDER);
  }
}

void TRadioGroup::SetBounds(const RECT& bounds) {
  TControl::SetBounds(bounds);
  Arrange();
}
