#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "directories/rules/settings_store.h"

struct TDirectoryEntry {
  int Number = 0;  ///< under which it was read, or how many there were when it was added
  std::string Name;
  std::string Path;  ///< need not exist: its drive may be away

  /// The number tells nothing: saving gives new ones.
  bool operator==(const TDirectoryEntry& other) const {
    return Name == other.Name && Path == other.Path;
  }
};

/// The user's named accounts directories in the order of their names, and which of them opens at
/// start-up. Indices are positions in that order; -1 stands for none.
class TDirectoryList {
 public:
  /// Reads the stored list in place of this one, and finishes a save that was broken off. Whatever
  /// the store holds: numbers without a name are skipped, and the time depends on what is there,
  /// not on the stored count.
  void Load(TSettingsStore& store);
  /// The stored count was 0 (or none): an older program may have left its data to be imported.
  bool NothingStored() const { return FNothingStored; }

  /// Stores the list: what was changed in it since it was loaded is changed in the one that is
  /// stored now, so that another program's changes stay. Two programs that gave one name different
  /// paths get both, the one stored before under the name with a number. Whichever write fails, a
  /// later Load reads either the whole new list or the whole one before it; false when it is the
  /// one before.
  bool Save(TSettingsStore& store);

  /// Points the stored entries of a directory, and of those that lie inside it, to where it is now,
  /// one write an entry, and leaves all else as it is stored. False when one of them could not be
  /// written.
  static bool Repoint(TSettingsStore& store, const std::string& from, const std::string& to);
  /// The same for this list, as loaded and as changed since.
  void Repoint(const std::string& from, const std::string& to);

  int Count() const { return static_cast<int>(FEntries.size()); }
  const TDirectoryEntry& Entry(int index) const {
    return FEntries.at(static_cast<std::size_t>(index));
  }
  /// Ignores letter case.
  int IndexOf(std::string_view name) const;
  /// The entry last read or added with this path, ignoring letter case.
  int IndexOfPath(std::string_view path) const;
  /// The default entry when the name is empty.
  int IndexToOpen(std::string_view name) const;

  /// Takes a directory that no stored list knows. Returns its index.
  int Import(const std::string& name, const std::string& path);
  /// A new entry without a path, the default one when it is the first. Returns its index, or
  /// nothing when the name is in the list.
  std::optional<int> Add(const std::string& name);
  /// Returns the entry's new index, or nothing when the name is in the list (also as this very
  /// entry's name in another case).
  std::optional<int> Rename(int index, const std::string& name);
  void Remove(int index);
  void SetPath(int index, std::string path);

  bool IsDefault(int index) const { return Entry(index).Name == FDefaultName; }
  void SetDefault(int index) { FDefaultName = Entry(index).Name; }
  void ClearDefault() { FDefaultName.clear(); }

 private:
  int Insert(TDirectoryEntry entry);

  std::vector<TDirectoryEntry> FEntries;  ///< sorted by name
  std::string FDefaultName;
  bool FNothingStored = true;
  std::vector<TDirectoryEntry> FLoaded;  ///< what changes are told from
  std::string FLoadedDefault;
};
