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
/// in many insertions.
class TLineSequence {
 public:
  struct TPlace {
    std::uint32_t Chunk;  ///< counted from the first line on
    std::uint32_t Offset;
  };

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

  template <class TAction>
  void ForEach(TAction action) const {
    for (std::uint32_t chunk : FOrder)
      for (TLineId line : FChunks[chunk].Lines) action(line);
  }

 private:
  struct TChunk {
    std::uint32_t Ordinal;  ///< place in FOrder; of a freed chunk: the next freed one
    std::vector<TLineId> Lines;
  };

  const TChunk& ChunkAt(std::uint32_t ordinal) const { return FChunks[FOrder[ordinal]]; }
  int FirstIndex(std::uint32_t ordinal) const;
  static std::uint32_t OffsetIn(const TChunk& chunk, TLineId line);
  /// The lines bring their room along, so that a chunk never stands empty for want of memory.
  void AddChunk(std::uint32_t ordinal, std::vector<TLineId>&& lines);
  void RemoveChunk(std::uint32_t ordinal) noexcept;
  void Split(std::uint32_t ordinal);
  void MergeWithNext(std::uint32_t ordinal) noexcept;
  void Recount() noexcept;
  void AddToSums(std::uint32_t ordinal, int change) noexcept;

  std::vector<TChunk> FChunks;
  std::vector<std::uint32_t> FOrder;
  std::vector<int> FSums;  ///< binary indexed tree, 1-based, over FOrder
  std::vector<std::uint32_t> FChunkOf;
  std::uint32_t FFirstFree = NoChunk;
  int FCount = 0;

  static constexpr std::uint32_t NoChunk = 0xFFFFFFFFu;
};

template <class TCondition>
TLineSequence::TPlace TLineSequence::PartitionPoint(TCondition condition) const {
  if (FOrder.empty()) return {0, 0};
  // Lines that arrive in order cost one question.
  if (condition(ChunkAt(static_cast<std::uint32_t>(FOrder.size() - 1)).Lines.back())) return End();
  const auto chunk = std::partition_point(
      FOrder.begin(), FOrder.end(),
      [&](std::uint32_t candidate) { return condition(FChunks[candidate].Lines.front()); });
  if (chunk == FOrder.begin()) return {0, 0};
  const auto ordinal = static_cast<std::uint32_t>(chunk - FOrder.begin() - 1);
  const auto& lines = ChunkAt(ordinal).Lines;
  const auto line = std::partition_point(lines.begin() + 1, lines.end(), condition);
  return {ordinal, static_cast<std::uint32_t>(line - lines.begin())};
}
