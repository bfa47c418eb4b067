#include "text/line_store.h"

#include <algorithm>
#include <limits>
#include <new>
#include <stdexcept>

namespace {

constexpr std::size_t kSmallestPage = 256;

}  // namespace

std::size_t TLineStore::Footprint(std::size_t length) {
  return (sizeof(THeader) + length + Unit - 1) / Unit * Unit;
}

void TLineStore::AddPage(std::size_t size) {
  if (FPages.size() >= (std::size_t{1} << (31 - UnitBits))) throw std::length_error("lines");
  FPages.push_back(std::make_unique_for_overwrite<char[]>(size));
}

TLineId TLineStore::New(std::string_view text) {
  if (text.size() > std::numeric_limits<std::uint32_t>::max() / 2) throw std::length_error("line");
  const std::size_t size = Footprint(text.size());
  std::size_t page = FShared;
  std::size_t at = 0;
  if (size > LargestPage / 8) {
    // A page of its own, so that it does not waste the rest of a shared one.
    AddPage(size);
    page = FPages.size() - 1;
  } else {
    if (FSize - FNext < size) {
      const std::size_t newSize = std::max(std::clamp(FUsed, kSmallestPage, LargestPage), size);
      AddPage(newSize);
      FSize = newSize;
      FShared = page = FPages.size() - 1;
      FNext = 0;
    }
    at = FNext;
    FNext += size;
  }
  FUsed += size;
  auto* header = new (FPages[page].get() + at) THeader{static_cast<std::uint32_t>(text.size()), 0};
  std::copy(text.begin(), text.end(), reinterpret_cast<char*>(header + 1));
  return static_cast<TLineId>(page << UnitBits | at / Unit);
}

void TLineStore::Free(TLineId id) noexcept { FHoles += Footprint(Header(id)->Length); }

bool TLineStore::Sparse() const { return FHoles > LargestPage && FHoles > FUsed / 2; }
