#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

/// Names a line for as long as it lives; the number of a freed line is used again.
using TLineId = std::uint32_t;

/// The characters of a list's lines, packed into pages: a list of short lines would otherwise spend
/// more on the heap's bookkeeping than on its text.
class TLineStore {
 public:
  /// Valid until a line is replaced or freed.
  std::string_view Text(TLineId id) const { return {FRecords[id].Chars, FRecords[id].Length}; }

  /// May be given a text of this store.
  TLineId New(std::string_view text);
  /// Leaves the line as it was when memory runs out. The text must not be one of this store.
  void Replace(TLineId id, std::string_view text);
  void Free(TLineId id) noexcept;

 private:
  struct TRecord {
    char* Chars;
    std::uint32_t Length;  ///< of a freed line: the next freed one
  };

  char* Allocate(std::size_t length);
  void CompactWhenSparse() noexcept;

  std::vector<TRecord> FRecords;
  std::vector<std::unique_ptr<char[]>> FPages;
  char* FNext = nullptr;
  std::size_t FRoom = 0;
  std::size_t FUsed = 0;  ///< bytes handed out, dead ones included
  std::size_t FDead = 0;
  TLineId FFirstFree = NoLine;

  static constexpr TLineId NoLine = 0xFFFFFFFFu;
};
