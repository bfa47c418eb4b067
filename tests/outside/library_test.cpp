#include <fstream>
#include <regex>
#include <set>
#include <thread>

#include "outside/host_exception.h"
#include "outside/outside_test.h"

namespace {
using TNames = std::set<std::string>;

/// What the header calls a function that is exported under a compiler's decoration.
std::string PlainName(const std::string& name) {
  return std::regex_replace(name, std::regex("^(?:@|\\?|_Z\\d+)([A-Za-z]+?)(?:\\$|@@|P|$).*"),
                            "$1");
}

TNames AllMatches(const char* file, const char* pattern) {
  std::ifstream stream(BesideProgram(file), std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(stream), {}};
  const std::regex regex(pattern);
  TNames names;
  for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match)
    names.insert((*match)[1]);
  return names;
}
}  // namespace

TEST(BareLibrary, ServesWithoutAHostWhatTheHeaderSays) {
  const TLibrary library;
  EXPECT_EQ(library.VCLGetVersion(), static_cast<unsigned>(ZEF_INTERFACE_VERSION));
  TNames plain;
  for (const auto& name : AllMatches("zefext.def", "\n[ \t]+\"?([A-Za-z_@?][^\"=; \t\r\n]*)")) {
    EXPECT_NE(GetProcAddress(library.Module, name.c_str()), nullptr) << name;
    plain.insert(PlainName(name));
  }
  EXPECT_EQ(plain, AllMatches("zefext.h", "ZEFEXT_API\\s+(\\w+)\\s*\\("));
  library.VCLFree();
  TScriptedUser().During([&] { EXPECT_EQ(library.VCLInvokeModalDialog(nullptr) & 0xFF, 0); },
                         [](TScriptedUser& user) {
                           TFormDriver form = user.WaitForForm("TDlgBase");
                           EXPECT_EQ(GetWindow(form.Handle(), GW_OWNER), nullptr);
                           form.Press(VK_ESCAPE);
                           form.WaitGone();
                         });
}

class LoadedLibrary : public TOutsideTest {};

TEST_F(LoadedLibrary, ServesUntilTheLastUnloadHoweverOftenItIsFreed) {
  EXPECT_EQ(Library->VCLSyntaxIsMethod(".Ajouter"), 0);
  {
    const TLibrary second;
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
}

TEST_F(LoadedLibrary, BelongsToTheThreadOfItsWindowsWhileThatRuns) {
  Library->VCLShowDebugText("mine");
  unsigned char cancelled = 0;
  const struct {
    const char* Export;
    std::function<int()> Call;
    int Refused;
  } calls[] = {
      {"VCLInvokeModalDialog", [&] { return Library->VCLInvokeModalDialog(nullptr) & 0xFF; }, 0},
      {"VCLShowDebugText", [&] { return Library->VCLShowDebugText("theirs"), 0; }, 0},
      {"VCLSelectDirList",
       [&] { return Library->VCLSelectDirList("", static_cast<unsigned char>(1), &cancelled); }, 0},
      {"VCLFree", [&] { return Library->VCLFree(), 0; }, 0},
  };
  std::thread([&] {
    for (const auto& each : calls) {
      TakeDebugLines();
      EXPECT_EQ(each.Call(), each.Refused) << each.Export;
      EXPECT_NE(TakeDebugLines().find(each.Export), std::string::npos) << each.Export;
    }
  }).join();
  EXPECT_EQ(cancelled, 1);
  Library->VCLDialogShow(reinterpret_cast<ZefDialog>(4711));
  EXPECT_NE(TakeDebugLines().find("VCLDialogShow"), std::string::npos) << "a handle refused";
  const auto expectMemo = [this](const char* text) {
    WhileIdle(
        [&](TScriptedUser& user) { EXPECT_EQ(user.WaitForForm("TDlgDebug").Text("Memo"), text); });
  };
  expectMemo("0001 : mine");

  // The windows of a thread that has ended are nobody's.
  Library->VCLFree();
  std::thread([&] {
    Library->VCLShowDebugText("theirs");
    Library->VCLInvokeNonModalDialog(nullptr, nullptr, nullptr);
  }).join();
  Library->VCLShowDebugText("mine again");
  expectMemo("0001 : mine again");
}

static unsigned short FloatingPointControl() {
  unsigned short control = 0;
  asm volatile("fnstcw %0" : "=m"(control));
  return control;
}

TEST_F(LoadedLibrary, LeavesTheHostAsItWasHoweverADialogEnds) {
  const HWND edit = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 0, 0, 100, 20,
                                    MainWindow, nullptr, nullptr, nullptr);
  const std::function<void()> raise = RaiseHostException;
  const unsigned short unmasked = 0x37B;  // division by zero raises
  for (const bool byException : {false, true, false}) {
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
    EXPECT_EQ(GetFocus(), edit);
  }
}
