#pragma once

#include <string>
#include <vector>

#include "directories/rules/directory_list.h"
#include "directories/rules/settings_store.h"

/// The list of directories as the store keeps it: a count, a name and a path by number for each
/// entry, and the default name.
struct TStoredList {
  std::vector<TDirectoryEntry> Entries;
  std::string DefaultName;
  int Count = 0;  ///< as stored; a spoilt one may be anything
};

/// The store is held by the caller, or may change while it is read.
TStoredList ReadStoredList(const TSettingsStore& store);

/// Writes a list over the one before, all or nothing; see FinishPendingList.
bool WriteStoredList(TSettingsStore& store, const TStoredList& list);

/// Finishes a writing that was broken off, unless the store was changed by other means since. False
/// when it stays unfinished: what is written meanwhile would make it count no more. To be called
/// while the store is held.
bool FinishPendingList(TSettingsStore& store);

/// Writes the new path of each stored entry that follows a directory (see FollowedPath).
bool RepointStoredList(TSettingsStore& store, const std::string& from, const std::string& to);
