#include "platform/exception_room.h"

#include <cxxabi.h>

void PrepareToThrow() noexcept {
  // Looks like a function without effect to the compiler.
  const auto* globals = abi::__cxa_get_globals();
  asm volatile("" : : "r"(globals));
}
