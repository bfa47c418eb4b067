#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <thread>

#include "outside/debug_listener.h"
#include "outside/host_exception.h"
#include "outside/outside_test.h"

namespace {
std::set<std::string> AllMatches(const char* file, const char* pattern) {
  std::ifstream stream(BesideProgram(file), std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(stream), {}};
  const std::regex regex(pattern);
  std::set<std::string> names;
  for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match)
    names.insert((*match)[1]);
  return names;
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

TEST(BareLibrary, ServesWithoutAHostWhatTheHeaderSays) {
  const TLibrary library;
  EXPECT_EQ(library.VCLGetVersion(), static_cast<unsigned>(ZEF_INTERFACE_VERSION));
  const std::set<std::string> exported = ExportedNames(library.Module);
  EXPECT_EQ(exported, AllMatches("zefext.def", "\n[ \t]+\"?([A-Za-z_@?][^\"=; \t\r\n]*)"));
  std::set<std::string> plain;
  std::ranges::transform(exported, std::inserter(plain, plain.end()), PlainName);
  EXPECT_EQ(plain, AllMatches("zefext.h", "ZEFEXT_API\\s+(\\w+)\\s*\\("));
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

class LoadedLibrary : public TOutsideTest {
 protected:
  void UseADialog() {
    During([&] { Library->VCLInvokeModalDialog(nullptr); },
           [](TScriptedUser& user) {
             TFormDriver form = user.WaitForForm("TDlgBase");
             form.Press(VK_RETURN);
             form.WaitGone();
           });
  }
};

TEST_F(LoadedLibrary, ServesUntilTheLastUnloadHoweverOftenItIsFreed) {
  EXPECT_EQ(Library->VCLSyntaxIsMethod(".Ajouter"), 0);
  {
    const TLibrary second;
    EXPECT_EQ(second.Module, Library->Module);
    second.VCLFree();
    second.VCLFree();
  }
  // From now on it reads the database anew.
  const TDatabaseFile database(
      "<objects><object name=\"Panier\"><method name=\"Ajouter\"/></object>"
      "<list name=\"Jours\"><listconst name=\"jrLundi\"/></list></objects>");
  EXPECT_EQ(Library->VCLSyntaxIsMethod(".ajouter"), 1);
  EXPECT_EQ(Library->VCLSyntaxIsMethod("Panier"), 0);
  EXPECT_EQ(Library->VCLSyntaxIsConstant("JrLundi"), 1);
  EXPECT_EQ(Library->VCLSyntaxIsConstant(".ajouter"), 0);
  UseADialog();
}

TEST_F(LoadedLibrary, BelongsToTheThreadOfItsWindowsWhileThatRuns) {
  Library->VCLShowDebugText("mine");
  const struct {
    const char* Export;
    std::function<int()> Call;
    int Refused;
  } calls[] = {
      {"VCLInvokeModalDialog", [&] { return Library->VCLInvokeModalDialog(nullptr) & 0xFF; }, 0},
      {"VCLShowDebugText", [&] { return Library->VCLShowDebugText("theirs"), 0; }, 0},
      {"VCLStringListCount", [&] { return Library->VCLStringListCount(nullptr); }, -1},
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

unsigned short FloatingPointControl() {
  unsigned short control = 0;
  asm volatile("fnstcw %0" : "=m"(control));
  return control;
}

TEST_F(LoadedLibrary, LeavesTheHostAsItWasHoweverADialogEnds) {
  const HWND edit = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 0, 0, 100, 20,
                                    MainWindow, nullptr, nullptr, nullptr);
  const std::function<void()> raise = RaiseHostException;
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
    UseADialog();
  }
}
