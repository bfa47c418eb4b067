#include "text/line_index.h"

#include <bit>

#include "text/collation.h"

std::optional<std::string_view> KeyOf(std::string_view line, TLineKey key) {
  if (key == TLineKey::Line) return line;
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) return std::nullopt;
  return line.substr(0, equals);
}

TLineIndex::TLineIndex(const TLineStore& store, const TLineSequence& sequence, TLineKey key,
                       bool caseSensitive)
    : FStore(store), FSequence(sequence), FKey(key), FCaseSensitive(caseSensitive) {
  const auto lines = static_cast<std::size_t>(sequence.Count());
  Resize(std::bit_ceil(lines + lines / 2 + 8));
  sequence.ForEach([this](TLineId line) { Insert(line); });
}

std::optional<TLineId> TLineIndex::First(std::string_view key) const {
  const auto hash = static_cast<std::uint32_t>(HashText(key, FCaseSensitive));
  const TSlot& slot = FSlots[Probe(key, hash)];
  if (slot.Holds == Free) return std::nullopt;
  return FirstOf(slot);
}

void TLineIndex::Insert(TLineId line) {
  const auto key = KeyOf(FStore.Text(line), FKey);
  if (!key) return;
  if ((FTaken + 1) * 4 > FSlots.size() * 3) Resize(FSlots.size() * 2);
  const auto hash = static_cast<std::uint32_t>(HashText(*key, FCaseSensitive));
  TSlot& slot = FSlots[Probe(*key, hash)];
  if (slot.Holds == Free) {
    slot = {hash, line};
    ++FTaken;
  } else {
    JoinGroup(slot, line);
  }
}

void TLineIndex::Remove(TLineId line) noexcept {
  const auto key = KeyOf(FStore.Text(line), FKey);
  if (!key) return;
  const std::size_t at = Probe(*key, static_cast<std::uint32_t>(HashText(*key, FCaseSensitive)));
  TSlot& slot = FSlots[at];
  if ((slot.Holds & IsGroup) == 0) {
    FreeSlot(at);
    return;
  }
  TGroup& group = FGroups[slot.Holds & ~IsGroup];
  group.erase(line);
  if (group.size() > 1) return;
  const std::uint32_t freed = slot.Holds & ~IsGroup;
  slot.Holds = *group.begin();
  group.clear();
  FFreeGroups.push_back(freed);  // room for it was made when the group was
}

bool TLineIndex::SameKey(std::string_view a, std::string_view b) const {
  return FCaseSensitive ? a == b : SameText(a, b);
}

TLineId TLineIndex::FirstOf(const TSlot& slot) const {
  return (slot.Holds & IsGroup) == 0 ? slot.Holds : *FGroups[slot.Holds & ~IsGroup].begin();
}

std::size_t TLineIndex::Probe(std::string_view key, std::uint32_t hash) const {
  std::size_t at = Home(hash);
  while (FSlots[at].Holds != Free) {
    if (FSlots[at].Hash == hash && SameKey(key, *KeyOf(FStore.Text(FirstOf(FSlots[at])), FKey)))
      break;
    at = Next(at);
  }
  return at;
}

void TLineIndex::Resize(std::size_t slots) {
  std::vector<TSlot> old(slots, TSlot{0, Free});
  old.swap(FSlots);
  for (const TSlot& slot : old) {
    if (slot.Holds == Free) continue;
    std::size_t at = Home(slot.Hash);
    while (FSlots[at].Holds != Free) at = Next(at);
    FSlots[at] = slot;
  }
}

void TLineIndex::JoinGroup(TSlot& slot, TLineId line) {
  if ((slot.Holds & IsGroup) == 0) {
    if (FFreeGroups.empty()) {
      FGroups.emplace_back(TInOrder{&FSequence});
      FFreeGroups.reserve(FGroups.capacity());
      FFreeGroups.push_back(static_cast<std::uint32_t>(FGroups.size() - 1));
    }
    const std::uint32_t number = FFreeGroups.back();
    FGroups[number].insert(slot.Holds);
    FFreeGroups.pop_back();
    slot.Holds = number | IsGroup;
  }
  TGroup& group = FGroups[slot.Holds & ~IsGroup];
  // Building, and adding at the end, meet the lines in order.
  group.emplace_hint(group.end(), line);
}

void TLineIndex::FreeSlot(std::size_t slot) noexcept {
  // Closes the gap, so that no probe stops short of a key that was pushed past it.
  std::size_t gap = slot;
  for (std::size_t at = Next(gap); FSlots[at].Holds != Free; at = Next(at)) {
    const std::size_t fromHome = (at - Home(FSlots[at].Hash)) & (FSlots.size() - 1);
    const std::size_t fromGap = (at - gap) & (FSlots.size() - 1);
    if (fromHome >= fromGap) {
      FSlots[gap] = FSlots[at];
      gap = at;
    }
  }
  FSlots[gap] = {0, Free};
  --FTaken;
}
