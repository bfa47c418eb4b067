#pragma once

#include <cstdint>
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
    if constexpr (std::is_same_v<THandle, void*>) {
      if (reinterpret_cast<std::intptr_t>(handle) == -1) FHandle = nullptr;
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

struct TCloseHandle {
  void operator()(void* handle) const;
};

/// Files, threads, events, mutexes.
using TKernelHandle = TOwned<void*, TCloseHandle>;
