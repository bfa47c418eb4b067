#pragma once

#include <charconv>
#include <string>
#include <string_view>

/// Letters of ASCII in lower case, all else as it is.
inline std::string LoweredAscii(std::string_view text) {
  std::string lowered(text);
  for (char& c : lowered) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lowered;
}

/// Reads a decimal number that is the whole text; false when there is none or its type cannot hold
/// it.
template <class TNumber>
bool ReadNumber(std::string_view text, TNumber& number) {
  const auto end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && stop == end;
}
