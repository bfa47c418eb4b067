#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "directories/rules/directory_list.h"

/// The directories of the disk and the process's current one. Paths are in the host's ANSI code
/// page.
class TDirectoryFiles {
 public:
  TDirectoryFiles() = default;
  TDirectoryFiles(const TDirectoryFiles&) = delete;
  TDirectoryFiles& operator=(const TDirectoryFiles&) = delete;
  virtual ~TDirectoryFiles() = default;

  virtual std::string Current() const = 0;
  /// Makes a directory the current one; false when it cannot be.
  virtual bool Enter(const std::string& path) = 0;
  virtual bool DirectoryExists(const std::string& path) const = 0;
  /// Gives a directory another path, on another volume too; false leaves everything where it was.
  virtual bool Move(const std::string& from, const std::string& to) = 0;
};

enum class TEntering { Failed, AlreadyThere, Entered };

/// Makes a directory current unless it is already (letter case ignored).
TEntering EnterDirectory(TDirectoryFiles& files, const std::string& path);

enum class TOpening { Allowed, NothingSelected, DirectoryMissing };

/// Whether an entry (-1: none) can be opened.
TOpening CanOpen(const TDirectoryFiles& files, const TDirectoryList& list, int index);

/// The path that a directory gets inside a folder: it keeps its own name.
std::string MovedPath(std::string_view directory, std::string_view folder);

/// Whether a path is a directory or lies below it. Both absolute, without "." and "..".
bool IsOrLiesInside(std::string_view path, std::string_view directory);

/// Moves a directory into a folder; refused when something of its name is there already, or when
/// the folder lies inside it. When it is the current one, it is left meanwhile, and its new place,
/// or on failure the old one, is current afterwards. Returns the new path, or nothing.
std::optional<std::string> MoveDirectoryInto(TDirectoryFiles& files, const std::string& directory,
                                             const std::string& folder);
