#include <windows.h>

#include <psapi.h>

#include <algorithm>

#include "outside/outside_test.h"

namespace {

RECT PlaceInParent(HWND window) {
  RECT place = BoundsOf(window);
  MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&place), 2);
  return place;
}

SIZE SizeOf(HWND window) {
  const RECT bounds = BoundsOf(window);
  return {bounds.right - bounds.left, bounds.bottom - bounds.top};
}

/// What the process has taken from the system for itself.
std::size_t CommittedBytes() {
  PROCESS_MEMORY_COUNTERS counters{};
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return counters.PagefileUsage;
}

/// Counts the hooks that a module holds, by standing between it and the system: a hook left behind
/// shows in no other way.
class THookCount {
 public:
  explicit THookCount(HMODULE module) {
    Held = 0;
    Divert(module, "SetWindowsHookExW", reinterpret_cast<void*>(Set));
    Divert(module, "UnhookWindowsHookEx", reinterpret_cast<void*>(Unhook));
  }
  static inline int Held = 0;

 private:
  static HHOOK WINAPI Set(int kind, HOOKPROC proc, HINSTANCE module, DWORD thread) {
    ++Held;
    return SetWindowsHookExW(kind, proc, module, thread);
  }
  static BOOL WINAPI Unhook(HHOOK hook) {
    --Held;
    return UnhookWindowsHookEx(hook);
  }
  static void Divert(HMODULE module, const char* name, void* to) {
    auto* image = reinterpret_cast<char*>(module);
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS32*>(image + dos->e_lfanew);
    const auto& table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IAT];
    auto* entries = reinterpret_cast<void**>(image + table.VirtualAddress);
    void* from = reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("user32.dll"), name));
    auto* entry = std::find(entries, entries + table.Size / sizeof(void*), from);
    ASSERT_NE(entry, entries + table.Size / sizeof(void*)) << name;
    DWORD before = 0;
    VirtualProtect(entry, sizeof *entry, PAGE_READWRITE, &before);
    *entry = to;
    VirtualProtect(entry, sizeof *entry, before, &before);
  }
};

}  // namespace

class Views : public TOutsideTest {
 protected:
  /// A window of the host for a view to stand in. Of the host's own class: the system's may leave
  /// the process together with the library.
  HWND Holder(int left = 10) const {
    const auto hosts = static_cast<ATOM>(GetClassLongW(MainWindow, GCW_ATOM));
    return CreateWindowExW(WS_EX_CONTROLPARENT, MAKEINTATOM(hosts), L"", WS_CHILD | WS_VISIBLE,
                           left, 10, 620, 380, MainWindow, nullptr, nullptr, nullptr);
  }

  ZefDialog MakeView(HWND parent, HWND* window = nullptr, const char* helpFile = nullptr) const {
    void* view = nullptr;
    const HWND made = Library->CreateExampleView(parent, helpFile, &view);
    if (window) *window = made;
    return static_cast<ZefDialog>(view);
  }

  /// Everything that takes a view is done to the handle; true when all of it was refused.
  bool Refused(void* handle) const {
    const auto dialog = static_cast<ZefDialog>(handle);
    Library->VCLDialogShow(dialog);
    Library->VCLDialogClearHasChanged(dialog);
    return Library->VCLDialogHasChanged(dialog) == 0 &&
           Library->VCLExDlgDlwdGive(nullptr, handle) == nullptr;
  }
};

TEST_F(Views, AreMadeUnderEachCompilersNames) {
  const std::vector<const char*> functions[] = {
      {"_Z17CreateExampleViewPvPKcRP8IUnknown@12", "@CreateExampleView$qqspvxpxcrp8IUnknown",
       "?CreateExampleView@@YGPAUHWND__@@PAXQBDAAPAUIUnknown@@@Z"},
      {"_Z16VCLExDlgDlwdGiveP9IExClass1Pv@8", "@VCLExDlgDlwdGive$qqsp9IExClass1pv",
       "?VCLExDlgDlwdGive@@YGPAXPAUIExClass1@@PAX@Z"}};
  for (const auto& names : functions) {
    const FARPROC first = GetProcAddress(Library->Module, names[0]);
    EXPECT_NE(first, nullptr);
    for (const char* name : names) EXPECT_EQ(GetProcAddress(Library->Module, name), first) << name;
  }
}

