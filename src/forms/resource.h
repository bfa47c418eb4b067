#pragma once

#include <string_view>

/// A text resource of this library ("FORM" or "GLYPH"), by name whatever the letter case; valid as
/// long as the library is loaded. Throws std::runtime_error when there is none.
std::string_view LoadTextResource(const char* type, std::string_view name);
