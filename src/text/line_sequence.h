#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "text/line_store.h"

/// The order of a list's lines: index to line, line to index and insertion anywhere, none of them
/// growing with the list beyond a logarithm.
///
/// Lines stand in chunks of a bounded size; a tree of partial sums over the chunks turns a chunk
/// into the index of its first line and back. A split touches every chunk's place, but happens once
/// in many insertions. A line's tag in the store is the number of its chunk.
class TLineSequence {
 public:
  struct TPlace {
    std::uint32_t Ordinal;  ///< of the chunk, counted from the first line on
    std::uint32_t Offset;
  };

  /// The store must outlive the sequence.
  explicit TLineSequence(TLineStore& store) : FStore(store) {}

  int Count() const { return FCount; }
  TLineId At(int index) const;
  int IndexOf(TLineId line) const;
  bool Before(TLineId a, TLineId b) const;

  TPlace End() const;
  /// First place whose line does not satisfy the condition; those that do come first.
  template <class TCondition>
  TPlace PartitionPoint(TCondition condition) const;

  /// Returns the index. Changes nothing when memory runs out.
  int Insert(TPlace place, TLineId line);
  void Erase(TLineId line) noexcept;
  /// Puts a line where another one stood.
  void Replace(TLineId line, TLineId by) noexcept;

  template <class TAction>
  void ForEach(TAction action) const {
    for (const TOrdered& chunk : FOrder)
      for (TLineId line : FChunks[chunk.Number]) action(line);
  }
  /// Gives every line the new name that a function returns; tags are the caller's to carry over.
  template <class TNaming>
  void Rename(TNaming naming) noexcept {
    for (TOrdered& chunk : FOrder) {
      for (TLineId& line : FChunks[chunk.Number]) line = naming(line);
      chunk.First = FChunks[chunk.Number].front();
    }
  }

 private:
  using TLines = std::vector<TLineId>;
  struct TOrdered {
    std::uint32_t Number;
    TLineId First;  ///< beside the number, so that a search does not visit the chunks it passes
    std::uint32_t Count;
  };

  TLines& ChunkAt(std::uint32_t ordinal) { return FChunks[FOrder[ordinal].Number]; }
  const TLines& ChunkAt(std::uint32_t ordinal) const { return FChunks[FOrder[ordinal].Number]; }
  int FirstIndex(std::uint32_t ordinal) const;
  static std::uint32_t OffsetIn(const TLines& lines, TLineId line);
  void Update(std::uint32_t ordinal) noexcept;
  /// The lines bring their room along, so that a chunk never stands empty for want of memory.
  void AddChunk(std::uint32_t ordinal, TLines&& lines);
  void RemoveChunk(std::uint32_t ordinal) noexcept;
  void Split(std::uint32_t ordinal);
  bool MergeWithNext(std::uint32_t ordinal) noexcept;
  void Recount() noexcept;
  void AddToSums(std::uint32_t ordinal, int change) noexcept;

  TLineStore& FStore;
  std::vector<TLines> FChunks;            ///< by number
  std::vector<std::uint32_t> FOrdinalOf;  ///< by number; of a freed chunk: the next freed one
  std::vector<TOrdered> FOrder;           ///< by ordinal
  std::vector<int> FSums;                 ///< binary indexed tree, 1-based, over FOrder
  std::uint32_t FFirstFree = NoChunk;
  int FCount = 0;

  static constexpr std::uint32_t NoChunk = 0xFFFFFFFFu;
};

template <class TCondition>
TLineSequence::TPlace TLineSequence::PartitionPoint(TCondition condition) const {
  // Lines that arrive in order cost one question.
  if (FOrder.empty() || condition(FChunks[FOrder.back().Number].back())) return End();
  const auto chunk =
      std::partition_point(FOrder.begin(), FOrder.end(),
                           [&](const TOrdered& candidate) { return condition(candidate.First); });
  if (chunk == FOrder.begin()) return {0, 0};
  const auto ordinal = static_cast<std::uint32_t>(chunk - FOrder.begin() - 1);
  const TLines& lines = ChunkAt(ordinal);
  const auto line = std::partition_point(lines.begin() + 1, lines.end(), condition);
  return {ordinal, static_cast<std::uint32_t>(line - lines.begin())};
}
