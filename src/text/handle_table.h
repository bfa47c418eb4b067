#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <utility>

/// A handle number that no table has handed out before and that a host is unlikely to make up. Not
/// an address, so that a stale handle cannot come to mean a younger object.
std::uint32_t NewHandleNumber();

/// The objects that the host holds by handle. A handle is only ever looked up here: null, freed,
/// foreign and random ones mean no object.
template <class TObject>
class THandleTable {
 public:
  template <class... TArguments>
  std::uint32_t Create(TArguments&&... arguments) {
    auto object = std::make_unique<TObject>(std::forward<TArguments>(arguments)...);
    for (;;) {
      const std::uint32_t handle = NewHandleNumber();
      // The numbers start over after 2^32 handles, when an early one may still live.
      if (FObjects.try_emplace(handle, std::move(object)).second) return handle;
    }
  }
  TObject* Find(std::uint32_t handle) const {
    const auto found = FObjects.find(handle);
    return found == FObjects.end() ? nullptr : found->second.get();
  }
  void Free(std::uint32_t handle) { FObjects.erase(handle); }

 private:
  std::unordered_map<std::uint32_t, std::unique_ptr<TObject>> FObjects;
};
