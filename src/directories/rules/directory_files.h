#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "directories/rules/directory_list.h"

enum class TRenaming { Done, OtherVolume, Refused };

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

  /// Gives a directory another path in one step; refused when something is there.
  virtual TRenaming Rename(const std::string& from, const std::string& to) = 0;
  /// Copies a directory with all that it holds to the disk. While the result lives, the files of
  /// the original stay as they were copied. Null when it failed or was cancelled: part of a copy
  /// may be left.
  virtual std::shared_ptr<void> Copy(const std::string& from, const std::string& to) = 0;
  /// Deletes a directory with all that it holds; false when something is left.
  virtual bool Remove(const std::string& path) = 0;
  /// Whether another directory holds each file of this one as it is here.
  virtual bool IsCopied(const std::string& path, const std::string& other) const = 0;
  /// Deletes of a directory what another one holds as well; false when something is left.
  virtual bool RemoveCopied(const std::string& path, const std::string& other) = 0;

  /// Something to make a name of that nobody has used.
  virtual std::string NewMark() = 0;
  /// Keeps all other processes from moving directories while the result lives; null when one does.
  virtual std::shared_ptr<void> HoldMoves() = 0;
};

enum class TEntering { Failed, AlreadyThere, Entered };

/// Makes a directory current unless it is already (letter case ignored).
TEntering EnterDirectory(TDirectoryFiles& files, const std::string& path);

enum class TOpening { Allowed, NothingSelected, DirectoryMissing };

/// Whether an entry (-1: none) can be opened.
TOpening CanOpen(const TDirectoryFiles& files, const TDirectoryList& list, int index);

/// Without the backslashes at its end.
std::string_view WithoutEndSlashes(std::string_view path);

/// Letter case and backslashes at the end tell nothing.
bool SameDirectory(std::string_view a, std::string_view b);

/// Whether a path is a directory or lies below it. Both absolute, without "." and "..".
bool IsOrLiesInside(std::string_view path, std::string_view directory);

/// Where a path points that is a directory or lies below it, once the directory has another place;
/// nothing for all other paths.
std::optional<std::string> FollowedPath(std::string_view path, std::string_view from,
                                        std::string_view to);
