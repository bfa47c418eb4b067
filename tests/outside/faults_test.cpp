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
#include <set>
#include <string_view>

#include "outside/imports.h"
#include "outside/situations.h"
#include "user/items.h"
#include "user/say.h"
#include "user/watchdog.h"

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
  std::string_view Name;
  const void* Hook;
  const void** Real;
};

// Which: so that functions of one kind have a hook each.
template <class TFunction, ULONG_PTR Result, DWORD Error, int Which>
struct THook;

#define FAULT_HOOK(convention)                                                               \
  template <class TResult, class... TArguments, ULONG_PTR Result, DWORD Error, int Which>    \
  struct THook<TResult(convention*)(TArguments...), Result, Error, Which> {                  \
    static inline const void* Real = nullptr;                                                \
    static TResult convention Call(TArguments... arguments) {                                \
      if (Fault.Strikes(&Real)) {                                                            \
        SetLastError(Error);                                                                 \
        return (TResult)Result;                                                              \
      }                                                                                      \
      return reinterpret_cast<TResult(convention*)(TArguments...)>(const_cast<void*>(Real))( \
          arguments...);                                                                     \
    }                                                                                        \
  };
FAULT_HOOK(__stdcall)
FAULT_HOOK(__cdecl)
#undef FAULT_HOOK

template <class TFunction, ULONG_PTR Result, DWORD Error, int Which>
TSeam MakeSeam(const char* name) {
  using THere = THook<TFunction, Result, Error, Which>;
  return {name, reinterpret_cast<const void*>(&THere::Call), &THere::Real};
}

template <class... TSeams>
std::vector<TSeam> All(TSeams... seams) {
  return {seams...};
}

#define SEAM(name, result, error) \
  MakeSeam<decltype(&::name), static_cast<ULONG_PTR>(result), error, __COUNTER__>(#name)

constexpr DWORD Memory = ERROR_NOT_ENOUGH_MEMORY, Denied = ERROR_ACCESS_DENIED,
                Full = ERROR_DISK_FULL, InUse = ERROR_SHARING_VIOLATION, Unread = ERROR_READ_FAULT,
                Scarce = ERROR_NO_SYSTEM_RESOURCES, Missing = ERROR_MOD_NOT_FOUND,
                Invalid = ERROR_INVALID_FUNCTION;

const std::vector<TSeam> Seams =
    All(SEAM(malloc, 0, Memory), SEAM(realloc, 0, Memory), SEAM(calloc, 0, Memory),
        SEAM(CreateWindowExW, 0, Memory), SEAM(RegisterClassExW, 0, Memory),
        SEAM(CreateFontIndirectW, 0, Memory), SEAM(CreateDIBSection, 0, Memory),
        SEAM(SetWindowsHookExW, 0, Memory), SEAM(SetTimer, 0, Memory),
        SEAM(CreateEventW, 0, Memory), SEAM(CreateMutexW, 0, Memory), SEAM(CreateThread, 0, Memory),
        SEAM(TrySubmitThreadpoolCallback, 0, Memory), SEAM(CoCreateInstance, E_OUTOFMEMORY, Memory),
        SEAM(LoadLibraryW, 0, Missing), SEAM(RegCreateKeyExA, Denied, Denied),
        SEAM(RegOpenKeyExA, Denied, Denied), SEAM(RegSetValueExA, Scarce, Scarce),
        SEAM(RegDeleteValueA, Denied, Denied), SEAM(RegQueryValueExA, Denied, Denied),
        SEAM(CreateFileW, -1, Denied), SEAM(ReadFile, 0, Unread), SEAM(WriteFile, 0, Full),
        SEAM(FlushFileBuffers, 0, Full), SEAM(SetFileInformationByHandle, 0, Invalid),
        SEAM(CopyFileExW, 0, Full), SEAM(CreateDirectoryExW, 0, Full), SEAM(MoveFileExW, 0, Denied),
        SEAM(DeleteFileW, 0, InUse), SEAM(RemoveDirectoryW, 0, InUse),
        SEAM(FindFirstFileW, -1, Denied), SEAM(FindNextFileW, 0, Unread),
        SEAM(SetFileAttributesW, 0, Denied), SEAM(SetCurrentDirectoryW, 0, Denied));
#undef SEAM

/// In place of the shell's folder picker: the user chose this one.
std::wstring Chosen;
LPITEMIDLIST WINAPI ChooseFolder(BROWSEINFOW*) { return ILCreateFromPathW(Chosen.c_str()); }

const void* InPlaceOf(const char* name, const void* real);

/// What is resolved by name goes through the seams as well.
FARPROC WINAPI FindFunction(HMODULE module, LPCSTR name) {
  const FARPROC real = GetProcAddress(module, name);
  if (!real || IS_INTRESOURCE(name)) return real;
  if (!std::strcmp(name, "SHBrowseForFolderW") && !Chosen.empty())
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&ChooseFolder));
  const void* hook = InPlaceOf(name, reinterpret_cast<const void*>(real));
  return hook ? reinterpret_cast<FARPROC>(const_cast<void*>(hook)) : real;
}

const void* InPlaceOf(const char* name, const void* real) {
  if (!std::strcmp(name, "GetProcAddress")) return reinterpret_cast<const void*>(&FindFunction);
  const auto seam = std::ranges::find(Seams, std::string_view(name), &TSeam::Name);
  if (seam == Seams.end()) return nullptr;
  *seam->Real = real;
  return seam->Hook;
}

}  // namespace

