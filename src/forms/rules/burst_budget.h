#pragma once

#include <algorithm>
#include <chrono>

/// Lets bursts of work through at once and holds a flood of it to a share of the time.
class TBurstBudget {
 public:
  using TTime = std::chrono::steady_clock::time_point;
  using TSpan = std::chrono::steady_clock::duration;

  /// Of this much work none waits, nor of this many pieces after a rest.
  static constexpr TSpan kBurst = std::chrono::milliseconds(200);
  static constexpr int kPieces = 10;
  /// One part of the time in this many is for a flood.
  static constexpr int kShareOfTime = 10;

  /// The earliest time for the next piece.
  TTime Next() const { return FPieces < kPieces ? TTime{} : FPaid - kShareOfTime * kBurst; }
  void Spend(TTime start, TTime end) {
    if (start >= FPaid) FPieces = 0;
    ++FPieces;
    const TSpan piece = end - start;
    // A burst of long pieces is forgiven: no wait is longer than after a single one.
    FPaid = std::min(std::max(FPaid, start) + kShareOfTime * piece,
                     end + kShareOfTime * kBurst + (kShareOfTime - 1) * piece);
  }

 private:
  TTime FPaid{};    ///< when the share of time will have made up for the work done
  int FPieces = 0;  ///< since the last rest
};
