#pragma once

#include <string_view>

class TUser;

/// Ends a process whose test hangs, saying what the windows looked like and what the user did last.
class TWatchdog {
 public:
  /// Before any test; the watching thread lives as long as the process.
  static void Start();
  /// From now on the test has this long; 0: no test runs.
  static void Allow(int seconds);
  /// The user whose steps to tell; null: none.
  static void Watch(const TUser* user);
  [[noreturn]] static void End(std::string_view reason);
};
