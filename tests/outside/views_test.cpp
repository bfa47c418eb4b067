#include "outside/outside_test.h"

class Views : public TOutsideTest {
 protected:
  /// A window of the host for a view to stand in. Of the host's own class: the system's may leave
  /// the process together with the library.
  HWND Holder() const {
    const auto hosts = static_cast<ATOM>(GetClassLongW(MainWindow, GCW_ATOM));
    return CreateWindowExW(WS_EX_CONTROLPARENT, MAKEINTATOM(hosts), L"", WS_CHILD | WS_VISIBLE, 10,
                           50, 600, 380, MainWindow, nullptr, nullptr, nullptr);
  }
  ZefDialog MakeView(HWND parent, HWND* window) const {
    ZefDialog view = nullptr;
    *window = Library->CreateExampleView(parent, nullptr, &view);
    return view;
  }
};

TEST_F(Views, StandInTheHostsWindowOrByThemselvesUntilItGoes) {
  const HWND gone = Holder();
  DestroyWindow(gone);
  for (const HWND parent : {Holder(), MainWindow, HWND{}, gone}) {
    HWND window = nullptr;
    const ZefDialog view = MakeView(parent, &window);
    EXPECT_EQ(GetAncestor(window, GA_PARENT), IsWindow(parent) ? parent : GetDesktopWindow());
    EXPECT_FALSE(Shown(window));
    Library->VCLDialogShow(view);
    EXPECT_TRUE(Shown(window));
    EXPECT_NE(Library->VCLExDlgDlwdGive(nullptr, view), nullptr);
    DestroyWindow(IsWindow(parent) && parent != MainWindow ? parent : window);
    EXPECT_EQ(Library->VCLExDlgDlwdGive(nullptr, view), nullptr);
  }
}

TEST_F(Views, LeaveTheFocusToTheHostWhereTheUserIsAtWork) {
  const HWND edits[] = {HostEdit(MainWindow), HostEdit(MainWindow, 450)};
  HWND window = nullptr;
  ZefDialog dialog = nullptr;
  const auto hide = [&] { ShowWindow(window, SW_HIDE); };
  const struct {
    const char* What;
    bool PageShown;
    std::function<void()> Go;
  } ends[] = {
      {"on a hidden page", false, hide},
      {"closed", true, [&] { SendMessageW(window, WM_CLOSE, 0, 0); }},
      {"hidden by the host", true, hide},
      {"destroyed", true, [&] { DestroyWindow(window); }},
      {"the edit disabled meanwhile", true, [&] { EnableWindow(edits[1], FALSE), hide(); }},
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
}

/// Views that have edits, from a library that is otherwise the same.
class ViewsWithEdits : public Views {
 protected:
  void SetUp() override {
    Views::SetUp();
    Library.emplace("zefext_views.dll");
    Library->VCLSetMainWindowHandle(MainWindow);
    Library->VCLSetMainHelpFile(HelpFile);
    const auto create = reinterpret_cast<HWND (*)(HWND, ZefDialog*)>(
        reinterpret_cast<void*>(GetProcAddress(Library->Module, "CreateTestView")));
    FBefore = HostEdit(MainWindow);
    FWindow = create(Holder(), &FView);
    FAfter = HostEdit(MainWindow, 450);
    // By the host itself, as it may.
    ShowWindow(FWindow, SW_SHOW);
  }

  HWND FBefore = nullptr;
  HWND FAfter = nullptr;
  HWND FWindow = nullptr;
  ZefDialog FView = nullptr;
};

TEST_F(ViewsWithEdits, KnowWhetherTheUserChangedAnything) {
  using TForm = TFormDriver;
  const struct {
    const char* What;
    void (*Act)(TForm& form);
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
    const auto waitFocus = [&](HWND window) {
      user.WaitUntil("the host's focus", [&] {
        HWND focus = nullptr;
        InHost([&] { focus = GetFocus(); });
        return focus == window;
      });
    };
    const auto press = [&](WORD key, unsigned modifiers, const char* focus) {
      form.Press(key, modifiers);
      form.WaitFocus(focus);
    };
    form.Click("NameEdit");
    press('T', mdAlt, "NoteMemo");
    press('V', mdNone, "NoteMemo");
    EXPECT_EQ(form.Text("NoteMemo"), "v");
    press('N', mdAlt, "NameEdit");
    press(VK_F1, mdNone, "NameEdit");
    press(VK_TAB, mdShift, "HelpBtn");
    form.Press('V');  // no text there, so a mnemonic
    form.WaitText("Outcome", "accepted");
    press('N', mdAlt, "NameEdit");
    press(VK_TAB, mdShift, "HelpBtn");
    // A view's help file is everyone's from then on.
    InHost([&] {
      ZefDialog other = nullptr;
      DestroyWindow(Library->CreateExampleView(MainWindow, "Vue.hlp", &other));
    });
    form.Press(VK_F1);
    form.Press(VK_TAB, mdShift);
    waitFocus(FBefore);
    user.Press(VK_TAB);
    form.TabTo("Reject");
    form.Press(VK_TAB);
    waitFocus(FAfter);
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
  EXPECT_EQ(THelpRequest::All,
            (std::vector<THelpRequest>{{MainWindow, HelpFile, HELP_CONTEXT, 0},
                                       {MainWindow, "Vue.hlp", HELP_CONTEXT, 9}}));
}
