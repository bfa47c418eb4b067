#include "text/line_sequence.h"

#include <bit>

namespace {

constexpr std::uint32_t kLinesPerChunk = 256;
constexpr std::size_t kFewLines = 8;

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
  return ChunkAt(static_cast<std::uint32_t>(ordinal))[static_cast<std::size_t>(index)];
}

int TLineSequence::IndexOf(TLineId line) const {
  const std::uint32_t chunk = FStore.Tag(line);
  return FirstIndex(FOrdinalOf[chunk]) + static_cast<int>(OffsetIn(FChunks[chunk], line));
}

bool TLineSequence::Before(TLineId a, TLineId b) const {
  const std::uint32_t chunkA = std::as_const(FStore).Tag(a);
  const std::uint32_t chunkB = std::as_const(FStore).Tag(b);
  if (chunkA != chunkB) return FOrdinalOf[chunkA] < FOrdinalOf[chunkB];
  return OffsetIn(FChunks[chunkA], a) < OffsetIn(FChunks[chunkA], b);
}

TLineSequence::TPlace TLineSequence::End() const {
  if (FOrder.empty()) return {0, 0};
  return {static_cast<std::uint32_t>(FOrder.size() - 1), FOrder.back().Count};
}

int TLineSequence::Insert(TPlace place, TLineId line) {
  if (FOrder.empty()) {
    AddChunk(0, WithRoom(kFewLines));
    Recount();
  }
  if (FOrder[place.Ordinal].Count == kLinesPerChunk) {
    const bool atEnd = place.Ordinal + 1 == FOrder.size() && place.Offset == kLinesPerChunk;
    if (atEnd) {
      // A list that only grows at its end keeps its chunks full.
      AddChunk(place.Ordinal + 1, WithRoom(kLinesPerChunk));
      Recount();
      place = {place.Ordinal + 1, 0};
    } else {
      Split(place.Ordinal);
      if (place.Offset > kLinesPerChunk / 2)
        place = {place.Ordinal + 1, place.Offset - kLinesPerChunk / 2};
    }
  }
  TLines& lines = ChunkAt(place.Ordinal);
  lines.insert(lines.begin() + place.Offset, line);
  FStore.Tag(line) = FOrder[place.Ordinal].Number;
  Update(place.Ordinal);
  AddToSums(place.Ordinal, 1);
  ++FCount;
  return FirstIndex(place.Ordinal) + static_cast<int>(place.Offset);
}

void TLineSequence::Erase(TLineId line) noexcept {
  const std::uint32_t ordinal = FOrdinalOf[FStore.Tag(line)];
  TLines& lines = ChunkAt(ordinal);
  lines.erase(lines.begin() + OffsetIn(lines, line));
  AddToSums(ordinal, -1);
  --FCount;
  if (lines.empty()) {
    RemoveChunk(ordinal);
    return;
  }
  Update(ordinal);
  if (!MergeWithNext(ordinal) && ordinal > 0) MergeWithNext(ordinal - 1);
}

void TLineSequence::Replace(TLineId line, TLineId by) noexcept {
  const std::uint32_t chunk = FStore.Tag(line);
  FStore.Tag(by) = chunk;
  FChunks[chunk][OffsetIn(FChunks[chunk], line)] = by;
  Update(FOrdinalOf[chunk]);
}

int TLineSequence::FirstIndex(std::uint32_t ordinal) const {
  int result = 0;
  for (std::uint32_t i = ordinal; i > 0; i &= i - 1) result += FSums[i];
  return result;
}

std::uint32_t TLineSequence::OffsetIn(const TLines& lines, TLineId line) {
  return static_cast<std::uint32_t>(std::find(lines.begin(), lines.end(), line) - lines.begin());
}

void TLineSequence::Update(std::uint32_t ordinal) noexcept {
  TOrdered& chunk = FOrder[ordinal];
  const TLines& lines = FChunks[chunk.Number];
  chunk.Count = static_cast<std::uint32_t>(lines.size());
  if (!lines.empty()) chunk.First = lines.front();
}

void TLineSequence::AddChunk(std::uint32_t ordinal, TLines&& lines) {
  FOrder.reserve(FOrder.size() + 1);
  FSums.resize(FOrder.size() + 2);
  if (FFirstFree == NoChunk) {
    FOrdinalOf.reserve(FChunks.size() + 1);
    FChunks.emplace_back();
    FOrdinalOf.push_back(NoChunk);
    FFirstFree = static_cast<std::uint32_t>(FChunks.size() - 1);
  }
  const std::uint32_t number = FFirstFree;
  FFirstFree = FOrdinalOf[number];
  FChunks[number] = std::move(lines);
  FOrder.insert(FOrder.begin() + ordinal, {number, 0, 0});
  Update(ordinal);
}

void TLineSequence::RemoveChunk(std::uint32_t ordinal) noexcept {
  const std::uint32_t number = FOrder[ordinal].Number;
  FChunks[number] = {};
  FOrdinalOf[number] = FFirstFree;
  FFirstFree = number;
  FOrder.erase(FOrder.begin() + ordinal);
  Recount();
}

void TLineSequence::Split(std::uint32_t ordinal) {
  TLines upper = WithRoom(kLinesPerChunk);
  const TLines& full = ChunkAt(ordinal);
  upper.assign(full.begin() + kLinesPerChunk / 2, full.end());
  AddChunk(ordinal + 1, std::move(upper));
  ChunkAt(ordinal).resize(kLinesPerChunk / 2);
  Update(ordinal);
  for (TLineId line : ChunkAt(ordinal + 1)) FStore.Tag(line) = FOrder[ordinal + 1].Number;
  Recount();
}

bool TLineSequence::MergeWithNext(std::uint32_t ordinal) noexcept {
  if (ordinal + 1 >= FOrder.size()) return false;
  const std::size_t together = std::size_t{FOrder[ordinal].Count} + FOrder[ordinal + 1].Count;
  if (together > kLinesPerChunk / 2) return false;
  // There is room: a chunk that another follows was full once, or was made for as many. So a
  // removal does not fail for want of memory.
  TLines& lines = ChunkAt(ordinal);
  const TLines& next = ChunkAt(ordinal + 1);
  for (TLineId line : next) FStore.Tag(line) = FOrder[ordinal].Number;
  lines.insert(lines.end(), next.begin(), next.end());
  Update(ordinal);
  RemoveChunk(ordinal + 1);
  return true;
}

void TLineSequence::Recount() noexcept {
  FSums.assign(FOrder.size() + 1, 0);
  for (std::size_t i = 1; i < FSums.size(); ++i) {
    const TOrdered& chunk = FOrder[i - 1];
    FOrdinalOf[chunk.Number] = static_cast<std::uint32_t>(i - 1);
    FSums[i] += static_cast<int>(chunk.Count);
    const std::size_t above = i + LowestBit(i);
    if (above < FSums.size()) FSums[above] += FSums[i];
  }
}

void TLineSequence::AddToSums(std::uint32_t ordinal, int change) noexcept {
  for (std::size_t i = std::size_t{ordinal} + 1; i < FSums.size(); i += LowestBit(i))
    FSums[i] += change;
}
