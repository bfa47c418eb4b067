#pragma once

#include <string>
#include <string_view>

/// Conversion between the host's texts (the process's ANSI code page) and the system's UTF-16.
/// Bytes that stand for characters come back unchanged from ToAnsi(ToWide(text)).

std::wstring ToWide(std::string_view text);

/// Characters that the code page lacks become its nearest ones, or "?".
std::string ToAnsi(std::wstring_view text);

/// As ToAnsi, at the end of a text that is there already.
void AppendAnsi(std::string& text, std::wstring_view addition);
