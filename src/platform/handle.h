#pragma once

#include <windows.h>

#include "platform/owned.h"

/// More ways handles are freed, and the kinds named after what they hold.
struct TCloseSearch {
  void operator()(HANDLE search) const { FindClose(search); }
};
struct TCloseKey {
  void operator()(HKEY key) const { RegCloseKey(key); }
};
struct TFreeModule {
  void operator()(HMODULE module) const { FreeLibrary(module); }
};
struct TFreeObject {
  void operator()(HGDIOBJ object) const { DeleteObject(object); }
};

using TSearchHandle = TOwned<HANDLE, TCloseSearch>;
using TKeyHandle = TOwned<HKEY, TCloseKey>;
using TModuleHandle = TOwned<HMODULE, TFreeModule>;
using TFontHandle = TOwned<HFONT, TFreeObject>;
using TBitmapHandle = TOwned<HBITMAP, TFreeObject>;

/// The device context of a window (null: the screen) for as long as this lives.
class TWindowDc {
 public:
  explicit TWindowDc(HWND window) : FWindow(window), FDc(GetDC(window)) {}
  TWindowDc(const TWindowDc&) = delete;
  TWindowDc& operator=(const TWindowDc&) = delete;
  ~TWindowDc() { ReleaseDC(FWindow, FDc); }
  HDC Get() const { return FDc; }

 private:
  HWND FWindow;
  HDC FDc;
};
