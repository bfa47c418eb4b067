#pragma once

#include <cstdint>
#include <optional>

/// Percent of the body received, or nothing when the total is not known (0).
///
/// Computed in 32-bit signed arithmetic, wrapping: hosts know the bar's jumps beyond 21 MB, and
/// counts of more than (2^31 - 1) / 100 bytes give what they always gave.
std::optional<std::int32_t> PercentReceived(std::uint64_t received, std::uint64_t total);
