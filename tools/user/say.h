#pragma once

#include <sstream>
#include <string>

/// The parts, one after the other.
template <class... TParts>
std::string Say(const TParts&... parts) {
  std::ostringstream out;
  (out << ... << parts);
  return out.str();
}
