#include "outside/census.h"

#include <psapi.h>
#include <tlhelp32.h>

#include "user/say.h"
#include "user/window.h"

namespace {
bool MadeBySystem(HWND window) {
  static const std::set<std::string> Classes{"IME", "MSCTFIME UI", "OleMainThreadWndClass"};
  return Classes.contains(ClassOf(window));
}

/// The module whose code a thread started in, or null.
HMODULE StartModule(DWORD thread) {
  using TQuery = LONG(WINAPI*)(HANDLE, int, void*, ULONG, ULONG*);
  constexpr int StartAddress = 9;
  const auto query = reinterpret_cast<TQuery>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleA("ntdll.dll"), "NtQueryInformationThread")));
  void* start = nullptr;
  const HANDLE handle = OpenThread(THREAD_QUERY_INFORMATION, FALSE, thread);
  query(handle, StartAddress, &start, sizeof start, nullptr);
  if (handle) CloseHandle(handle);
  HMODULE module = nullptr;
  GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      static_cast<LPCWSTR>(start), &module);
  return module;
}

std::string ModuleName(HMODULE module) {
  if (!module) return "no module";
  wchar_t name[MAX_PATH];
  return Utf8({name, GetModuleBaseNameW(GetCurrentProcess(), module, name, MAX_PATH)});
}

std::set<DWORD> OwnThreads() {
  std::set<DWORD> threads;
  const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  THREADENTRY32 entry{};
  entry.dwSize = sizeof entry;
  for (BOOL more = Thread32First(snapshot, &entry); more; more = Thread32Next(snapshot, &entry))
    if (entry.th32OwnerProcessID == GetCurrentProcessId()) threads.insert(entry.th32ThreadID);
  CloseHandle(snapshot);
  return threads;
}

/// From the table that the system shares with each process: GetGuiResources counts nothing on some
/// systems that these tests run on.
int OwnGdiObjects() {
  struct TEntry {
    void* Object;
    DWORD Owner;
    WORD Unique;
    WORD Type;
    void* UserData;
  };
  constexpr size_t TableSlot = 0x94;  // in the process environment block of 32-bit processes
  constexpr int Entries = 0x4000;
  const auto currentBlock = reinterpret_cast<const char*(WINAPI*)()>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("ntdll.dll"), "RtlGetCurrentPeb")));
  const char* block = currentBlock();
  const TEntry* table = *reinterpret_cast<TEntry* const*>(block + TableSlot);
  int count = 0;
  for (int index = 0; table && index < Entries; ++index)
    if (table[index].Type) ++count;
  return count;
}
}  // namespace

TCensus TCensus::Take() {
  TCensus census{{}, OwnThreads(), OwnGdiObjects()};
  for (const HWND window : TopWindows(GetCurrentProcessId()))
    if (!MadeBySystem(window)) census.Windows.insert(window);
  return census;
}

std::string TCensus::NewSince(const TCensus& earlier) const {
  std::string news;
  for (const HWND window : Windows)
    if (!earlier.Windows.contains(window))
      news += Say("window ", ClassOf(window), " '", TextOf(window), "'\n");
  for (const DWORD thread : Threads) {
    if (earlier.Threads.contains(thread)) continue;
    const HMODULE module = StartModule(thread);
    // The system keeps the threads of its pool, and those that serve its own calls, for a while.
    const auto isOf = [module](const char* name) { return module == GetModuleHandleA(name); };
    if (isOf("ntdll.dll") || isOf("rpcrt4.dll") || isOf("combase.dll")) continue;
    news += Say("thread ", std::hex, thread, " of ", ModuleName(module), "\n");
  }
  return news;
}
