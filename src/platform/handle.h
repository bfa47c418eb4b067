#pragma once

#include <windows.h>

#include <type_traits>
#include <utility>

/// The one owner of a handle of the system: frees it as its kind is freed, is moved and never
/// copied. Empty for null and, since some of the system's functions fail with it, for
/// INVALID_HANDLE_VALUE. Any thread, one at a time.
template <class THandle, class TFree>
class TOwned {
 public:
  TOwned() = default;
  explicit TOwned(THandle handle) : FHandle(handle) {
    if constexpr (std::is_same_v<THandle, HANDLE>) {
      if (handle == INVALID_HANDLE_VALUE) FHandle = nullptr;
    }
  }
  TOwned(TOwned&& other) noexcept : FHandle(std::exchange(other.FHandle, nullptr)) {}
  TOwned& operator=(TOwned&& other) noexcept {
    std::swap(FHandle, other.FHandle);
    return *this;
  }
  ~TOwned() { Reset(); }

  THandle Get() const { return FHandle; }
  explicit operator bool() const { return FHandle != nullptr; }
  /// Frees it now.
  void Reset() {
    if (FHandle) TFree()(std::exchange(FHandle, nullptr));
  }

 private:
  THandle FHandle = nullptr;
};

/// The ways handles are freed, and the kinds named after what they hold.
struct TCloseHandle {
  void operator()(HANDLE handle) const { CloseHandle(handle); }
};
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

/// Files, threads, events, mutexes.
using TKernelHandle = TOwned<HANDLE, TCloseHandle>;
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
