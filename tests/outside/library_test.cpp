#include <algorithm>
#include <array>
#include <csetjmp>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <thread>

#include "outside/debug_listener.h"
#include "outside/outside_test.h"

namespace {
std::string ReadBesideProgram(std::string_view name) {
  std::ifstream file(BesideProgram(name), std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(file), {}};
  std::erase(text, '\r');
  return text;
}

std::set<std::string> AllMatches(const std::string& text, const std::regex& pattern) {
  std::set<std::string> names;
  for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match)
    names.insert((*match)[1]);
  return names;
}

/// The names between "EXPORTS" and the end, quoted or not, without what they stand for.
std::set<std::string> DefinitionNames(const std::string& text) {
  const std::string exports = text.substr(std::min(text.size(), text.find("EXPORTS") + 7));
  const std::regex name("(?:^|\\n)[ \\t]*\"?([A-Za-z_@?][^\"=; \\t\\n]*)");
  return AllMatches(exports, name);
}

std::set<std::string> ExportedNames(HMODULE module) {
  const auto* image = reinterpret_cast<const char*>(module);
  const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
  const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS32*>(image + dos->e_lfanew);
  const auto& entry = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
  const auto* table = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(image + entry.VirtualAddress);
  const auto* names = reinterpret_cast<const DWORD*>(image + table->AddressOfNames);
  std::set<std::string> result;
  for (DWORD index = 0; index < table->NumberOfNames; ++index) result.insert(image + names[index]);
  return result;
}

/// What the header calls a function that is exported under a compiler's decoration.
std::string PlainName(const std::string& name) {
  static const std::regex Decorated("^(?:@|\\?|_Z\\d+)([A-Za-z]+?)(?:\\$|@@|P|$).*");
  std::smatch match;
  return std::regex_match(name, match, Decorated) ? match[1].str() : name;
}
}  // namespace

/// Without a host around it.
TEST(BareLibrary, TellsItsVersionBeforeAnythingElse) {
  const TLibrary library;
  EXPECT_EQ(library.VCLGetVersion(), 1102U);
  EXPECT_EQ(library.VCLGetVersion(), static_cast<unsigned>(ZEF_INTERFACE_VERSION));
}

TEST(BareLibrary, HeaderDefinitionAndExportTableAgree) {
  const TLibrary library;
  const std::set<std::string> exported = ExportedNames(library.Module);
  EXPECT_EQ(exported, DefinitionNames(ReadBesideProgram("zefext.def")));
  std::set<std::string> plain;
  std::ranges::transform(exported, std::inserter(plain, plain.end()), PlainName);
  const std::regex declaration("ZEFEXT_API\\s+(\\w+)\\s*\\(");
  EXPECT_EQ(plain, AllMatches(ReadBesideProgram("zefext.h"), declaration));
  EXPECT_TRUE(plain.contains("VCLGetVersion"));
}

TEST(BareLibrary, ServesWithoutAHost) {
  const TLibrary library;
  library.VCLSetMainHelpFile(nullptr);
  library.VCLFree();
  TScriptedUser().During([&] { EXPECT_EQ(library.VCLInvokeModalDialog(nullptr) & 0xFF, 0); },
                         [](TScriptedUser& user) {
                           TFormDriver form = user.WaitForForm("TDlgBase");
                           EXPECT_EQ(GetWindow(form.Handle(), GW_OWNER), nullptr);
                           form.Press(VK_ESCAPE);
                           form.WaitGone();
                         });
}

constexpr char Database[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?><objects>"
    "<object name=\"Panier\"><method name=\"Ajouter\"/><data name=\"Total\"/></object>"
    "<method name=\"Vérifier\"/><list name=\"Jours\"><listconst "
    "name=\"jrLundi\"/></list></objects>";

class LoadedLibrary : public TOutsideTest {
 protected:
  void UseADialog(const TLibrary& library) {
    During([&] { library.VCLInvokeModalDialog(nullptr); },
           [](TScriptedUser& user) {
             TFormDriver form = user.WaitForForm("TDlgBase");
             form.Press(VK_RETURN);
             form.WaitGone();
           });
  }
};

TEST_F(LoadedLibrary, KnowsTheWordsOfTheDatabaseBesideTheHost) {
  EXPECT_EQ(Library->VCLSyntaxIsMethod(".Ajouter"), 0);
  Library->VCLFree();
  const TDatabaseFile database(Database);
  const struct {
    const char* Word;
    int IsMethod;
    int IsConstant;
  } words[] = {{".Ajouter", 1, 0}, {".TOTAL", 1, 0}, {"Ajouter", 0, 0}, {"vérifier", 1, 0},
               {"JrLundi", 0, 1},  {"Panier", 0, 0}, {"", 0, 0}};
  for (const auto& [word, isMethod, isConstant] : words) {
    SCOPED_TRACE(word);
    EXPECT_EQ(Library->VCLSyntaxIsMethod(Ansi(word).c_str()), isMethod);
    EXPECT_EQ(Library->VCLSyntaxIsConstant(Ansi(word).c_str()), isConstant);
  }
  EXPECT_EQ(Library->VCLSyntaxIsMethod(nullptr), 0);
  EXPECT_EQ(Library->VCLSyntaxIsConstant(nullptr), 0);
}

TEST_F(LoadedLibrary, ServesUntilTheLastUnloadHoweverOftenItIsFreed) {
  {
    const TLibrary second;
    EXPECT_EQ(second.Module, Library->Module);
    second.VCLFree();
    second.VCLFree();
  }
  UseADialog(*Library);
}

/// What a process runs out of or grows by.
struct THoldings {
  DWORD ThreadLocalIndex;  ///< the next that the system gives
  std::size_t HeapBytes;

  static THoldings Take() {
    THoldings holdings{TlsAlloc(), 0};
    TlsFree(holdings.ThreadLocalIndex);
    std::array<HANDLE, 64> heaps{};
    const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
    for (DWORD index = 0; index < count; ++index) {
      PROCESS_HEAP_ENTRY entry{};
      while (HeapWalk(heaps[index], &entry))
        if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) holdings.HeapBytes += entry.cbData;
    }
    return holdings;
  }
};

