#pragma once

#include <windows.h>

#include <initializer_list>
#include <string_view>

#include "platform/common_controls.h"
#include "platform/handle.h"

/// Small pictures of one size, made from the library's glyphs.
class TImageList {
 public:
  TImageList() = default;
  /// One image a glyph, at the size for the DPI. A glyph is named by its resource; an empty name
  /// leaves an empty image. Throws std::runtime_error for an unknown one.
  TImageList(std::initializer_list<std::string_view> glyphs, int dpi);
  HIMAGELIST Handle() const { return FHandle.Get(); }
  /// Greyed and pale when not enabled.
  void Draw(int index, HDC dc, int left, int top, bool enabled) const;

 private:
  struct TFree {
    void operator()(HIMAGELIST list) const { CommonControls().ImageList_Destroy(list); }
  };
  TOwned<HIMAGELIST, TFree> FHandle;
};
