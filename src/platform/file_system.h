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
