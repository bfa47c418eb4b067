#pragma once

#include <windows.h>

#include <utility>

/// Owner of one system handle: freed with the owner, moved, never copied.
template <class THandle, class TFree>
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
    if (FHandle) TFree()(FHandle);
  }
  THandle Get() const { return FHandle; }
  explicit operator bool() const { return FHandle != nullptr; }

 private:
  THandle FHandle = nullptr;
};

struct TFreeObject {
  void operator()(HGDIOBJ object) const { DeleteObject(object); }
};

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
