#include <objbase.h>

#include <commctrl.h>
#include <shlobj.h>

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <utility>

#include "outside/download_test.h"
#include "outside/situations.h"
#include "outside/watchdog.h"
#include "user/say.h"

// What the library asks of the system fails, one call after the other, through its import table. A
// few calls of each kind; the variable ZEF_FAULTS asks for another number (100000: each of them).

namespace {

/// The fault that is set: of all calls of one kind while armed, one, or all from one on.
struct TFault {
  std::atomic<const void*> Seam = nullptr;
  std::atomic<long> Left = 0;  ///< calls before the one that fails
  std::atomic<long> Seen = 0;
  std::atomic<bool> Sticks = false;
  DWORD Thread = GetCurrentThreadId();

  bool Strikes(const void* seam) {
    if (Seam != seam) return false;
    // What the compiler's run-time allocates first in a new thread, to know its exceptions by, ends
    // the process when it fails.
    thread_local int first = 2;
    if (GetCurrentThreadId() != Thread && first-- > 0) return false;
    ++Seen;
    const long left = Left--;
    return left == 0 || (left < 0 && Sticks);
  }
} Fault;

/// One function of the system, between the library and it.
struct TSeam {
  const char* Name;
  void* Hook;
  void** Real;
};

template <class TFunction, ULONG_PTR Result, DWORD Error, int Line>
struct THook;

#define FAULT_HOOK(convention)                                                           \
  template <class TResult, class... TArguments, ULONG_PTR Result, DWORD Error, int Line> \
  struct THook<TResult(convention*)(TArguments...), Result, Error, Line> {               \
    static inline void* Real = nullptr;                                                  \
    static TResult convention Call(TArguments... arguments) {                            \
      if (Fault.Strikes(&Real)) {                                                        \
        SetLastError(Error);                                                             \
        return (TResult)Result;                                                          \
      }                                                                                  \
      return reinterpret_cast<TResult(convention*)(TArguments...)>(Real)(arguments...);  \
    }                                                                                    \
  };
FAULT_HOOK(__stdcall)
FAULT_HOOK(__cdecl)
#undef FAULT_HOOK

template <class TFunction, ULONG_PTR Result, DWORD Error, int Line>
TSeam MakeSeam(const char* name) {
  using THere = THook<TFunction, Result, Error, Line>;
  return {name, reinterpret_cast<void*>(&THere::Call), &THere::Real};
}

#define SEAM(name, result, error) \
  MakeSeam<decltype(&::name), static_cast<ULONG_PTR>(result), error, __LINE__>(#name)

const TSeam Seams[] = {
    SEAM(malloc, 0, ERROR_NOT_ENOUGH_MEMORY),
    SEAM(realloc, 0, ERROR_NOT_ENOUGH_MEMORY),
    SEAM(calloc, 0, ERROR_NOT_ENOUGH_MEMORY),
    SEAM(CreateWindowExW, 0, ERROR_NOT_ENOUGH_MEMORY),
    SEAM(RegisterClassExW, 0, ERROR_NOT_ENOUGH_MEMORY),
    SEAM(CreateFontIndirectW, 0, ERROR_NOT_ENOUGH_MEMORY),
    SEAM(CreateDIBSection, 0, ERROR_NOT_ENOUGH_MEMORY),
    SEAM(SetWindowsHookExW, 0, ERROR_NOT_ENOUGH_MEMORY),
    SEAM(SetTimer, 0, ERROR_NOT_ENOUGH_MEMORY),
    SEAM(CreateEventW, 0, ERROR_NOT_ENOUGH_MEMORY),
    SEAM(CreateMutexW, 0, ERROR_NOT_ENOUGH_MEMORY),
    SEAM(CreateThread, 0, ERROR_NOT_ENOUGH_MEMORY),
    SEAM(TrySubmitThreadpoolCallback, 0, ERROR_NOT_ENOUGH_MEMORY),
    SEAM(CoCreateInstance, E_OUTOFMEMORY, ERROR_NOT_ENOUGH_MEMORY),
    SEAM(LoadLibraryW, 0, ERROR_MOD_NOT_FOUND),
    SEAM(RegCreateKeyExA, ERROR_ACCESS_DENIED, ERROR_ACCESS_DENIED),
    SEAM(RegOpenKeyExA, ERROR_ACCESS_DENIED, ERROR_ACCESS_DENIED),
    SEAM(RegSetValueExA, ERROR_NO_SYSTEM_RESOURCES, ERROR_NO_SYSTEM_RESOURCES),
    SEAM(RegDeleteValueA, ERROR_ACCESS_DENIED, ERROR_ACCESS_DENIED),
    SEAM(RegQueryValueExA, ERROR_ACCESS_DENIED, ERROR_ACCESS_DENIED),
    SEAM(CreateFileW, -1, ERROR_ACCESS_DENIED),
    SEAM(ReadFile, 0, ERROR_READ_FAULT),
    SEAM(WriteFile, 0, ERROR_DISK_FULL),
    SEAM(FlushFileBuffers, 0, ERROR_DISK_FULL),
    SEAM(SetFileInformationByHandle, 0, ERROR_INVALID_FUNCTION),
    SEAM(CopyFileExW, 0, ERROR_DISK_FULL),
    SEAM(CreateDirectoryExW, 0, ERROR_DISK_FULL),
    SEAM(MoveFileExW, 0, ERROR_ACCESS_DENIED),
    SEAM(DeleteFileW, 0, ERROR_SHARING_VIOLATION),
    SEAM(RemoveDirectoryW, 0, ERROR_SHARING_VIOLATION),
    SEAM(FindFirstFileW, -1, ERROR_ACCESS_DENIED),
    SEAM(FindNextFileW, 0, ERROR_READ_FAULT),
    SEAM(SetFileAttributesW, 0, ERROR_ACCESS_DENIED),
    SEAM(SetCurrentDirectoryW, 0, ERROR_ACCESS_DENIED),
};
#undef SEAM

/// In place of the shell's folder picker: the user chose this one.
std::wstring Chosen;
LPITEMIDLIST WINAPI ChooseFolder(BROWSEINFOW*) { return ILCreateFromPathW(Chosen.c_str()); }

const TSeam* SeamOf(const char* name) {
  const auto* found = std::ranges::find_if(
      Seams, [&](const TSeam& seam) { return std::string_view(seam.Name) == name; });
  return found == std::end(Seams) ? nullptr : found;
}

/// What is resolved by name goes through the seams as well.
FARPROC WINAPI FindFunction(HMODULE module, LPCSTR name) {
  const FARPROC real = GetProcAddress(module, name);
  if (!real || IS_INTRESOURCE(name)) return real;
  if (!std::strcmp(name, "SHBrowseForFolderW") && !Chosen.empty())
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&ChooseFolder));
  const TSeam* seam = SeamOf(name);
  if (!seam) return real;
  *seam->Real = reinterpret_cast<void*>(real);
  return reinterpret_cast<FARPROC>(seam->Hook);
}

