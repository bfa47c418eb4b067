#pragma once

#include <string>
#include <string_view>

/// The one place that converts between the host's 8-bit texts and the Unicode of the controls.

/// ANSI code page to UTF-16; bytes that the code page does not define are kept as they are.
std::wstring ToWide(std::string_view ansi);
/// UTF-16 to the ANSI code page; characters that it lacks become its default character.
std::string ToAnsi(std::wstring_view wide);
/// UTF-8 (our own texts) to UTF-16.
std::wstring Utf8ToWide(std::string_view utf8);
/// UTF-8 (our own texts) to the ANSI code page.
std::string Utf8ToAnsi(std::string_view utf8);
