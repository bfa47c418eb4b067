#include "update/rules/download_progress.h"

#include <limits>

std::optional<std::int32_t> PercentReceived(std::uint64_t received, std::uint64_t total) {
  // Through unsigned numbers, which wrap by definition.
  const auto product = static_cast<std::int32_t>(static_cast<std::uint32_t>(received) * 100u);
  const auto divisor = static_cast<std::int32_t>(static_cast<std::uint32_t>(total));
  if (divisor == 0) return std::nullopt;
  // The one quotient that 32 bits cannot hold.
  if (divisor == -1 && product == std::numeric_limits<std::int32_t>::min()) return product;
  return product / divisor;
}
