#include "forms/rules/glyph.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

#include "forms/rules/layout.h"

namespace {

constexpr int kSide = 16;

std::string_view TakeLine(std::string_view& text) {
  const auto end = std::min(text.find('\n'), text.size());
  auto line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.remove_suffix(1);
  return line;
}

std::uint32_t ParseColor(std::string_view hex) {
  std::uint32_t color = 0;
  const char* const last = hex.data() + hex.size();
  const auto [end, error] = std::from_chars(hex.data(), last, color, 16);
  if (hex.size() != 6 || error != std::errc() || end != last) {
    throw TLayoutError("a glyph's colour has six hexadecimal digits");
  }
  return color | 0xFF000000u;
}

}  // namespace

TGlyph ParseGlyph(std::string_view text) {
  std::array<std::uint32_t, 256> palette{};
  std::array<bool, 256> known{};
  known['.'] = true;
  TGlyph glyph{kSide, {}};
  while (!text.empty()) {
    const auto line = TakeLine(text);
    if (line.empty() || line[0] == '#') continue;
    if (line.substr(1).starts_with(' ')) {
      palette[static_cast<unsigned char>(line[0])] = ParseColor(line.substr(2));
      known[static_cast<unsigned char>(line[0])] = true;
      continue;
    }
    if (line.size() != kSide) throw TLayoutError("a glyph's row has 16 pixels");
    for (const char c : line) {
      if (!known[static_cast<unsigned char>(c)]) throw TLayoutError("unknown letter in a glyph");
      glyph.Pixels.push_back(palette[static_cast<unsigned char>(c)]);
    }
  }
  if (glyph.Pixels.size() != std::size_t{kSide} * kSide) throw TLayoutError("a glyph has 16 rows");
  return glyph;
}

TGlyph ScaleGlyph(const TGlyph& glyph, int size) {
  const int from = glyph.Size;
  // Along a side there are from * size parts: a pixel is `size` of them before, `from` after.
  const auto shared = [&](int before, int after) {
    return std::min((before + 1) * size, (after + 1) * from) -
           std::max(before * size, after * from);
  };
  TGlyph scaled{size, {}};
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      std::array<int, 4> sum{};
      for (int sy = y * from / size; sy * size < (y + 1) * from; ++sy) {
        for (int sx = x * from / size; sx * size < (x + 1) * from; ++sx) {
          const auto pixel = glyph.Pixels[static_cast<std::size_t>(sy * from + sx)];
          const int parts = shared(sx, x) * shared(sy, y);
          for (unsigned channel = 0; channel < 4; ++channel) {
            sum[channel] += static_cast<int>((pixel >> (8 * channel)) & 0xFF) * parts;
          }
        }
      }
      std::uint32_t pixel = 0;
      const int area = from * from;
      for (unsigned channel = 0; channel < 4; ++channel) {
        pixel |= static_cast<std::uint32_t>((sum[channel] + area / 2) / area) << (8 * channel);
      }
      scaled.Pixels.push_back(pixel);
    }
  }
  return scaled;
}
