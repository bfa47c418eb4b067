#include <windows.h>

#include <commctrl.h>

#include <algorithm>

#include "forms/form.h"
#include "forms/std_controls.h"
#include "forms/theme.h"
#include "platform/code_page.h"

// ---- button ----

TControl::TWindowParams TButton::WindowParams() const {
  return {WC_BUTTONW, BS_PUSHBUTTON | TabStopStyle(), 0};
}

bool TButton::Accepts(std::string_view property) const {
  return property == "default" || property == "cancel" || property == "result" ||
         TControl::Accepts(property);
}

void TButton::SetDefault() { Form().SetDefaultButton(*this); }

bool TButton::IsDefault() const { return Form().DefaultButton() == this; }

void TButton::Click() {
  if (Enabled()) HandleCommand(BN_CLICKED);
}

void TButton::HandleCommand(WORD code) {
  if (code != BN_CLICKED) return;
  if (ModalResult() != mrNone) Form().SetModalResult(ModalResult());
  Raise(OnClick);
}

// ---- bitmap button ----

TControl::TWindowParams TBitBtn::WindowParams() const {
  auto params = TButton::WindowParams();
  // The system greys a picture to a blot, so a button that is all picture draws itself; its text is
  // then for screen readers only.
  if (!HasFlag("caption")) params.Style |= BS_OWNERDRAW;
  return params;
}

bool TBitBtn::Accepts(std::string_view property) const {
  return property == "glyph" || TButton::Accepts(property);
}

void TBitBtn::Created() {
  if (!HasFlag("caption")) SetWindowTextW(Handle(), HintWide().c_str());
  DpiChanged(Form().Dpi());
}

void TBitBtn::DpiChanged(int dpi) {
  const auto glyph = Word("glyph", "");
  if (glyph.empty()) return;
  TImageList images({glyph}, dpi);
  if (HasFlag("caption")) {
    BUTTON_IMAGELIST list{};
    list.himl = images.Handle();
    list.margin = {Form().Scaled(4), 0, 0, 0};
    list.uAlign = BUTTON_IMAGELIST_ALIGN_LEFT;
    // Hosts without the newer common controls refuse this: the caption then stands alone.
    Send(BCM_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(&list));
  }
  FImages = std::move(images);
}

void TBitBtn::Draw(const DRAWITEMSTRUCT& item) const {
  const bool pressed = (item.itemState & ODS_SELECTED) != 0;
  RECT area = item.rcItem;
  DrawButtonFrame(Handle(), item.hDC, area, pressed, Enabled());
  int width = 0;
  int height = 0;
  ImageList_GetIconSize(FImages.Handle(), &width, &height);
  const int shift = pressed ? 1 : 0;
  FImages.Draw(0, item.hDC, (area.left + area.right - width) / 2 + shift,
               (area.top + area.bottom - height) / 2 + shift, Enabled());
  if (item.itemState & ODS_FOCUS) {
    InflateRect(&area, -3, -3);
    DrawFocusRect(item.hDC, &area);
  }
}

// ---- speed button ----

TControl::TWindowParams TSpeedButton::WindowParams() const { return TBitBtn::WindowParams(); }

LRESULT TSpeedButton::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto inside = [&] {
    RECT client{};
    GetClientRect(window, &client);
    const POINT at{static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
    return PtInRect(&client, at) != FALSE;
  };
  switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
      FPressed = true;
      SetCapture(window);
      Send(BM_SETSTATE, TRUE);
      return 0;
    case WM_MOUSEMOVE:
      if (!FPressed) break;
      Send(BM_SETSTATE, inside());
      return 0;
    case WM_LBUTTONUP:
      if (!FPressed) break;
      FPressed = false;
      ReleaseCapture();
      Send(BM_SETSTATE, FALSE);
      if (inside()) Click();
      return 0;
    case WM_CAPTURECHANGED:
      if (!FPressed) break;
      FPressed = false;
      Send(BM_SETSTATE, FALSE);
      return 0;
    default:
      break;
  }
  return TBitBtn::WindowProc(window, message, wParam, lParam);
}

// ---- radio group ----

TControl::TWindowParams TRadioGroup::WindowParams() const { return {WC_BUTTONW, BS_GROUPBOX, 0}; }

bool TRadioGroup::Accepts(std::string_view property) const {
  return property == "items" || property == "columns" || property == "item" ||
         TControl::Accepts(property);
}

void TRadioGroup::Created() {
  const auto* items = Layout().Find("items");
  if (!items) return;
  for (const auto& item : items->Values) {
    // Only the first opens the group, so that the arrow keys stay among its buttons. They are the
    // frame's neighbours, not its children: that is where the system's dialog keys look for them.
    const DWORD group = FItems.empty() ? WS_GROUP | TabStopStyle() : 0;
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
  }
}

void TRadioGroup::ItemClicked(HWND item) {
  const auto found = std::ranges::find(FItems, item);
  const int index = static_cast<int>(found - FItems.begin());
  if (found == FItems.end() || index == FItemIndex) return;
  FItemIndex = index;
  Raise(OnClick);
}

void TRadioGroup::SetEnabled(bool enabled) {
  TControl::SetEnabled(enabled);
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
