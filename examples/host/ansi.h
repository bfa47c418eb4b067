#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The text in the system's ANSI code page, or nothing when a character has no place there: a line
/// sent with a replacement character would come back damaged.
std::optional<std::string> ToAnsi(std::wstring_view text);

/// An ANSI text of the library as the windows show it.
std::wstring ToWide(std::string_view text);
