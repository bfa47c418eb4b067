#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

/// A body kept in memory. It grows by blocks, so what is there is never copied again and no single
/// stretch of address space has to hold it all.
class TBodyBuffer {
 public:
  /// Bytes that a body may have: a server that never ends must not starve the host.
  static constexpr std::size_t kMost = std::size_t{256} * 1024 * 1024;

  explicit TBodyBuffer(std::size_t most = kMost) : FMost(most) {}

  /// False, with nothing added, when the body would grow beyond its limit. Throws std::bad_alloc
  /// and then holds an undefined part of the data.
  bool Append(std::span<const char> data);
  void Clear();
  std::size_t Size() const { return FSize; }
  /// Copies the first bytes, at most as many as the target holds; returns how many.
  std::size_t CopyTo(std::span<char> target) const;

 private:
  struct TBlock {
    std::unique_ptr<char[]> Bytes;
    std::size_t Capacity;
    std::size_t Used;
  };

  std::vector<TBlock> FBlocks;
  std::size_t FMost;
  std::size_t FSize = 0;
};