void PutSeamsInto(HMODULE module) {
  auto* image = reinterpret_cast<char*>(module);
  const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS32*>(
      image + reinterpret_cast<const IMAGE_DOS_HEADER*>(image)->e_lfanew);
  const auto& entry = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  for (const auto* library =
           reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(image + entry.VirtualAddress);
       library->Name; ++library) {
    const auto* names = reinterpret_cast<const ULONG_PTR*>(image + library->OriginalFirstThunk);
    auto* addresses = reinterpret_cast<void**>(image + library->FirstThunk);
    for (; *names; ++names, ++addresses) {
      if (IMAGE_SNAP_BY_ORDINAL32(*names)) continue;
      const char* name = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(image + *names)->Name;
      const TSeam* seam = SeamOf(name);
      const bool finder = !std::strcmp(name, "GetProcAddress");
      if (!seam && !finder) continue;
      DWORD before = 0;
      VirtualProtect(addresses, sizeof *addresses, PAGE_READWRITE, &before);
      if (seam) *seam->Real = *addresses;
      *addresses = seam ? seam->Hook : reinterpret_cast<void*>(&FindFunction);
    }
  }
}

}  // namespace

class Faults : public TSituations {
 protected:
  void SetUp() override {
    TSituations::SetUp();
    Chosen.clear();
    Reload();
  }
  void TearDown() override {
    TPilot::Patience = TPilot::Usual;
    std::printf("%ld faults\n", Done);
    TSituations::TearDown();
  }
  void Reload() {
    Library->VCLFree();
    Library.reset();
    WaitUnloaded();
    Library.emplace();
    PutSeamsInto(Library->Module);
    Library->VCLSetMainWindowHandle(Owner);
  }