TEST_F(LoadedLibrary, LoadsAndUnloadsAndLeavesNothing) {
  const TDatabaseFile database(Database);
  Library.reset();
  const auto round = [&](bool withDialog, bool freed) {
    {
      const TLibrary library;
      library.VCLSetMainWindowHandle(MainWindow);
      if (withDialog) UseADialog(library);
      library.VCLShowDebugText("");
      EXPECT_EQ(library.VCLSyntaxIsMethod(".ajouter"), 1);
      if (freed) library.VCLFree();
    }
    WaitUnloaded();
  };
  // The system makes and keeps things of its own at first.
  for (int count = 0; count < 4; ++count) round(true, count % 2);
  const TCensus early = TCensus::Take();
  const DWORD index = THoldings::Take().ThreadLocalIndex;
  for (int count = 0; count < 30; ++count) round(count % 3 == 0, count % 2);
  const TCensus late = TCensus::Take();
  EXPECT_EQ(late.NewSince(early), "");
  EXPECT_EQ(late.Modules, early.Modules);
  // The system caches a few; what each round lost would be many more.
  EXPECT_LT(late.GdiObjects, early.GdiObjects + 20);
  EXPECT_EQ(THoldings::Take().ThreadLocalIndex, index);
}

TEST_F(LoadedLibrary, GivesBackWhatItsRuntimeTakesForEachLoad) {
  Library.reset();
  const auto rounds = [](int count) {
    while (count--) {
      const TLibrary library;
      ZefString text = nullptr;
      library.VCLAnsiStringCreate(&text);
    }
  };
  rounds(20);
  const THoldings early = THoldings::Take();
  rounds(300);
  const THoldings late = THoldings::Take();
  EXPECT_EQ(late.ThreadLocalIndex, early.ThreadLocalIndex);
  // The thread library's locks are what is left.
  EXPECT_LT(late.HeapBytes - early.HeapBytes, 300U * 1024);
}

TEST_F(LoadedLibrary, MayBeLetGoWhereItIsInUse) {
  void* view = nullptr;
  Library->CreateExampleView(MainWindow, nullptr, &view);
  Library->VCLDialogShow(static_cast<ZefDialog>(view));
  Library->VCLShowDebugText("last");
  During([this] { Library->VCLInvokeModalDialog(nullptr); },
         [this](TScriptedUser& user) {
           TFormDriver form = user.WaitForForm("TDlgBase");
           InHost([this] { Library.reset(); });
           SendMessageW(form.Handle(), WM_CLOSE, 0, 0);
           form.WaitGone();
         });
  // By now the last to hold it is a thread of the system's, which has none of its windows.
  WaitUnloaded();
  EXPECT_TRUE(Descendants(MainWindow).empty());
  // From its next load on it makes its windows anew.
  const TLibrary again;
  again.VCLShowDebugText("first");
  WhileIdle([](TScriptedUser& user) {
    EXPECT_EQ(user.WaitForForm("TDlgDebug").Text("Memo"), "0001 : first");
  });
}

