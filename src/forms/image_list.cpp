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

/// A bit for each pixel, set where the picture is not: versions of the common controls that do not
/// look at the alpha go by it.
TBitmapHandle MakeMask(const TGlyph& glyph) {
  const auto size = static_cast<std::size_t>(glyph.Size);
  const std::size_t stride = (size + 15) / 16 * 2;
  std::vector<std::uint8_t> bits(stride * size);
  for (std::size_t y = 0; y < size; ++y) {
    for (std::size_t x = 0; x < size; ++x) {
      const bool clear = (glyph.Pixels[y * size + x] >> 24) < 0x80;
      if (clear) bits[y * stride + x / 8] |= static_cast<std::uint8_t>(0x80 >> x % 8);
    }
  }
  TBitmapHandle mask(CreateBitmap(glyph.Size, glyph.Size, 1, 1, bits.data()));
  if (!mask) throw std::runtime_error("bitmap refused");
  return mask;
}

}  // namespace

TImageList::TImageList(std::initializer_list<std::string_view> glyphs, int dpi) {
  const int size = MulDiv(16, dpi, 96);
  const auto& controls = CommonControls();
  FHandle = decltype(FHandle)(controls.ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK,
                                                        static_cast<int>(glyphs.size()), 0));
  for (const auto name : glyphs) {
    TGlyph glyph{16, std::vector<std::uint32_t>(16 * 16)};
    if (!name.empty()) glyph = ParseGlyph(LoadTextResource("GLYPH", name));
    glyph = ScaleGlyph(glyph, size);
    controls.ImageList_Add(Handle(), MakeBitmap(glyph).Get(), MakeMask(glyph).Get());
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
  CommonControls().ImageList_DrawIndirect(&params);
}
