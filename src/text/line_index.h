#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string_view>
#include <vector>

#include "text/line_sequence.h"
#include "text/line_store.h"

enum class TLineKey {
  Line,
  Name,  ///< the part before the first "="; a line without "=" has no key
};

std::optional<std::string_view> KeyOf(std::string_view line, TLineKey key);

/// Finds lines by key through a hash table, and of several lines with one key the first in order.
///
/// It can be built again from the lines at any time: when memory runs out for an insertion it
/// throws and must be dropped.
class TLineIndex {
 public:
  /// Built over the lines there are. Store and sequence must outlive the index.
  TLineIndex(const TLineStore& store, const TLineSequence& sequence, TLineKey key,
             bool caseSensitive);

  std::optional<TLineId> First(std::string_view key) const;
  /// The line stands in the sequence already.
  void Insert(TLineId line);
  /// While the line still stands at its place with its text.
  void Remove(TLineId line) noexcept;

 private:
  struct TSlot {
    std::uint32_t Hash;
    std::uint32_t Holds;  ///< a line, or IsGroup plus a number in FGroups
  };
  struct TInOrder {
    const TLineSequence* Sequence;
    bool operator()(TLineId a, TLineId b) const { return Sequence->Before(a, b); }
  };
  using TGroup = std::set<TLineId, TInOrder>;

  bool SameKey(std::string_view a, std::string_view b) const;
  TLineId FirstOf(const TSlot& slot) const;
  std::size_t Home(std::uint32_t hash) const { return hash & (FSlots.size() - 1); }
  std::size_t Next(std::size_t slot) const { return (slot + 1) & (FSlots.size() - 1); }
  /// The slot that holds the key, or the free one where it would go.
  std::size_t Probe(std::string_view key, std::uint32_t hash) const;
  void Resize(std::size_t slots);
  void JoinGroup(TSlot& slot, TLineId line);
  void FreeSlot(std::size_t slot) noexcept;

  const TLineStore& FStore;
  const TLineSequence& FSequence;
  const TLineKey FKey;
  const bool FCaseSensitive;
  std::vector<TSlot> FSlots;  ///< a power of two of them, linear probing
  std::size_t FTaken = 0;
  std::vector<TGroup> FGroups;  ///< keys of several lines; an empty group is free
  std::vector<std::uint32_t> FFreeGroups;

  static constexpr std::uint32_t IsGroup = 0x80000000u;
  static constexpr std::uint32_t Free = 0xFFFFFFFFu;
};
