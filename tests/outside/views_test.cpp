#include "outside/outside_test.h"

class Views : public TOutsideTest {
 protected:
  HWND MakeChild(const wchar_t* className, DWORD style, RECT place) const {
    return CreateWindowExW(style & WS_TABSTOP ? 0 : WS_EX_CONTROLPARENT, className, L"",
                           WS_CHILD | WS_VISIBLE | style, place.left, place.top, place.right,
                           place.bottom, MainWindow, nullptr, nullptr, nullptr);
  }
  /// A window of the host for a view to stand in. Of the host's own class: the system's may leave
  /// the process together with the library.
  HWND Holder() const {
    const auto hosts = static_cast<ATOM>(GetClassLongW(MainWindow, GCW_ATOM));
    return MakeChild(MAKEINTATOM(hosts), 0, {10, 50, 600, 380});
  }
  HWND HostEdit(int top) const { return MakeChild(L"EDIT", WS_TABSTOP, {10, top, 200, 30}); }

  ZefDialog MakeView(HWND parent, HWND* window = nullptr, const char* helpFile = nullptr) const {
    void* view = nullptr;
    const HWND made = Library->CreateExampleView(parent, helpFile, &view);
    if (window) *window = made;
    return static_cast<ZefDialog>(view);
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

TEST_F(Views, StandInTheHostsWindowOrByThemselvesUntilItGoes) {
  const HWND gone = Holder();
  DestroyWindow(gone);
  for (const HWND parent : {Holder(), MainWindow, HWND{}, gone}) {
    HWND window = nullptr;
    const ZefDialog view = MakeView(parent, &window);
    EXPECT_EQ(GetAncestor(window, GA_PARENT), IsWindow(parent) ? parent : GetDesktopWindow());
    EXPECT_FALSE(Shown(window));
    RECT place = BoundsOf(window);
    EXPECT_EQ(place.right - place.left, 592);
    EXPECT_EQ(place.bottom - place.top, 324);
    if (IsWindow(parent)) {
      MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&place), 2);
      EXPECT_EQ(place.left, GetSystemMetrics(SM_CXFIXEDFRAME));
      EXPECT_EQ(place.top, GetSystemMetrics(SM_CYFIXEDFRAME));
    }
    Library->VCLDialogShow(view);
    EXPECT_TRUE(Shown(window));
    EXPECT_NE(Library->VCLExDlgDlwdGive(nullptr, view), nullptr);
    DestroyWindow(IsWindow(parent) && parent != MainWindow ? parent : window);
    EXPECT_EQ(Library->VCLExDlgDlwdGive(nullptr, view), nullptr);
  }
}

TEST_F(Views, HelpFileOfAViewIsEveryonesFromThenOn) {
  HWND window = nullptr;
  Library->VCLDialogShow(MakeView(Holder(), &window));
  for (const char* file : {HelpFile, "C:\\ZEF\\Vue.hlp"}) {
    if (file != HelpFile) MakeView(MainWindow, nullptr, file);
    WhileIdle([&](TScriptedUser& user) { TFormDriver(user, window).Click("HelpBtn"); });
    EXPECT_EQ(HelpServer->Requests().back(),
              (THelpServer::TRequest{MainWindow, HELP_CONTEXT, 0, file}));
  }
}

TEST_F(Views, LeaveTheFocusToTheHostWhereTheUserIsAtWork) {
  const HWND edits[] = {HostEdit(10), HostEdit(450)};
  HWND window = nullptr;
  ZefDialog dialog = nullptr;
  const struct {
    const char* What;
    bool PageShown;
    std::function<void()> Go;
  } ends[] = {
      {"on a hidden page", false, [&] { SendMessageW(window, WM_CLOSE, 0, 0); }},
      {"closed", true, [&] { SendMessageW(window, WM_CLOSE, 0, 0); }},
      {"hidden by the host", true, [&] { ShowWindow(window, SW_HIDE); }},
      {"destroyed", true, [&] { DestroyWindow(window); }},
      {"the edit disabled meanwhile", true,
       [&] {
         EnableWindow(edits[1], FALSE);
         ShowWindow(window, SW_HIDE);
       }},
  };
  for (const auto& [what, pageShown, go] : ends) {
    SCOPED_TRACE(what);
    SetFocus(edits[1]);
    const HWND page = Holder();
    ShowWindow(page, pageShown ? SW_SHOW : SW_HIDE);
    const ZefDialog view = MakeView(page, &window);
    Library->VCLInvokeNonModalDialog(page, nullptr, &dialog);
    EXPECT_EQ(GetFocus() != edits[1], pageShown);
    Library->VCLFreeNonModalDialog(dialog);
    EXPECT_EQ(GetFocus(), edits[1]);
    Library->VCLDialogShow(view);
    EXPECT_EQ(GetFocus() != edits[1], pageShown);
    go();
    EXPECT_EQ(GetFocus(), edits[IsWindowEnabled(edits[1]) ? 1 : 0]);
    ShowWindow(page, SW_SHOW);
    EXPECT_FALSE(Shown(window));
    DestroyWindow(page);
  }
  for (const HWND edit : edits) DestroyWindow(edit);
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
    FBefore = HostEdit(10);
    FHolder = Holder();
    FAfter = HostEdit(450);
    void* view = nullptr;
    FWindow = create(FHolder, &view);
    FView = static_cast<ZefDialog>(view);
    // By the host itself, as it may.
    ShowWindow(FWindow, SW_SHOW);
  }
  void TearDown() override {
    for (const HWND window : {FBefore, FHolder, FAfter}) DestroyWindow(window);
    Views::TearDown();
  }

  HWND FBefore = nullptr;
  HWND FHolder = nullptr;
  HWND FAfter = nullptr;
  HWND FWindow = nullptr;
  ZefDialog FView = nullptr;
};

