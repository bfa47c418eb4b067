#include "text/handle_table.h"

std::uint32_t NewHandleNumber() {
  static std::uint32_t count = 0;
  if (++count == 0) ++count;
  // An odd factor gives every number once in 2^32, spread over the whole range.
  return count * 0x9E3779B1u;
}
