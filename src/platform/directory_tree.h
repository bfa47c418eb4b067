#pragma once

#include <atomic>
#include <memory>
#include <string>

/// Directories with all that they hold. Paths are in the host's ANSI code page; what lies below may
/// be deeper than the system's usual limit. Links inside a directory are never followed: one that
/// holds a link is neither copied nor deleted. None of these makes the system ask the user for a
/// disk. Any thread.

enum class TTreeRenaming { Done, OtherVolume, Refused };

/// Gives a directory another path in one step, on the same volume. Refused when the new path
/// exists, the directory is a drive root or not there, or the system refuses.
TTreeRenaming RenameDirectory(const std::string& from, const std::string& to);

/// What a thread that copies and one that watches it share.
struct TCopyProgress {
  std::atomic<int> Percent = 0;
  std::atomic<bool> Cancelled = false;
};

/// Copies a directory to a path that is free, and has the system write the files to the disk.
/// Nobody can write to the original's files while the result lives. Null when a file in it is in
/// use, it holds a link, the copying failed or was cancelled: what is copied by then is left. The
/// progress may be null.
std::shared_ptr<void> CopyDirectory(const std::string& from, const std::string& to,
                                    TCopyProgress* progress);

/// Deletes a directory with all that it holds. What the system does not let go of at once is tried
/// again for a short while. False when something is left.
bool RemoveDirectoryTree(const std::string& path);

/// Whether the other directory holds each file of this one with the same size and time.
bool IsCopiedDirectory(const std::string& path, const std::string& other);

/// As RemoveDirectoryTree, but deletes only what the other directory holds as well.
bool RemoveCopiedDirectory(const std::string& path, const std::string& other);