TEST_F(LoadedLibrary, BelongsToTheThreadOfItsWindowsWhileThatRuns) {
  Library->VCLShowDebugText("mine");
  const struct {
    const char* Export;
    std::function<int()> Call;
    int Refused;
  } calls[] = {
      {"VCLInvokeModalDialog", [&] { return Library->VCLInvokeModalDialog(nullptr) & 0xFF; }, 0},
      {"VCLInvokeNonModalDialog",
       [&] {
         ZefDialog out = reinterpret_cast<ZefDialog>(8);
         Library->VCLInvokeNonModalDialog(MainWindow, nullptr, &out);
         return out ? 1 : 0;
       },
       0},
      {"VCLShowDebugText", [&] { return Library->VCLShowDebugText("theirs"), 0; }, 0},
      {"VCLStringListCount", [&] { return Library->VCLStringListCount(nullptr); }, -1},
      {"VCLSyntaxHelpBox",
       [&] {
         const char* out = nullptr;
         Library->VCLSyntaxHelpBox("a.b", nullptr, &out, nullptr);
         return std::string_view(out).compare("a.b");
       },
       0},
      {"VCLSelectDirList",
       [&] {
         unsigned char cancelled = 0;
         return Library->VCLSelectDirList(nullptr, static_cast<unsigned char>(1), &cancelled) * 2 +
                cancelled;
       },
       1},
      {"VCLFree", [&] { return Library->VCLFree(), 0; }, 0},
  };
  std::thread([&] {
    for (const auto& each : calls) {
      SCOPED_TRACE(each.Export);
      TDebugListener::Take();
      EXPECT_EQ(each.Call(), each.Refused);
      EXPECT_NE(TDebugListener::Take().find(each.Export), std::string::npos);
    }
  }).join();
  const auto memo = [this] {
    std::string text;
    WhileIdle([&](TScriptedUser& user) { text = user.WaitForForm("TDlgDebug").Text("Memo"); });
    return text;
  };
  EXPECT_EQ(memo(), "0001 : mine");

  // The windows of a thread that has ended are nobody's.
  Library->VCLFree();
  std::thread([&] {
    Library->VCLShowDebugText("theirs");
    Library->VCLInvokeNonModalDialog(nullptr, nullptr, nullptr);
  }).join();
  Library->VCLShowDebugText("mine again");
  EXPECT_EQ(memo(), "0001 : mine again");
}

constexpr DWORD HostException = 0xE0000001;

/// Ends a call by an exception as a host's own handler does: the system unwinds the stack, and the
/// host goes on behind the call.
class THostHandler {
 public:
  /// True when the exception came out of the call.
  static bool CutsOff(const std::function<void()>& call) {
    THostHandler handler;
    asm volatile("movl %%fs:0, %0" : "=r"(handler.FNext) : : "memory");
    asm volatile("movl %0, %%fs:0" : : "r"(&handler) : "memory");
    volatile bool cut = true;
    if (setjmp(handler.FBack) == 0) {
      call();
      cut = false;
    }
    asm volatile("movl %0, %%fs:0" : : "r"(handler.FNext) : "memory");
    return cut;
  }

 private:
  static EXCEPTION_DISPOSITION Handle(EXCEPTION_RECORD* record, void* frame, CONTEXT*, void*) {
    const bool wanted = record->ExceptionCode == HostException && !(record->ExceptionFlags & 6);
    if (wanted) longjmp(static_cast<THostHandler*>(frame)->FBack, 1);
    return ExceptionContinueSearch;
  }

  void* FNext = nullptr;
  EXCEPTION_DISPOSITION (*FHandler)(EXCEPTION_RECORD*, void*, CONTEXT*, void*) = Handle;
  jmp_buf FBack{};
};

unsigned short FloatingPointControl() {
  unsigned short control = 0;
  asm volatile("fnstcw %0" : "=m"(control));
  return control;
}

TEST_F(LoadedLibrary, LeavesTheHostAsItWasHoweverADialogEnds) {
  const HWND edit = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 0, 0, 100, 20,
                                    MainWindow, nullptr, nullptr, nullptr);
  const std::function<void()> raise = [] { RaiseException(HostException, 0, 0, nullptr); };
  const unsigned short unmasked = 0x37B;  // division by zero raises
  for (const bool byException : {false, true}) {
    SCOPED_TRACE(byException);
    SetFocus(edit);
    SetCapture(MainWindow);
    asm volatile("fldcw %0" : : "m"(unmasked));
    bool cut = false;
    During([&] { cut = THostHandler::CutsOff([&] { Library->VCLInvokeModalDialog(nullptr); }); },
           [&](TScriptedUser& user) {
             TFormDriver form = user.WaitForForm("TDlgBase");
             InHost([] {
               EXPECT_EQ(GetCapture(), nullptr);
               EXPECT_EQ(FloatingPointControl() & 0x3F, 0x3F);
             });
             if (byException) {
               PostMessageW(MainWindow, WM_APP, 0, reinterpret_cast<LPARAM>(&raise));
             } else {
               form.Press(VK_ESCAPE);
             }
             form.WaitGone();
           });
    EXPECT_EQ(FloatingPointControl(), unmasked);
    asm volatile("fninit");
    EXPECT_EQ(cut, byException);
    EXPECT_TRUE(IsWindowEnabled(MainWindow));
    EXPECT_EQ(GetFocus(), edit);
    // No call counts as going on: what is freed goes at once.
    Library->VCLShowDebugText("");
    Library->VCLFree();
    EXPECT_EQ(FindWindowA("TDlgDebug", nullptr), nullptr);
    UseADialog(*Library);
  }
}
