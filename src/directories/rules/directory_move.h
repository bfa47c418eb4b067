#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "directories/rules/directory_files.h"
#include "directories/rules/settings_store.h"

/// Moving an accounts directory so that the program or the machine may die at any moment: the
/// stored list always points at a whole directory. Within a volume that is a renaming. To another
/// volume, the directory is copied under a temporary name beside its target, the copy gets its
/// final name, the list is pointed to it, and only then the original is put aside and deleted. What
/// is under way is noted in the settings, for SettleMove to finish or undo.

/// The path that a directory gets inside a folder: it keeps its own name.
std::string MovedPath(std::string_view directory, std::string_view folder);

/// Moves a directory into a folder and points its stored entries there; refused when something of
/// its name is there already, or when the folder lies inside it. When the current directory is it
/// or lies inside, it is left meanwhile, and its new place, or on failure the old one, is current
/// afterwards. Returns the new path; nothing when everything is where it was.
std::optional<std::string> MoveDirectoryInto(TDirectoryFiles& files, TSettingsStore& store,
                                             const std::string& directory,
                                             const std::string& folder);

/// Finishes or undoes what a move that was broken off left behind. Nothing while another process
/// moves, or while one of the two places cannot be reached.
void SettleMove(TDirectoryFiles& files, TSettingsStore& store);
