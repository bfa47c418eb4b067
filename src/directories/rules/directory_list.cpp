#include "directories/rules/directory_list.h"

#include <algorithm>
#include <utility>

#include "directories/rules/directory_files.h"
#include "directories/rules/stored_list.h"
#include "text/collation.h"

namespace {

bool NameBefore(const TDirectoryEntry& a, const TDirectoryEntry& b) {
  return CompareText(a.Name, b.Name, false) < 0;
}

/// The stored list in the order of the names.
TStoredList ReadInOrder(const TSettingsStore& store) {
  TStoredList stored = ReadStoredList(store);
  std::ranges::stable_sort(stored.Entries, NameBefore);
  return stored;
}

/// Entries of the first list that the second one lacks; one of it makes up for one only.
std::vector<TDirectoryEntry> Without(std::vector<TDirectoryEntry> entries,
                                     const std::vector<TDirectoryEntry>& others) {
  for (const auto& other : others) {
    const auto found = std::ranges::find(entries, other);
    if (found != entries.end()) entries.erase(found);
  }
  return entries;
}

bool HasName(const std::vector<TDirectoryEntry>& entries, std::string_view name) {
  return std::ranges::any_of(
      entries, [&](const TDirectoryEntry& entry) { return SameText(entry.Name, name); });
}

/// The name, or the name with the first number that is free.
std::string FreeName(const std::vector<TDirectoryEntry>& entries, const std::string& name) {
  std::string free = name;
  for (int number = 2; HasName(entries, free); ++number) {
    free = name + " (" + std::to_string(number) + ")";
  }
  return free;
}

/// Entries of others in the way of a name make room for it; when they have the very same path, they
/// go.
void AddOver(std::vector<TDirectoryEntry>& entries, const TDirectoryEntry& added) {
  std::vector<TDirectoryEntry> inTheWay;
  std::erase_if(entries, [&](const TDirectoryEntry& entry) {
    if (!SameText(entry.Name, added.Name)) return false;
    if (!SameText(entry.Path, added.Path)) inTheWay.push_back(entry);
    return true;
  });
  entries.push_back(added);
  for (auto& entry : inTheWay) {
    entry.Name = FreeName(entries, entry.Name);
    entries.push_back(std::move(entry));
  }
}

}  // namespace

// ---- the stored list ----

void TDirectoryList::Load(TSettingsStore& store) {
  const auto held = store.Hold();
  if (held) FinishPendingList(store);
  TStoredList stored = ReadInOrder(store);
  TStoredList loaded = stored;
  FLoaded = std::move(loaded.Entries);
  FLoadedDefault = std::move(loaded.DefaultName);
  FEntries = std::move(stored.Entries);
  FDefaultName = std::move(stored.DefaultName);
  FNothingStored = stored.Count == 0 && !store.ReadFailed();
}

bool TDirectoryList::Save(TSettingsStore& store) {
  const auto held = store.Hold();
  if (!held) return false;
  TStoredList stored = ReadInOrder(store);
  if (stored.Entries == FLoaded) {
    stored.Entries = FEntries;
  } else {
    stored.Entries = Without(std::move(stored.Entries), Without(FLoaded, FEntries));
    for (const auto& added : Without(FEntries, FLoaded)) AddOver(stored.Entries, added);
    std::ranges::stable_sort(stored.Entries, NameBefore);
  }
  if (FDefaultName != FLoadedDefault) stored.DefaultName = FDefaultName;
  if (!WriteStoredList(store, stored)) return false;
  FLoaded = FEntries;
  FLoadedDefault = FDefaultName;
  return true;
}

bool TDirectoryList::Repoint(TSettingsStore& store, const std::string& from,
                             const std::string& to) {
  const auto held = store.Hold();
  return held && FinishPendingList(store) && RepointStoredList(store, from, to);
}

void TDirectoryList::Repoint(const std::string& from, const std::string& to) {
  for (auto* entries : {&FEntries, &FLoaded}) {
    for (auto& entry : *entries) {
      if (auto followed = FollowedPath(entry.Path, from, to)) entry.Path = std::move(*followed);
    }
  }
}

// ---- look-up ----

int TDirectoryList::IndexOf(std::string_view name) const {
  const auto found = std::ranges::find_if(
      FEntries, [&](const TDirectoryEntry& entry) { return SameText(entry.Name, name); });
  return found == FEntries.end() ? -1 : static_cast<int>(found - FEntries.begin());
}

int TDirectoryList::IndexOfPath(std::string_view path) const {
  int found = -1;
  for (int i = 0; i < Count(); ++i) {
    if (!SameText(Entry(i).Path, path)) continue;
    if (found < 0 || Entry(i).Number > Entry(found).Number) found = i;
  }
  return found;
}

int TDirectoryList::IndexToOpen(std::string_view name) const {
  return IndexOf(name.empty() ? std::string_view(FDefaultName) : name);
}

// ---- changes ----

int TDirectoryList::Insert(TDirectoryEntry entry) {
  const auto at = std::ranges::upper_bound(FEntries, entry, NameBefore);
  const auto inserted = FEntries.insert(at, std::move(entry));
  return static_cast<int>(inserted - FEntries.begin());
}

int TDirectoryList::Import(const std::string& name, const std::string& path) {
  return Insert({0, name, path});
}

std::optional<int> TDirectoryList::Add(const std::string& name) {
  if (IndexOf(name) >= 0) return std::nullopt;
  std::string defaultName = FEntries.empty() ? name : FDefaultName;
  const int index = Insert({Count(), name, {}});
  FDefaultName.swap(defaultName);
  return index;
}

std::optional<int> TDirectoryList::Rename(int index, const std::string& name) {
  if (IndexOf(name) >= 0) return std::nullopt;
  std::string defaultName = IsDefault(index) ? name : FDefaultName;
  TDirectoryEntry entry = Entry(index);
  entry.Name = name;
  const int inserted = Insert(std::move(entry));
  FEntries.erase(FEntries.begin() + (inserted <= index ? index + 1 : index));
  FDefaultName.swap(defaultName);
  return inserted <= index ? inserted : inserted - 1;
}

void TDirectoryList::Remove(int index) {
  if (IsDefault(index)) ClearDefault();
  FEntries.erase(FEntries.begin() + index);
}

void TDirectoryList::SetPath(int index, std::string path) {
  FEntries.at(static_cast<std::size_t>(index)).Path = std::move(path);
}