TEST_F(ViewsWithEdits, KnowWhetherTheUserChangedAnything) {
  using TForm = TFormDriver;
  const struct {
    const char* What;
    std::function<void(TForm&)> Act;
    int Changed;
    int ChangedAfterClear;
  } acts[] = {
      {"looking around", [](TForm& form) { form.Click("NoteMemo"), form.Press(VK_RIGHT); }, 0, 0},
      {"a memo", [](TForm& form) { form.Click("NoteMemo"), form.Type("abc\ndef"); }, 1, 0},
      {"a tick, which is no edit", [](TForm& form) { form.Click("Active"); }, 1, 0},
      // Clearing a clear view leaves the marks of its edits.
      {"an edit", [](TForm& form) { form.Click("NameEdit"), form.Type("x"); }, -1, 1},
  };
  for (const auto& [what, act, changed, after] : acts) {
    SCOPED_TRACE(what);
    WhileIdle([&, act = act](TScriptedUser& user) {
      TFormDriver form(user, FWindow);
      act(form);
    });
    for (int ask = 0; changed >= 0 && ask < 2; ++ask)
      EXPECT_EQ(Library->VCLDialogHasChanged(FView), changed);
    Library->VCLDialogClearHasChanged(FView);
    EXPECT_EQ(Library->VCLDialogHasChanged(FView), after);
  }
}

TEST_F(ViewsWithEdits, TakeTheKeysTheyHaveAUseForAndLeaveTheOthersToTheHost) {
  // A host whose own loop navigates; the keys that reach it are noted.
  std::vector<WPARAM> keys;
  bool done = false;
  const auto serve = [&] {
    MSG message;
    while (!done && GetMessageW(&message, nullptr, 0, 0) > 0) {
      if (message.message == WM_KEYDOWN) keys.push_back(message.wParam);
      if (IsDialogMessageW(MainWindow, &message)) continue;
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  };
  During(serve, [&](TScriptedUser& user) {
    TFormDriver form(user, FWindow);
    const auto expectFocus = [&](const char* what, HWND window) {
      user.WaitUntil(what, [&] {
        HWND focus = nullptr;
        InHost([&] { focus = GetFocus(); });
        return focus == window;
      });
    };
    form.Click("NameEdit");
    form.Mnemonic('T');
    form.WaitFocus("NoteMemo");
    form.Press('V');
    EXPECT_EQ(form.Text("NoteMemo"), "v");
    form.Mnemonic('N');
    form.WaitFocus("NameEdit");
    form.Press(VK_TAB, mdShift);
    form.WaitFocus("HelpBtn");
    form.Press('V');  // no text there, so a mnemonic
    form.WaitText("Outcome", "accepted");
    form.Mnemonic('N');
    form.WaitFocus("NameEdit");
    form.Press(VK_F1);
    form.Press(VK_TAB, mdShift);
    form.WaitFocus("HelpBtn");
    form.Press(VK_F1);
    form.Press(VK_TAB, mdShift);
    expectFocus("the edit before", FBefore);
    user.Press(VK_TAB);
    form.TabTo("Reject");
    form.Press(VK_TAB);
    expectFocus("the edit after", FAfter);
    user.Press(VK_TAB, mdShift);
    form.WaitFocus("Reject");
    InHost([&] { keys.clear(); });
    form.Press(VK_TAB, mdControl);
    form.Click("Active");
    form.Press(VK_ESCAPE);
    form.WaitText("Outcome", "rejected");
    form.Press(VK_RETURN);
    form.WaitText("Outcome", "accepted");
    // Without a button that answers them.
    for (const char* name : {"Accept", "Reject"}) EnableWindow(form.Control(name), FALSE);
    form.Press(VK_RETURN);
    form.Press(VK_ESCAPE);
    InHost([&] { done = true; });
  });
  std::erase_if(keys, [](WPARAM key) { return key == VK_CONTROL; });
  EXPECT_EQ(keys, (std::vector<WPARAM>{VK_TAB, VK_RETURN, VK_ESCAPE}));
  const THelpServer::TRequest topic{MainWindow, HELP_CONTEXT, 0, HelpFile};
  const THelpServer::TRequest button{MainWindow, HELP_CONTEXT, 9, HelpFile};
  EXPECT_EQ(HelpServer->Requests(), (std::vector<THelpServer::TRequest>{topic, button}));
}