  /// Does it with one call after the other failing, and looks at the outcome after each.
  template <class TOutcome>
  void Torture(const char* what, const std::function<void()>& prepare,
               const std::function<TOutcome()>& act,
               const std::function<void(const TOutcome&, bool struck)>& look) {
    const char* wanted = std::getenv("ZEF_FAULTS");
    const long most = wanted ? std::atol(wanted) : 1;
    for (const TSeam& seam : Seams)
      for (const bool sticks : {false, true}) {
        prepare();
        Arm(&seam, LONG_MAX, false);
        const TOutcome whole = act();
        const long calls = Disarm();
        look(whole, false);
        const long stride = std::max(1L, calls / most);
        for (long failing = calls ? FFirst++ % std::min(stride, calls) : 0; failing < calls;
             failing += stride) {
          SCOPED_TRACE(Say(what, ", ", seam.Name, ' ', failing, " of ", calls,
                           sticks ? " and all after" : ""));
          TWatchdog::Allow(100);
          if (wanted) std::printf("%s, %s %ld of %ld\n", what, seam.Name, failing, calls);
          prepare();
          TPilot::Patience = 500;
          Arm(&seam, failing, sticks);
          const TOutcome outcome = act();
          Disarm();
          TPilot::Patience = TPilot::Usual;
          look(outcome, true);
          ++Done;
          if (HasFailure()) return;
        }
      }
  }
  static void Arm(const TSeam* seam, long failing, bool sticks) {
    Fault.Sticks = sticks;
    Fault.Left = failing;
    Fault.Seen = 0;
    Fault.Seam = seam->Real;
  }
  static long Disarm() {
    Fault.Seam = nullptr;
    return Fault.Seen;
  }

  std::string StoredList();
  void StoreList();

  long Done = 0;

 private:
  long FFirst = 0;
};

// ---- what the user must not lose ----

/// The list as the next opening finds it: names and paths.
std::string Faults::StoredList() {
  std::string list;
  const TPilot pilot({{"TDlgDirSelect", [&](HWND form) {
                         const HWND box = ControlOf(form, "ListRep");
                         for (int i = 0; i < SendMessageW(box, LB_GETCOUNT, 0, 0); ++i) {
                           wchar_t name[100] = {};
                           SendMessageW(box, LB_GETTEXT, static_cast<WPARAM>(i),
                                        reinterpret_cast<LPARAM>(name));
                           SelectInList(form, "ListRep", i);
                           list += Utf8(name) + '=' + TextOf(ControlOf(form, "EditRep")) + ' ';
                         }
                       }}});
  Directories();
  return list;
}

void Faults::StoreList() {
  RegDeleteTreeW(HKEY_CURRENT_USER, TSavedSettings::Product);
  Store({{"Comptes", Home}, {"Partis", Path("partis")}});
}

TEST_F(Faults, LeaveTheListOfDirectoriesWholeWhateverWriteFails) {
  const std::string before = Say("Comptes=", Home, " Partis=", Path("partis"), ' ');
  const std::string after = Say("Comptes=", Home, " Neuf=", Home, ' ');
  const auto change = [&] {
    std::string told;
    const TPilot pilot({{"TDlgDirSelect",
                         [](HWND form) {
                           const auto at =
                               SendMessageW(ControlOf(form, "ListRep"), LB_FINDSTRINGEXACT, 0,
                                            reinterpret_cast<LPARAM>(L"Partis"));
                           SelectInList(form, "ListRep", static_cast<int>(at));
                           ClickLater(form, "BtnRename");
                         }},
                        {"TInputBox",
                         [](HWND form) {
                           SetWindowTextW(ControlOf(form, "Value"), L"Neuf");
                           ClickLater(form, "ButtonOK");
                         }},
                        {"TDlgDirSelect",
                         [&](HWND form) {
                           SetWindowTextW(ControlOf(form, "EditRep"), Wide(Home).c_str());
                           ClickLater(form, "ButtonOK");
                         }},
                        {"#32770", [&](HWND) { told = " told"; }}});
    return Directories() + told;
  };
  Torture<std::string>(
      "list", [&] { StoreList(); }, change,
      [&](const std::string& outcome, bool struck) {
        const std::string list = StoredList();
        EXPECT_TRUE(list == after || (struck && list == before)) << list;
        // Refused: cancelled, or told.
        EXPECT_TRUE(list == after || outcome == "01" || outcome.ends_with("told")) << outcome;
      });
}

