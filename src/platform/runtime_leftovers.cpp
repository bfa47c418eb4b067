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

/// What was taken, up to so many.
template <class T>
class TTaken {
 public:
  void Note(T taken) {
    if (FCount < FAll.size()) FAll[FCount++] = taken;
  }
  template <class TFree>
  void GiveBack(TFree free) {
    while (FCount > 0) free(FAll[--FCount]);
  }

 private:
  std::array<T, 8> FAll{};
  std::size_t FCount = 0;
};

TTaken<DWORD> indexes;
TTaken<HANDLE> semaphores;
bool unloading = false;

/// A function of the system's, asked for by name since its import is ours.
template <class TFunction>
TFunction SystemFunction(const char* name) {
  return reinterpret_cast<TFunction>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), name)));
}

DWORD WINAPI AllocateIndex() {
  const DWORD index = SystemFunction<decltype(&TlsAlloc)>("TlsAlloc")();
  if (index != TLS_OUT_OF_INDEXES) indexes.Note(index);
  return index;
}

HANDLE WINAPI MakeSemaphore(SECURITY_ATTRIBUTES* attributes, LONG count, LONG most, LPCSTR name) {
  const HANDLE semaphore = SystemFunction<decltype(&CreateSemaphoreA)>("CreateSemaphoreA")(
      attributes, count, most, name);
  if (semaphore) semaphores.Note(semaphore);
  return semaphore;
}

void GiveBack() {
  if (!unloading) return;
  __gnu_cxx::__freeres();
  RuntimeThreadCallback(nullptr, DLL_THREAD_DETACH, nullptr);
  indexes.GiveBack([](DWORD index) { TlsFree(index); });
  semaphores.GiveBack([](HANDLE semaphore) { CloseHandle(semaphore); });
}

// Registered before any other, so that it runs after all others.
__attribute__((constructor(101))) void Register() { std::atexit(GiveBack); }

}  // namespace

void GiveBackRuntimeLeftovers() { unloading = true; }

// The run-time's imports of these functions: a thread-local index is among what it never frees, and
// a process has but some thousand; so are the two semaphores by which threads wait for a local
// static. It makes no others, for nothing here uses its condition variables.
extern "C" const decltype(&TlsAlloc) RuntimeTlsAlloc asm("__imp__TlsAlloc@0");
const decltype(&TlsAlloc) RuntimeTlsAlloc = AllocateIndex;
extern "C" const decltype(&CreateSemaphoreA) RuntimeCreateSemaphore asm(
    "__imp__CreateSemaphoreA@16");
const decltype(&CreateSemaphoreA) RuntimeCreateSemaphore = MakeSemaphore;
