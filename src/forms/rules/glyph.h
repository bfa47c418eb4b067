#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

/// A small square picture, 16 pixels a side, drawn as text so that it can be read and reviewed:
///
///     b 1D5FA8
///     ................
///     ..bbbbbb........      (16 rows in all; a dot is transparent)
struct TGlyph {
  int Size = 0;
  /// Rows from the top; each pixel 0xAARRGGBB, colours multiplied by their alpha.
  std::vector<std::uint32_t> Pixels;
};

/// Throws TLayoutError for a wrong number of rows or columns or an unknown letter.
TGlyph ParseGlyph(std::string_view text);

/// The glyph at another size, each pixel the average of the area it covers.
TGlyph ScaleGlyph(const TGlyph& glyph, int size);
