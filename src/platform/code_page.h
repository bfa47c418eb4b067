#pragma once

#include <string>
#include <string_view>

/// The one place that converts between the host's texts (the process's ANSI code page), our own
/// (UTF-8) and the system's UTF-16. Bytes that stand for characters come back unchanged from
/// ToAnsi(ToWide(text)).

std::wstring ToWide(std::string_view text);

/// Characters that the code page lacks become its nearest ones, or "?".
std::string ToAnsi(std::wstring_view text);

/// As ToAnsi, at the end of a text that is there already.
void AppendAnsi(std::string& text, std::wstring_view addition);

std::wstring Utf8ToWide(std::string_view utf8);
std::string Utf8ToAnsi(std::string_view utf8);
std::string ToUtf8(std::wstring_view text);
