// What the compiler's run-time takes for each load of the library and does not give back when the
// library is unloaded: given back here, last of all.
#include "platform/runtime_leftovers.h"

#include <windows.h>

#include <array>
#include <cstdlib>

namespace __gnu_cxx {
void __freeres();
}

// The run-time's own call for threads that end.
extern "C" const PIMAGE_TLS_CALLBACK RuntimeThreadCallback asm("___xl_f");

namespace {

std::array<DWORD, 8> indexes;
std::size_t count = 0;
bool unloading = false;

DWORD WINAPI AllocateIndex() {
  const auto allocate = reinterpret_cast<DWORD(WINAPI*)()>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "TlsAlloc")));
  const DWORD index = allocate();
  if (index != TLS_OUT_OF_INDEXES && count < indexes.size()) indexes[count++] = index;
  return index;
}

void GiveBack() {
  if (!unloading) return;
  __gnu_cxx::__freeres();
  RuntimeThreadCallback(nullptr, DLL_THREAD_DETACH, nullptr);
  while (count > 0) TlsFree(indexes[--count]);
}

// Registered before any other, so that it runs after all others.
__attribute__((constructor(101))) void Register() { std::atexit(GiveBack); }

}  // namespace

void GiveBackRuntimeLeftovers() { unloading = true; }

// The run-time's import of this function: a thread-local index is among what it never frees, and a
// process has but some thousand.
extern "C" DWORD(WINAPI* const RuntimeTlsAlloc)() asm("__imp__TlsAlloc@0");
DWORD(WINAPI* const RuntimeTlsAlloc)() = AllocateIndex;
