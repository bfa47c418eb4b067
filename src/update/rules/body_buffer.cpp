#include "update/rules/body_buffer.h"

#include <algorithm>
#include <cstring>

namespace {
constexpr std::size_t kFirstBlock = 4096;
constexpr std::size_t kLargestBlock = std::size_t{1024} * 1024;
}  // namespace

bool TBodyBuffer::Append(std::span<const char> data) {
  if (data.size() > FMost - FSize) return false;
  while (!data.empty()) {
    if (FBlocks.empty() || FBlocks.back().Used == FBlocks.back().Capacity) {
      const std::size_t capacity = std::clamp(FSize, kFirstBlock, kLargestBlock);
      FBlocks.push_back({std::make_unique_for_overwrite<char[]>(capacity), capacity, 0});
    }
    auto& block = FBlocks.back();
    const std::size_t count = std::min(data.size(), block.Capacity - block.Used);
    std::memcpy(block.Bytes.get() + block.Used, data.data(), count);
    block.Used += count;
    FSize += count;
    data = data.subspan(count);
  }
  return true;
}

void TBodyBuffer::Clear() {
  FBlocks.clear();
  FSize = 0;
}

std::size_t TBodyBuffer::CopyTo(std::span<char> target) const {
  std::size_t copied = 0;
  for (const auto& block : FBlocks) {
    const std::size_t count = std::min(block.Used, target.size() - copied);
    std::copy_n(block.Bytes.get(), count, target.data() + copied);
    copied += count;
  }
  return copied;
}
