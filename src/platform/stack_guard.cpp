#include <windows.h>

#include <cstdint>

// What the compiler's stack protector needs. The tool chain's own would load a cryptographic
// provider while the system loads the library.

extern "C" {

std::uintptr_t __stack_chk_guard = 0;  // NOLINT: the compiler's name for it

/// Called when a function finds its frame overwritten. Nothing in the process can be trusted then,
/// handlers least of all: the system ends it at once.
[[noreturn]] void __stack_chk_fail() {
  constexpr int stackCookieCheckFailure = 2;
  asm volatile("int $0x29" : : "c"(stackCookieCheckFailure));
  __builtin_unreachable();
}
}

namespace {

/// Before every other constructor of the library: a function that is left must see the value that
/// it was entered with.
[[gnu::constructor(101), gnu::no_stack_protector]] void ChooseGuard() {
  LARGE_INTEGER counter;
  QueryPerformanceCounter(&counter);
  FILETIME time;
  GetSystemTimeAsFileTime(&time);
  const auto place = reinterpret_cast<std::uintptr_t>(&counter);
  std::uintptr_t guard = counter.LowPart ^ (time.dwLowDateTime * 0x9E3779B9U) ^ (place << 7) ^
                         (GetCurrentProcessId() << 16) ^ GetCurrentThreadId();
  // A zero byte lowest in memory stops a text that runs over its end from writing the rest.
  guard &= ~std::uintptr_t{0xFF};
  __stack_chk_guard = guard;
}

}  // namespace
