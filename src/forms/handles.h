#pragma once

#include <windows.h>

#include <utility>

/// Owner of one system handle: freed with the owner, moved, never copied.
template <class THandle, auto Free>
class TOwned {
 public:
  TOwned() = default;
  explicit TOwned(THandle handle) : FHandle(handle) {}
  TOwned(TOwned&& other) noexcept : FHandle(std::exchange(other.FHandle, nullptr)) {}
  TOwned& operator=(TOwned&& other) noexcept {
    std::swap(FHandle, other.FHandle);
    return *this;
  }
  ~TOwned() {
    if (FHandle) Free(FHandle);
  }
  THandle Get() const { return FHandle; }
  explicit operator bool() const { return FHandle != nullptr; }

 private:
  THandle FHandle = nullptr;
};

using TFontHandle = TOwned<HFONT, [](HFONT font) { DeleteObject(font); }>;
using TBitmapHandle = TOwned<HBITMAP, [](HBITMAP bitmap) { DeleteObject(bitmap); }>;
using TIconHandle = TOwned<HICON, [](HICON icon) { DestroyIcon(icon); }>;
using TMemoryDc = TOwned<HDC, [](HDC dc) { DeleteDC(dc); }>;

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
