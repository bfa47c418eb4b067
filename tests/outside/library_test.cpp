#include <thread>

#include "outside/outside_test.h"

TEST(BareLibrary, ServesWithoutAHost) {
  const TLibrary library;
  EXPECT_EQ(library.VCLGetVersion(), static_cast<unsigned>(ZEF_INTERFACE_VERSION));
  // Other compilers decorate the names in other ways.
  const std::pair<const char*, const void*> decorated[] = {
      {"_Z17CreateExampleViewPvPKcRP8IUnknown@12",
       reinterpret_cast<void*>(library.CreateExampleView)},
      {"?CreateExampleView@@YGPAUHWND__@@PAXQBDAAPAUIUnknown@@@Z",
       reinterpret_cast<void*>(library.CreateExampleView)},
      {"_Z16VCLExDlgDlwdGiveP9IExClass1Pv@8", reinterpret_cast<void*>(library.VCLExDlgDlwdGive)},
      {"?VCLExDlgDlwdGive@@YGPAXPAUIExClass1@@PAX@Z",
       reinterpret_cast<void*>(library.VCLExDlgDlwdGive)}};
  for (const auto& [name, function] : decorated)
    EXPECT_EQ(reinterpret_cast<void*>(GetProcAddress(library.Module, name)), function) << name;
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

  // Another thread lets go of the library: its windows wait for theirs as it is loaded again.
  std::thread([&] { Library.reset(); }).join();
  EXPECT_EQ(GetModuleHandleA("zefext.dll"), nullptr);
  Library.emplace();
  Library->VCLSetMainWindowHandle(MainWindow);
  Library->VCLShowDebugText("reloaded");
  expectMemo("0001 : reloaded");
}
