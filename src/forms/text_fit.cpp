#include "forms/text_fit.h"

#include "platform/handle.h"

namespace {
constexpr int kMargins = 4;  // those that lists and statics leave beside their text, together
}

int TextWidth(HWND window, const std::wstring& text) {
  const TWindowDc dc(window);
  const HGDIOBJ before =
      SelectObject(dc.Get(), reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)));
  SIZE size{};
  GetTextExtentPoint32W(dc.Get(), text.c_str(), static_cast<int>(text.size()), &size);
  if (before) SelectObject(dc.Get(), before);
  return size.cx;
}

std::wstring TextUnlessFits(HWND window, std::wstring text, int width) {
  return TextWidth(window, text) + kMargins > width ? std::move(text) : std::wstring();
}
