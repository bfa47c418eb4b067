#pragma once

/// The thread that the library's windows belong to: the one that made the last call that was let
/// in. Any thread may ask.
struct TWindowThread {
  static bool IsCurrent();
  /// False when it has ended, or there is none yet.
  static bool Running();
  static unsigned long Id();
  /// From now on it is the calling thread.
  static void Claim();
  static void Forget();
  /// To be told by each thread that ends: its number may be another's soon.
  static void ThreadEnds();
};
