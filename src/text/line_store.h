#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

/// Names a line for as long as it lives: where its page is and where it stands there. Less than
/// 2^31. Never used again within one store.
using TLineId = std::uint32_t;

/// The characters of a list's lines, packed into pages: a list of short lines would otherwise spend
/// more on the heap's bookkeeping than on its text, and a look-up would touch the memory twice.
/// A freed line leaves a hole; the owner starts another store when the holes grow.
class TLineStore {
 public:
  std::string_view Text(TLineId id) const;
  /// A number that the owner keeps with the line.
  std::uint32_t& Tag(TLineId id) { return Header(id)->Tag; }
  std::uint32_t Tag(TLineId id) const { return Header(id)->Tag; }

  /// May be given a text of this store. Texts already there stay where they are.
  TLineId New(std::string_view text);
  void Free(TLineId id) noexcept;
  /// More holes than text, and enough of them to matter.
  bool Sparse() const;

 private:
  /// Stands before the characters.
  struct THeader {
    std::uint32_t Length;
    std::uint32_t Tag;
  };
  static constexpr std::size_t Unit = alignof(THeader);
  static constexpr unsigned UnitBits = 14;
  static constexpr std::size_t LargestPage = Unit << UnitBits;

  static std::size_t Footprint(std::size_t length);
  THeader* Header(TLineId id) const;
  void AddPage(std::size_t size);

  std::vector<std::unique_ptr<char[]>> FPages;
  std::size_t FShared = 0;  ///< number of the page that short texts are put into
  std::size_t FNext = 0;    ///< bytes used of it
  std::size_t FSize = 0;    ///< bytes it has
  std::size_t FUsed = 0;    ///< bytes handed out, holes included
  std::size_t FHoles = 0;
};

inline TLineStore::THeader* TLineStore::Header(TLineId id) const {
  char* page = FPages[id >> UnitBits].get();
  return reinterpret_cast<THeader*>(page + (id & ((1u << UnitBits) - 1)) * Unit);
}

inline std::string_view TLineStore::Text(TLineId id) const {
  const THeader* header = Header(id);
  return {reinterpret_cast<const char*>(header + 1), header->Length};
}
