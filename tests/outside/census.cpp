#include "outside/census.h"

#include <tlhelp32.h>

#include "user/window.h"

namespace {
bool MadeBySystem(HWND window) {
  static const std::set<std::string> Classes{"IME", "MSCTFIME UI", "OleMainThreadWndClass"};
  return Classes.contains(ClassOf(window));
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
