#include <windows.h>

#include <tlhelp32.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

#include "outside/situations.h"
#include "user/say.h"

namespace {

const char* const Told = std::getenv("ZEF_ROUNDS");

long long ProcessWindows() {
  long long count = 0;
  for (const HWND top : TopWindows(GetCurrentProcessId()))
    count += 1 + static_cast<long long>(Descendants(top).size());
  return count;
}

long long OwnThreads() {
  long long threads = 0;
  const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  THREADENTRY32 entry{};
  entry.dwSize = sizeof entry;
  for (BOOL more = Thread32First(snapshot, &entry); more; more = Thread32Next(snapshot, &entry))
    if (entry.th32OwnerProcessID == GetCurrentProcessId()) ++threads;
  CloseHandle(snapshot);
  return threads;
}

/// A function of the system's that no header declares.
template <class TFunction>
TFunction Internal(const char* name) {
  return reinterpret_cast<TFunction>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("ntdll.dll"), name)));
}

/// From the table that the system shares with each process: GetGuiResources counts nothing on some
/// systems that these tests run on.
long long GdiObjects() {
  struct TEntry {
    void* Object;
    DWORD Owner;
    WORD Unique;
    WORD Type;
    void* UserData;
  };
  constexpr size_t TableSlot = 0x94;  // in the process environment block of 32-bit processes
  constexpr int Entries = 0x4000;
  const char* block = Internal<const char*(WINAPI*)()>("RtlGetCurrentPeb")();
  const auto* table = *reinterpret_cast<TEntry* const*>(block + TableSlot);
  const auto used = [](const TEntry& entry) { return entry.Type != 0; };
  return table ? std::count_if(table, table + Entries, used) : 0;
}

/// From the system's own table: GetProcessHandleCount counts nothing on some systems that these
/// tests run on.
long long KernelHandles() {
  struct TEntry {
    ULONG Process, Kind;
    void* Object;
    ULONG Access;
  };
  using TQuery = LONG(WINAPI*)(int, void*, ULONG, ULONG*);
  constexpr int HandleTable = 16;
  std::vector<TEntry> table(1 << 16);
  ULONG* count = &table[0].Access;  // stands before the entries
  const auto size = static_cast<ULONG>((table.size() - 1) * sizeof(TEntry));
  Internal<TQuery>("NtQuerySystemInformation")(HandleTable, count, size, nullptr);
  return std::count_if(&table[1], &table[1] + *count,
                       [](const TEntry& entry) { return entry.Process == GetCurrentProcessId(); });
}

long long BusyHeap() {
  long long bytes = 0;
  std::array<HANDLE, 64> heaps{};
  const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
  for (DWORD index = 0; index < count; ++index) {
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(heaps[index], &entry))
      if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) bytes += entry.cbData;
  }
  return bytes;
}

long long StoredValues() {
  HKEY key = nullptr;
  DWORD values = 0, keys = 0;
  RegOpenKeyW(HKEY_CURRENT_USER, TSavedSettings::Product, &key);
  RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
                   nullptr, nullptr, nullptr);
  RegCloseKey(key);
  return values + keys;
}

}  // namespace

/// Whatever is opened, used and closed again and again leaves nothing behind. A few rounds each;
/// the variable ZEF_ROUNDS asks for another number (1000 is the full one) and prints what was
/// measured.
class Levels : public TSituations {
 protected:
  struct TLevel {
    const char* What;
    long long (*Now)();
    double Most;  ///< that it may grow a round
  };
  static constexpr TLevel All[] = {
      {"windows", ProcessWindows, 0},
      {"GDI objects", GdiObjects, 0.5},
      {"threads", OwnThreads, 0.5},
      {"handles", KernelHandles, 0.5},
      // The system that these tests run on loses 12 bytes with each label that is given a font, and
      // the tests' server keeps some with each request.
      {"heap", BusyHeap, 600},
      {"settings", StoredValues, 0},
  };
  static constexpr size_t Handles = 3;

  std::vector<long long> Read() const {
    std::vector<long long> reading;
    for (const TLevel& level : All) reading.push_back(level.Now());
    // The server keeps one for each thread that answered.
    reading[Handles] -= static_cast<long long>(Server->Requests().size());
    return reading;
  }
  void Listen() override {
    Server.emplace(
        [](TConnection& connection) { connection.Answer("text/html", "<html></html>"); });
  }
  /// The system fills caches of its own at first, once in a while; what each round loses grows in
  /// every stretch.
  void Repeat(const char* name, int rounds, const std::function<void(int)>& round) {
    std::string grown = "not tried";
    for (int stretch = 0; stretch < 4 && !grown.empty(); ++stretch) {
      const auto before = Read();
      for (int i = 0; i < rounds; ++i) round(i);
      const auto after = Read();
      grown.clear();
      for (size_t i = 0; i < after.size(); ++i) {
        const auto more = after[i] - before[i];
        if (Told) std::printf("%-30s %-14s %10lld %+8lld\n", name, All[i].What, after[i], more);
        if (static_cast<double>(more) > All[i].Most * rounds)
          grown += Say(All[i].What, " from ", before[i], " to ", after[i], '\n');
      }
    }
    EXPECT_EQ(grown, "") << name;
  }
};

TEST_F(Levels, AreKeptByEveryDialogAndByTheLibrary) {
  const int rounds = Told ? std::atoi(Told) : 6;
  for (const TSituation& situation : Situations) {
    Repeat(situation.Name, rounds, [&](int number) {
      Run(situation);
      // Made anew half of the times.
      if (number % 2) Library->VCLFree();
    });
  }
  Repeat("load and unload", rounds / 5, [&](int) {
    Library->VCLSyntaxIsMethod("MsgBox");
    Library->VCLShowDebugText("");
    Library->VCLFree();
    Library.reset();
    WaitUnloaded();
    Library.emplace();
    Library->VCLSetMainWindowHandle(Owner);
  });
}
