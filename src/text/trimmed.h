#pragma once

#include <string_view>

/// The text without the blanks and control characters at its ends: all that is no more than a
/// space.
inline std::string_view Trimmed(std::string_view text) {
  const auto blank = [](char c) { return static_cast<unsigned char>(c) <= ' '; };
  while (!text.empty() && blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && blank(text.back())) text.remove_suffix(1);
  return text;
}
