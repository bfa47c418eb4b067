#pragma once

/// What the analysing compiler's library leaves out because that compiler is too old for it.

#include <version>

#if !defined(__cpp_lib_source_location)
namespace std {
struct source_location {
  static constexpr source_location current() noexcept { return {}; }
  constexpr const char* file_name() const noexcept { return ""; }
  constexpr const char* function_name() const noexcept { return ""; }
  constexpr unsigned line() const noexcept { return 0; }
};
}  // namespace std
#endif
