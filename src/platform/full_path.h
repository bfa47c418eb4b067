#pragma once

#include <string>
#include <string_view>

/// The full path of a file that is named in the ANSI code page, from the current directory of now;
/// empty when the system knows none.
std::wstring FullPath(std::string_view name);
