#include "text/line_store.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>
#include <utility>

namespace {

constexpr std::size_t SmallestPage = 256;
constexpr std::size_t LargestPage = 64 * 1024;
/// A longer text gets a page of its own, so that it does not waste the rest of a shared one.
constexpr std::size_t LongestShared = LargestPage / 8;

}  // namespace

char* TLineStore::Allocate(std::size_t length) {
  if (length > std::numeric_limits<std::uint32_t>::max()) throw std::length_error("line");
  char* result = nullptr;
  if (length > LongestShared) {
    FPages.push_back(std::make_unique_for_overwrite<char[]>(length));
    result = FPages.back().get();
  } else {
    if (length > FRoom) {
      const std::size_t size = std::max(std::clamp(FUsed, SmallestPage, LargestPage), length);
      FPages.push_back(std::make_unique_for_overwrite<char[]>(size));
      FNext = FPages.back().get();
      FRoom = size;
    }
    result = FNext;
    FNext += length;
    FRoom -= length;
  }
  FUsed += length;
  return result;
}

TLineId TLineStore::New(std::string_view text) {
  if (FFirstFree == NoLine) {
    FRecords.push_back({nullptr, NoLine});
    FFirstFree = static_cast<TLineId>(FRecords.size() - 1);
  }
  char* chars = Allocate(text.size());
  std::copy(text.begin(), text.end(), chars);
  const TLineId id = FFirstFree;
  FFirstFree = FRecords[id].Length;
  FRecords[id] = {chars, static_cast<std::uint32_t>(text.size())};
  return id;
}

void TLineStore::Replace(TLineId id, std::string_view text) {
  TRecord& record = FRecords[id];
  const bool fits = text.size() <= record.Length;
  char* chars = fits ? record.Chars : Allocate(text.size());
  std::copy(text.begin(), text.end(), chars);
  FDead += fits ? record.Length - text.size() : record.Length;
  record = {chars, static_cast<std::uint32_t>(text.size())};
  CompactWhenSparse();
}

void TLineStore::Free(TLineId id) noexcept {
  FDead += FRecords[id].Length;
  FRecords[id] = {nullptr, FFirstFree};
  FFirstFree = id;
  CompactWhenSparse();
}

void TLineStore::CompactWhenSparse() noexcept {
  if (FDead < LargestPage || FDead < FUsed / 2) return;
  TLineStore packed;
  try {
    packed.FRecords = FRecords;
    for (TRecord& record : packed.FRecords) {
      if (record.Chars == nullptr) continue;
      char* chars = packed.Allocate(record.Length);
      std::memcpy(chars, record.Chars, record.Length);
      record.Chars = chars;
    }
  } catch (const std::bad_alloc&) {
    return;  // sparse but right
  }
  packed.FFirstFree = FFirstFree;
  *this = std::move(packed);
}
