#pragma once

#include <string>

/// Directories of the disk and the process's current one. Paths are in the host's ANSI code page.
/// None of these makes the system ask the user for a disk.

/// Empty when the system cannot tell.
std::string CurrentDirectoryPath();
/// False when the directory cannot be entered.
bool EnterDirectoryPath(const std::string& path);
bool IsDirectory(const std::string& path);
bool IsFile(const std::string& path);

/// Gives a directory another path. Within a volume it is renamed at one stroke; to another volume
/// its files are held, copied to the disk, and only then deleted. False leaves everything where it
/// was: when the new path exists, the directory is a drive root or not there, a file in it is in
/// use, it holds a link that a copy would follow, or the system refuses. What appears in it during
/// the move stays behind.
bool MoveDirectoryTree(const std::string& from, const std::string& to);
