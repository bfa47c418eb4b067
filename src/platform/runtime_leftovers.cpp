// What the compiler's run-time takes for each load of the library and does not give back when the
// library is unloaded: given back here, last of all.
#include "platform/runtime_leftovers.h"

#include <cstdlib>

#include "platform/runtime_threads.h"

namespace __gnu_cxx {
void __freeres();
}

namespace {

bool unloading = false;

void GiveBack() {
  if (!unloading) return;
  __gnu_cxx::__freeres();
  FreeRuntimeThreads();
}

// Registered before any other, so that it runs after all others.
__attribute__((constructor(101))) void Register() { std::atexit(GiveBack); }

}  // namespace

void GiveBackRuntimeLeftovers() { unloading = true; }