TEST_F(Views, StandInTheHostsWindowUntilItGoes) {
  const HWND holders[] = {Holder(0), Holder(640)};
  HWND windows[2];
  const ZefDialog views[] = {MakeView(holders[0], &windows[0]), MakeView(holders[1], &windows[1])};
  ASSERT_NE(views[0], views[1]);
  for (int i = 0; i < 2; ++i) {
    ASSERT_NE(views[i], nullptr);
    EXPECT_EQ(GetAncestor(windows[i], GA_PARENT), holders[i]);
    EXPECT_FALSE(Shown(windows[i]));
    const RECT place = PlaceInParent(windows[i]);
    EXPECT_EQ(place.left, GetSystemMetrics(SM_CXFIXEDFRAME));
    EXPECT_EQ(place.top, GetSystemMetrics(SM_CYFIXEDFRAME));
    EXPECT_EQ(SizeOf(windows[i]).cx, 592);
    EXPECT_EQ(SizeOf(windows[i]).cy, 324);
    EXPECT_EQ(TextOf(windows[i]), "ExampleView");
    EXPECT_EQ(Library->VCLDialogHasChanged(views[i]), 0);
    Library->VCLDialogShow(views[i]);
    EXPECT_TRUE(Shown(windows[i]));
  }
  EXPECT_EQ(Library->VCLExDlgDlwdGive(nullptr, views[0]), views[0]);

  DestroyWindow(holders[0]);
  EXPECT_TRUE(Refused(views[0]));
  EXPECT_FALSE(Refused(views[1]));
  EXPECT_TRUE(Shown(windows[1]));
  DestroyWindow(windows[1]);
  EXPECT_TRUE(Refused(views[1]));
}

TEST_F(Views, HoldTheirKeyboardHookOnlyWhileOneOfThemIsShown) {
  const THookCount hooks(Library->Module);
  const HWND holder = Holder();
  const ZefDialog view = MakeView(holder);
  EXPECT_EQ(hooks.Held, 0);
  Library->VCLDialogShow(view);
  EXPECT_EQ(hooks.Held, 1);
  ZefDialog dialog = nullptr;
  Library->VCLInvokeNonModalDialog(MainWindow, nullptr, &dialog);
  Library->VCLShowDebugText("abc");
  EXPECT_EQ(hooks.Held, 1);
  Library->VCLFreeNonModalDialog(dialog);
  Library->VCLFree();
  EXPECT_EQ(hooks.Held, 1);
  DestroyWindow(holder);
  EXPECT_EQ(hooks.Held, 0);
}

