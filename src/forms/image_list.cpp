#include "forms/image_list.h"

#include <cstring>
#include <stdexcept>

#include "forms/resource.h"
#include "forms/rules/glyph.h"

namespace {

TBitmapHandle MakeBitmap(const TGlyph& glyph) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = glyph.Size;
  info.bmiHeader.biHeight = -glyph.Size;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  void* bits = nullptr;
  TBitmapHandle bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  if (!bitmap) throw std::runtime_error("bitmap refused");
  std::memcpy(bits, glyph.Pixels.data(), glyph.Pixels.size() * sizeof glyph.Pixels[0]);
  return bitmap;
}

}  // namespace

TImageList::TImageList(std::initializer_list<std::string_view> glyphs, int dpi) {
  const int size = MulDiv(16, dpi, 96);
  FHandle = decltype(FHandle)(
      ImageList_Create(size, size, ILC_COLOR32, static_cast<int>(glyphs.size()), 0));
  for (const auto name : glyphs) {
    TGlyph glyph{16, std::vector<std::uint32_t>(16 * 16)};
    if (!name.empty()) glyph = ParseGlyph(LoadTextResource("GLYPH", name));
    ImageList_Add(Handle(), MakeBitmap(ScaleGlyph(glyph, size)).Get(), nullptr);
  }
}

void TImageList::Draw(int index, HDC dc, int left, int top, bool enabled) const {
  IMAGELISTDRAWPARAMS params{};
  params.cbSize = sizeof params;
  params.himl = Handle();
  params.i = index;
  params.hdcDst = dc;
  params.x = left;
  params.y = top;
  params.rgbBk = CLR_NONE;
  params.rgbFg = CLR_NONE;
  params.fStyle = ILD_TRANSPARENT;
  if (!enabled) {
    params.fState = ILS_ALPHA;
    params.Frame = 80;
  }
  ImageList_DrawIndirect(&params);
}