class Faults : public TSituations {
 protected:
  void SetUp() override {
    TSituations::SetUp();
    Chosen.clear();
    Library->VCLFree();
    Library.reset();
    WaitUnloaded();
    Library.emplace();
    RedirectImports(Library->Module, InPlaceOf);
    Library->VCLSetMainWindowHandle(Owner);
  }

  /// Does it with one call after the other failing, and looks at the outcome after each.
  template <class TAct>
  void Torture(const char* what, const std::function<void()>& prepare, const TAct& act,
               const std::function<void(const std::invoke_result_t<TAct>&, bool struck)>& look) {
    const char* wanted = std::getenv("ZEF_FAULTS");
    const long most = wanted ? std::atol(wanted) : 1;
    long done = 0;
    for (const TSeam& seam : Seams)
      for (const bool sticks : {false, true}) {
        long calls = LONG_MAX;
        const auto once = [&](long failing) {
          prepare();
          Fault.Sticks = sticks;
          Fault.Left = failing;
          Fault.Seen = 0;
          Fault.Seam = seam.Real;
          const auto outcome = act();
          Fault.Seam = nullptr;
          TPilot::Patience = TPilot::Usual;
          look(outcome, failing < calls);
          return Fault.Seen.load();
        };
        calls = once(calls);
        const long stride = std::max(1L, calls / most);
        for (long failing = calls ? FFirst++ % std::min(stride, calls) : 0; failing < calls;
             failing += stride) {
          const std::string place = Say(what, ", ", seam.Name, ' ', failing, " of ", calls,
                                        sticks ? " and all after" : "");
          SCOPED_TRACE(place);
          TWatchdog::Allow(TestSeconds);
          if (wanted) std::puts(place.c_str());
          TPilot::Patience = 500;
          once(failing);
          ++done;
          if (HasFailure()) return;
        }
      }
    std::printf("%s: %ld faults\n", what, done);
    EXPECT_GT(done, 10) << what;
  }
  /// The list as the next opening finds it: names and paths.
  std::string StoredList();
  void StoreList() {
    RegDeleteTreeW(HKEY_CURRENT_USER, TSavedSettings::Product);
    Store({{"Comptes", Home}, {"Partis", Path("partis")}});
  }

 private:
  long FFirst = 0;
};

// ---- what the user must not lose ----

std::string Faults::StoredList() {
  std::string list;
  const TPilot pilot({{"TDlgDirSelect", {[&](HWND form) {
                         for (const auto& name : ItemsOf(ControlNamed(form, "ListRep"))) {
                           Selects("ListRep", name)(form);
                           list += Say(name, '=', TextOf(ControlNamed(form, "EditRep")), ' ');
                         }
                       }}}});
  Directories();
  return list;
}

TEST_F(Faults, LeaveTheListOfDirectoriesWholeWhateverWriteFails) {
  const std::string before = Say("Comptes=", Home, " Partis=", Path("partis"), ' ');
  const std::string after = Say("Comptes=", Home, " Neuf=", Home, ' ');
  const auto change = [&] {
    std::string told;
    const TPilot pilot({{"TDlgDirSelect", {Selects("ListRep", "Partis"), Clicks("BtnRename")}},
                        {"TInputBox", {Fills("Value", "Neuf"), Clicks("ButtonOK")}},
                        {"TDlgDirSelect", {Fills("EditRep", Home), Clicks("ButtonOK")}},
                        {"#32770", {[&](HWND) { told = " told"; }}}});
    return Directories() + told;
  };
  Torture(
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
    const THostDownload download(*Library);
    download.Start(Server->Address("/"), file.c_str(), ZEF_DOWNLOAD_FETCH);
    return download.Status();
  };
  Torture(
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
    const TPilot pilot({{"TDlgDirSelect", {Selects("ListRep", "Comptes"), Clicks("BtnMove")}},
                        {"TDlgDirSelect", {}}});
    return Directories();
  };
  Torture("move", prepare, move, [&](const std::string&, bool struck) {
    // The next opening finishes or undoes it.
    const std::string list = StoredList();
    const bool moved = list.starts_with("Comptes=D:");
    EXPECT_TRUE(whole(moved ? there : here)) << list;
    EXPECT_TRUE(struck || (moved && !fs::exists(here))) << list;
  });
  fs::remove_all(there);
}

TEST_F(Faults, RefuseADialogAndLeaveNothing) {
  // Enough unasked: a dialog of many controls, a window that works in the background.
  static const std::set<std::string_view> Usual{"assistant", "download"};
  for (const TSituation& situation : Situations) {
    if (!std::getenv("ZEF_FAULTS") && !Usual.contains(situation.Name)) continue;
    Torture(
        situation.Name, [&] { Library->VCLFree(); }, [&] { return Run(situation); },
        [&](const std::string& outcome, bool struck) {
          ExpectNothingLeft();
          if (!situation.Modal() || (struck && outcome.starts_with(None))) return;
          // The texts that the filter is given may be those that fail.
          const bool filter = std::string_view(situation.Name) == "filter";
          EXPECT_EQ(outcome.substr(0, filter ? 1 : outcome.size()),
                    std::string(situation.Cancelled).substr(0, filter ? 1 : std::string::npos));
        });
    // The same objects still serve.
    EXPECT_TRUE(!situation.Modal() || Run(situation) == situation.Cancelled) << situation.Name;
    if (HasFailure()) break;
  }
}