TEST_F(Faults, LeaveTheFileOldOrNewWhateverFailsOfADownload) {
  Server.emplace([](TConnection& connection) { connection.Answer("text/plain", "new"); });
  const std::string file = Path("file.txt");
  const auto fetch = [&] {
    ZefDialog dialog = nullptr;
    int status = ZEF_DOWNLOAD_NONE;
    const auto command = [&](int number, const char* text = nullptr) {
      Library->VCLCmdURL(dialog, static_cast<signed char>(number), text, &status);
    };
    Library->VCLNewURL(nullptr, nullptr, &dialog);
    command(ZEF_DOWNLOAD_SET_ADDRESS, Server->Address("/").c_str());
    command(ZEF_DOWNLOAD_SET_FILE, file.c_str());
    command(ZEF_DOWNLOAD_FETCH);
    command(ZEF_DOWNLOAD_GET_STATUS);
    command(ZEF_DOWNLOAD_DESTROY);
    return status;
  };
  Torture<int>(
      "file", [&] { std::ofstream(file) << "old"; }, fetch,
      [&](int status, bool struck) {
        const bool received = status == ZEF_DOWNLOAD_RECEIVED;
        std::ifstream stream(file, std::ios::binary);
        const std::string content{std::istreambuf_iterator<char>(stream), {}};
        EXPECT_EQ(content, received ? "new" : "old");
        EXPECT_TRUE(struck || received) << status;
      });
}

TEST_F(Faults, LeaveAMovedDirectoryWholeInOnePlace) {
  namespace fs = std::filesystem;
  Chosen = L"D:\\";
  Reload();
  const fs::path here = Wide(Home);
  const fs::path there = L"D:\\comptes";
  const auto whole = [](const fs::path& place) {
    return fs::exists(place / "ZEF.INI") && fs::exists(place / "2026" / "janvier");
  };
  const auto prepare = [&] {
    fs::remove_all(there);
    fs::create_directories(here / "2026");
    std::ofstream(here / "ZEF.INI") << "[zef]";
    std::ofstream(here / "2026" / "janvier") << "compte";
    StoreList();
  };
  const auto move = [&] {
    const TPilot pilot({{"TDlgDirSelect",
                         [](HWND form) {
                           SelectInList(form, "ListRep", 0);
                           ClickLater(form, "BtnMove");
                         }},
                        {"TDlgDirSelect", {}}});
    return Directories();
  };
  Torture<std::string>("move", prepare, move, [&](const std::string&, bool struck) {
    // The next opening finishes or undoes it.
    const std::string list = StoredList();
    const bool moved = list.starts_with("Comptes=D:");
    EXPECT_TRUE(whole(moved ? there : here)) << list;
    EXPECT_TRUE(struck || (moved && !fs::exists(here))) << list;
  });
  fs::remove_all(there);
}

TEST_F(Faults, RefuseADialogAndLeaveNothing) {
  if (!std::getenv("ZEF_FAULTS")) GTEST_SKIP() << "not clean yet; ZEF_FAULTS asks for it";
  for (const TSituation& situation : Situations) {
    Torture<std::string>(
        situation.Name, [] {}, [&] { return Run(situation); },
        [&](const std::string& outcome, bool) {
          ExpectNothingLeft();
          if (!situation.Modal) return;
          // The texts that the filter is given may be those that fail.
          const bool filter = std::string_view(situation.Name) == "filter";
          EXPECT_EQ(outcome.substr(0, filter ? 1 : outcome.size()),
                    std::string(situation.Cancelled).substr(0, filter ? 1 : std::string::npos));
        });
    // The same objects still serve.
    EXPECT_TRUE(!situation.Modal || Run(situation) == situation.Cancelled) << situation.Name;
    if (HasFailure()) break;
  }
}
