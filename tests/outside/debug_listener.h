#pragma once

#include <string>

/// Prints what the library tells a debugger, as a debugger would see it, so that what it swallowed
/// stands in the log of the test that saw the effect.
struct TDebugListener {
  static void Start();
  /// What came since the last time. Any thread.
  static std::string Take();
};
