#pragma once

#include <string>
#include <string_view>

/// Path (ANSI) of the named file in the folder of an executable, wherever the system's executable
/// search finds that: the running program's folder, the current one, the system's, the PATH's.
/// Empty when the executable is not found or its path takes 260 characters or more. Whether the
/// file itself exists is not asked.
std::string FileBesideExecutable(const char* executable, std::string_view file);
