#include "platform/exception_room.h"

#include <cxxabi.h>

#include <cstdint>
#include <exception>

namespace {

bool prepared = false;
void* back[5];

[[noreturn]] void ComeBack() { __builtin_longjmp(back, 1); }

/// Exceptions for which there is no memory are made in a reserve behind a lock, and the lock is
/// allocated by its first use. Asking for more than any reserve has is such a use; it ends in a
/// call to the handler for the program's end.
void UseReserve() {
  static std::terminate_handler before;
  before = std::set_terminate(ComeBack);
  if (__builtin_setjmp(back) == 0) abi::__cxa_allocate_exception(SIZE_MAX - 4096);
  std::set_terminate(before);
}

}  // namespace

void PrepareToThrow() noexcept {
  // Looks like a function without effect to the compiler.
  const auto* globals = abi::__cxa_get_globals();
  asm volatile("" : : "r"(globals));
  if (prepared) return;
  prepared = true;
  UseReserve();
}
