#include "text/line_sequence.h"

#include <bit>

namespace {

constexpr std::uint32_t LinesPerChunk = 256;
constexpr std::size_t FewLines = 8;

std::vector<TLineId> WithRoom(std::size_t lines) {
  std::vector<TLineId> result;
  result.reserve(lines);
  return result;
}

constexpr std::size_t LowestBit(std::size_t i) { return i & (~i + 1); }

}  // namespace

TLineId TLineSequence::At(int index) const {
  std::size_t ordinal = 0;
  for (std::size_t step = std::bit_floor(FOrder.size()); step != 0; step /= 2) {
    if (ordinal + step <= FOrder.size() && FSums[ordinal + step] <= index) {
      ordinal += step;
      index -= FSums[ordinal];
    }
  }
  return ChunkAt(static_cast<std::uint32_t>(ordinal)).Lines[static_cast<std::size_t>(index)];
}

int TLineSequence::IndexOf(TLineId line) const {
  const TChunk& chunk = FChunks[FChunkOf[line]];
  return FirstIndex(chunk.Ordinal) + static_cast<int>(OffsetIn(chunk, line));
}

bool TLineSequence::Before(TLineId a, TLineId b) const {
  const TChunk& chunkA = FChunks[FChunkOf[a]];
  const TChunk& chunkB = FChunks[FChunkOf[b]];
  if (&chunkA != &chunkB) return chunkA.Ordinal < chunkB.Ordinal;
  return OffsetIn(chunkA, a) < OffsetIn(chunkA, b);
}

TLineSequence::TPlace TLineSequence::End() const {
  if (FOrder.empty()) return {0, 0};
  const auto last = static_cast<std::uint32_t>(FOrder.size() - 1);
  return {last, static_cast<std::uint32_t>(ChunkAt(last).Lines.size())};
}

int TLineSequence::Insert(TPlace place, TLineId line) {
  if (line >= FChunkOf.size()) FChunkOf.resize(line + std::size_t{1});
  if (FOrder.empty()) {
    AddChunk(0, WithRoom(FewLines));
    Recount();
  }
  if (ChunkAt(place.Chunk).Lines.size() == LinesPerChunk) {
    const bool atEnd = place.Chunk + 1 == FOrder.size() && place.Offset == LinesPerChunk;
    if (atEnd) {
      // A list that only grows at its end keeps its chunks full.
      AddChunk(place.Chunk + 1, WithRoom(LinesPerChunk));
      Recount();
      place = {place.Chunk + 1, 0};
    } else {
      Split(place.Chunk);
      if (place.Offset > LinesPerChunk / 2) {
        ++place.Chunk;
        place.Offset -= LinesPerChunk / 2;
      }
    }
  }
  TChunk& chunk = FChunks[FOrder[place.Chunk]];
  chunk.Lines.insert(chunk.Lines.begin() + place.Offset, line);
  FChunkOf[line] = FOrder[place.Chunk];
  AddToSums(place.Chunk, 1);
  ++FCount;
  return FirstIndex(place.Chunk) + static_cast<int>(place.Offset);
}

void TLineSequence::Erase(TLineId line) noexcept {
  TChunk& chunk = FChunks[FChunkOf[line]];
  const std::uint32_t ordinal = chunk.Ordinal;
  chunk.Lines.erase(chunk.Lines.begin() + OffsetIn(chunk, line));
  AddToSums(ordinal, -1);
  --FCount;
  if (chunk.Lines.empty()) {
    RemoveChunk(ordinal);
  } else {
    MergeWithNext(ordinal);
    if (ordinal > 0) MergeWithNext(ordinal - 1);
  }
}

int TLineSequence::FirstIndex(std::uint32_t ordinal) const {
  int result = 0;
  for (std::uint32_t i = ordinal; i > 0; i &= i - 1) result += FSums[i];
  return result;
}

std::uint32_t TLineSequence::OffsetIn(const TChunk& chunk, TLineId line) {
  return static_cast<std::uint32_t>(std::find(chunk.Lines.begin(), chunk.Lines.end(), line) -
                                    chunk.Lines.begin());
}

void TLineSequence::AddChunk(std::uint32_t ordinal, std::vector<TLineId>&& lines) {
  FOrder.reserve(FOrder.size() + 1);
  FSums.resize(FOrder.size() + 2);
  if (FFirstFree == NoChunk) {
    FChunks.push_back({NoChunk, {}});
    FFirstFree = static_cast<std::uint32_t>(FChunks.size() - 1);
  }
  const std::uint32_t chunk = FFirstFree;
  FFirstFree = FChunks[chunk].Ordinal;
  FChunks[chunk].Lines = std::move(lines);
  FOrder.insert(FOrder.begin() + ordinal, chunk);
}

void TLineSequence::RemoveChunk(std::uint32_t ordinal) noexcept {
  const std::uint32_t chunk = FOrder[ordinal];
  FChunks[chunk] = {FFirstFree, {}};
  FFirstFree = chunk;
  FOrder.erase(FOrder.begin() + ordinal);
  Recount();
}

void TLineSequence::Split(std::uint32_t ordinal) {
  std::vector<TLineId> upper = WithRoom(LinesPerChunk);
  const std::vector<TLineId>& full = ChunkAt(ordinal).Lines;
  upper.assign(full.begin() + LinesPerChunk / 2, full.end());
  AddChunk(ordinal + 1, std::move(upper));
  FChunks[FOrder[ordinal]].Lines.resize(LinesPerChunk / 2);
  for (TLineId line : ChunkAt(ordinal + 1).Lines) FChunkOf[line] = FOrder[ordinal + 1];
  Recount();
}

void TLineSequence::MergeWithNext(std::uint32_t ordinal) noexcept {
  if (ordinal + 1 >= FOrder.size()) return;
  std::vector<TLineId>& lines = FChunks[FOrder[ordinal]].Lines;
  const std::vector<TLineId>& next = ChunkAt(ordinal + 1).Lines;
  const std::size_t together = lines.size() + next.size();
  // Only into room already there: a removal must not fail for want of memory.
  if (together > LinesPerChunk / 2 || together > lines.capacity()) return;
  for (TLineId line : next) FChunkOf[line] = FOrder[ordinal];
  lines.insert(lines.end(), next.begin(), next.end());
  RemoveChunk(ordinal + 1);
}

void TLineSequence::Recount() noexcept {
  FSums.assign(FOrder.size() + 1, 0);
  for (std::size_t i = 1; i < FSums.size(); ++i) {
    TChunk& chunk = FChunks[FOrder[i - 1]];
    chunk.Ordinal = static_cast<std::uint32_t>(i - 1);
    FSums[i] += static_cast<int>(chunk.Lines.size());
    const std::size_t above = i + LowestBit(i);
    if (above < FSums.size()) FSums[above] += FSums[i];
  }
}

void TLineSequence::AddToSums(std::uint32_t ordinal, int change) noexcept {
  for (std::size_t i = std::size_t{ordinal} + 1; i < FSums.size(); i += LowestBit(i))
    FSums[i] += change;
}