TEST_F(Views, WithoutAParentAreHiddenWindowsInTheMiddleOfTheScreen) {
  RECT area{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
  const HWND gone = Holder();
  DestroyWindow(gone);
  for (const HWND parent : {HWND{}, gone}) {
    HWND window = nullptr;
    const ZefDialog view = MakeView(parent, &window);
    EXPECT_EQ(GetAncestor(window, GA_PARENT), GetDesktopWindow());
    EXPECT_FALSE(Shown(window));
    const RECT bounds = BoundsOf(window);
    EXPECT_NEAR(bounds.left + bounds.right, area.left + area.right, 2);
    EXPECT_NEAR(bounds.top + bounds.bottom, area.top + area.bottom, 2);
    EXPECT_EQ(SizeOf(window).cx, 592);
    EXPECT_EQ(SizeOf(window).cy, 324);
    const auto style = GetWindowLongW(window, GWL_STYLE);
    for (const LONG icon : {WS_SYSMENU, WS_MINIMIZEBOX, WS_MAXIMIZEBOX}) {
      EXPECT_TRUE(style & icon) << std::hex << icon;
    }
    EXPECT_FALSE(style & WS_THICKFRAME);
    // Made without a parent, yet not for one that comes to be: the next one is embedded again.
    HWND embedded = nullptr;
    MakeView(MainWindow, &embedded);
    EXPECT_EQ(GetAncestor(embedded, GA_PARENT), MainWindow);
    DestroyWindow(embedded);
    DestroyWindow(window);
    EXPECT_TRUE(Refused(view));
  }
}

TEST_F(Views, WrongHandlesGetNothing) {
  ZefDialog dialog = nullptr;
  Library->VCLInvokeNonModalDialog(MainWindow, nullptr, &dialog);
  ZefDialog freed = nullptr;
  Library->VCLInvokeNonModalDialog(MainWindow, nullptr, &freed);
  Library->VCLFreeNonModalDialog(freed);
  HWND window = nullptr;
  const ZefDialog view = MakeView(Holder(), &window);
  char foreign[256]{};
  for (void* wrong :
       {static_cast<void*>(nullptr), static_cast<void*>(foreign), reinterpret_cast<void*>(8),
        static_cast<void*>(MainWindow), static_cast<void*>(window), static_cast<void*>(dialog)}) {
    EXPECT_TRUE(Refused(wrong)) << wrong;
  }
  if (freed != view) {
    EXPECT_TRUE(Refused(freed));
  }
  EXPECT_EQ(Library->VCLFreeNonModalDialog(view) & 0xFF, 0);
  EXPECT_FALSE(Refused(view));
  EXPECT_NE(Library->CreateExampleView(MainWindow, nullptr, nullptr), nullptr);
  Library->VCLFreeNonModalDialog(dialog);
}

TEST_F(Views, HelpFileOfAViewIsEveryonesFromThenOn) {
  HWND window = nullptr;
  const auto askForHelp = [&](ZefDialog view) {
    Library->VCLDialogShow(view);
    WhileIdle([&](TScriptedUser& user) {
      TFormDriver form(user, window);
      form.Click("HelpBtn");
    });
    return HelpServer->Requests().back();
  };
  const ZefDialog first = MakeView(Holder(), &window);
  EXPECT_EQ(askForHelp(first), (THelpServer::TRequest{MainWindow, HELP_CONTEXT, 0, HelpFile}));
  MakeView(Holder(), nullptr, "C:\\ZEF\\Vue.hlp");
  EXPECT_EQ(askForHelp(first),
            (THelpServer::TRequest{MainWindow, HELP_CONTEXT, 0, "C:\\ZEF\\Vue.hlp"}));
  During([&] { Library->VCLInvokeModalDialog(nullptr); },
         [&](TScriptedUser& user) {
           TFormDriver form = user.WaitForForm("TDlgBase");
           form.Click("ButtonHelp");
           form.Press(VK_ESCAPE);
           form.WaitGone();
         });
  EXPECT_EQ(HelpServer->Requests().back().File, "C:\\ZEF\\Vue.hlp");
}

TEST_F(Views, ComeAndGoAThousandTimesAndLeaveNothing) {
  constexpr int WarmUp = 100;
  constexpr int Cycles = 1000;
  constexpr std::size_t Slack = 64 * 1024;
  constexpr int SystemsOwnObjects = 4;  // it makes and drops a few as it likes
  TCensus early;
  std::size_t bytes = 0;
  for (int cycle = 0; cycle < WarmUp + Cycles; ++cycle) {
    if (cycle == WarmUp) {
      early = TCensus::Take();
      bytes = CommittedBytes();
    }
    const HWND holder = Holder();
    const ZefDialog view = MakeView(holder);
    ZefDialog dialog = nullptr;
    Library->VCLInvokeNonModalDialog(holder, nullptr, &dialog);
    Library->VCLDialogShow(view);
    // The dialog goes before the window around it, or after.
    if (cycle % 2) Library->VCLFreeNonModalDialog(dialog);
    DestroyWindow(holder);
    if (cycle % 2 == 0) Library->VCLFreeNonModalDialog(dialog);
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
  }
  const TCensus late = TCensus::Take();
  EXPECT_EQ(late.NewSince(early), "");
  EXPECT_LE(late.GdiObjects, early.GdiObjects + SystemsOwnObjects);
  EXPECT_LE(CommittedBytes(), bytes + Slack);
}

/// Views that have edits, from a library that is otherwise the same.
class ViewsWithEdits : public Views {
 protected:
  void SetUp() override {
    Views::SetUp();
    Library.emplace("zefext_views.dll");
    Library->VCLSetMainWindowHandle(MainWindow);
    Library->VCLSetMainHelpFile(HelpFile);
    const TExport<HWND (*)(HWND, void**)> create(Library->Module, "CreateTestView");
    FHolder = Holder();
    void* view = nullptr;
    FWindow = create(FHolder, &view);
    FView = static_cast<ZefDialog>(view);
    Library->VCLDialogShow(FView);
  }

  void Use(const std::function<void(TFormDriver&)>& script) {
    WhileIdle([&](TScriptedUser& user) {
      TFormDriver form(user, FWindow);
      script(form);
    });
  }

  HWND FHolder = nullptr;
  HWND FWindow = nullptr;
  ZefDialog FView = nullptr;
};

TEST_F(ViewsWithEdits, KnowWhetherTheUserChangedAnything) {
  const struct {
    const char* What;
    std::function<void(TFormDriver&)> Act;
    int Changed;
  } acts[] = {
      {"nothing", [](TFormDriver&) {}, 0},
      {"looking around",
       [](TFormDriver& form) {
         form.Click("NoteMemo");
         form.Click("NameEdit");
         form.Press(VK_RIGHT);
       },
       0},
      {"a letter in the edit",
       [](TFormDriver& form) {
         form.Click("NameEdit");
         form.Type("x");
       },
       1},
      {"a line in the memo",
       [](TFormDriver& form) {
         form.Click("NoteMemo");
         form.Type("abc");
         form.Press(VK_RETURN);
         form.Type("def");
       },
       1},
      {"a tick, which is no edit", [](TFormDriver& form) { form.Click("Active"); }, 1},
  };
  for (const auto& act : acts) {
    SCOPED_TRACE(act.What);
    Use(act.Act);
    EXPECT_EQ(Library->VCLDialogHasChanged(FView), act.Changed);
    EXPECT_EQ(Library->VCLDialogHasChanged(FView), act.Changed);
    Library->VCLDialogClearHasChanged(FView);
    EXPECT_EQ(Library->VCLDialogHasChanged(FView), 0);
  }
  Use([](TFormDriver& form) { EXPECT_EQ(form.Text("NoteMemo"), "abc\r\ndef"); });
}

TEST_F(ViewsWithEdits, ClearingAClearViewLeavesTheMarksOfItsEdits) {
  Use([](TFormDriver& form) {
    form.Click("NameEdit");
    form.Type("x");
  });
  Library->VCLDialogClearHasChanged(FView);
  EXPECT_EQ(Library->VCLDialogHasChanged(FView), 1);
}

TEST_F(ViewsWithEdits, TakeTheirKeysInTheHostsPlainMessageLoop) {
  Use([](TFormDriver& form) {
    const char* order[] = {"NameEdit", "NoteMemo", "Active", "Accept", "Reject", "HelpBtn"};
    form.Click("NameEdit");
    for (const char* name : order) {
      form.WaitFocus(name);
      form.Press(VK_TAB);
    }
    form.WaitFocus("NameEdit");
    form.Press(VK_TAB, mdShift);
    form.WaitFocus("HelpBtn");

    form.Mnemonic('T');
    form.WaitFocus("NoteMemo");
    form.Mnemonic('N');
    form.WaitFocus("NameEdit");
    form.Press(VK_RETURN);
    form.WaitText("Outcome", "accepted");
    form.Press(VK_ESCAPE);
    form.WaitText("Outcome", "rejected");
    form.TabTo("Accept");
    form.Press(VK_SPACE);
    form.WaitText("Outcome", "accepted");
    form.Mnemonic('B');
    form.WaitText("Outcome", "rejected");
    form.TabTo("HelpBtn");
    form.Press('V');  // no text there, so a mnemonic
    form.WaitText("Outcome", "accepted");
    form.TabTo("NoteMemo");
    form.Press('V');
    EXPECT_EQ(form.Text("NoteMemo"), "v");
    for (const char* name : {"NameEdit", "NoteMemo", "Active", "HelpBtn"}) {
      form.TabTo(name);
      form.Press(VK_F1);
    }
  });
  const THelpServer::TRequest topic{MainWindow, HELP_CONTEXT, 0, HelpFile};
  const THelpServer::TRequest button{MainWindow, HELP_CONTEXT, 9, HelpFile};
  const std::vector<THelpServer::TRequest> asked{topic, topic, topic, button};
  EXPECT_EQ(HelpServer->Requests(), asked);
}

TEST_F(ViewsWithEdits, LeaveTheHostsKeysToTheHost) {
  const HWND own = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE | ES_MULTILINE, 640, 10,
                                   200, 100, MainWindow, nullptr, nullptr, nullptr);
  WhileIdle([&](TScriptedUser& user) {
    const RECT place = BoundsOf(own);
    user.Click({place.left + 5, place.top + 5});
    user.Type("a\tb");
    user.Press(VK_RETURN);
    user.Press(VK_ESCAPE);
    user.WaitUntil("the host's edit", [&] { return TextOf(own) == "a\tb\r\n"; });
  });
  DestroyWindow(own);
}

TEST_F(ViewsWithEdits, MayLoseTheirWindowWhileTheyHaveTheFocus) {
  Use([this](TFormDriver& form) {
    form.Click("NoteMemo");
    form.Type("abc");
    PostMessageW(FHolder, WM_CLOSE, 0, 0);
    form.WaitGone();
  });
  EXPECT_TRUE(Refused(FView));
}
