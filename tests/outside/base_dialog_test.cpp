#include <algorithm>
#include <set>

#include "outside/outside_test.h"

namespace {
constexpr char OkHint[] =
    "Cliquez ici pour fermer la boîte de dialogue et valider les modifications";
constexpr char CancelHint[] =
    "Cliquez ici pour fermer la boîte de dialogue sans prendre en compte les modifications";
constexpr char HelpHint[] = "Affiche l'aide sur cette fenêtre";

/// A control's place in its form's client area.
RECT PlaceOf(HWND control) {
  RECT place = BoundsOf(control);
  MapWindowPoints(nullptr, GetParent(control), reinterpret_cast<POINT*>(&place), 2);
  return place;
}

HWND Bubble() {
  for (const HWND window : TopWindows(GetCurrentProcessId()))
    if (Shown(window) && ClassOf(window) == "THintWindow") return window;
  return nullptr;
}
}  // namespace

class BaseDialog : public TOutsideTest {
 protected:
  using TScript = std::function<void(TScriptedUser&, TFormDriver&)>;

  /// Runs the modal dialog; returns what it reports.
  int Run(const TScript& script, const char* helpFile = nullptr) {
    int result = -1;
    During([&] { result = Library->VCLInvokeModalDialog(helpFile) & 0xFF; },
           [&](TScriptedUser& user) {
             TFormDriver form = user.WaitForForm("TDlgBase");
             script(user, form);
           });
    return result;
  }

  /// Runs it, and leaves it by Escape after the script.
  void Look(const TScript& script, const char* helpFile = nullptr) {
    Run(
        [&](TScriptedUser& user, TFormDriver& form) {
          script(user, form);
          form.Press(VK_ESCAPE);
          form.WaitGone();
        },
        helpFile);
  }
};

TEST_F(BaseDialog, IsLeftInEveryWayAndReportsNothing) {
  const struct {
    const char* Way;
    std::function<void(TFormDriver&)> Leave;
  } ways[] = {
      {"OK", [](TFormDriver& form) { form.Click("ButtonOK"); }},
      {"Cancel", [](TFormDriver& form) { form.Click("ButtonCancel"); }},
      {"Enter", [](TFormDriver& form) { form.Press(VK_RETURN); }},
      {"Enter on Cancel",
       [](TFormDriver& form) {
         form.TabTo("ButtonCancel");
         form.Press(VK_RETURN);
       }},
      {"Escape", [](TFormDriver& form) { form.Press(VK_ESCAPE); }},
      {"Alt+O", [](TFormDriver& form) { form.Mnemonic('O'); }},
      {"Alt+N", [](TFormDriver& form) { form.Mnemonic('N'); }},
      {"close box", [](TFormDriver& form) { form.CloseBox(); }},
      {"Alt+F4", [](TFormDriver& form) { form.Press(VK_F4, mdAlt); }},
      // As other threads and programs send them: no message for the dialog's loop.
      {"sent close", [](TFormDriver& form) { SendMessageW(form.Handle(), WM_CLOSE, 0, 0); }},
      {"sent click",
       [](TFormDriver& form) { SendMessageW(form.Control("ButtonOK"), BM_CLICK, 0, 0); }},
  };
  for (const auto& way : ways) {
    SCOPED_TRACE(way.Way);
    const int result = Run([&](TScriptedUser&, TFormDriver& form) {
      EXPECT_FALSE(IsWindowEnabled(MainWindow));
      way.Leave(form);
      form.WaitGone();
    });
    EXPECT_EQ(result, 0);
    EXPECT_TRUE(IsWindowEnabled(MainWindow));
    EXPECT_EQ(GetForegroundWindow(), MainWindow);
  }
}

TEST_F(BaseDialog, OpensOverTheMiddleOfItsHost) {
  Look([this](TScriptedUser&, TFormDriver& form) {
    EXPECT_EQ(GetWindow(form.Handle(), GW_OWNER), MainWindow);
    const RECT bounds = BoundsOf(form.Handle());
    const RECT main = BoundsOf(MainWindow);
    EXPECT_NEAR(bounds.left + bounds.right, main.left + main.right, 2);
    EXPECT_NEAR(bounds.top + bounds.bottom, main.top + main.bottom, 2);
  });
}

TEST_F(BaseDialog, F1ShowsTheHintUnderTheControlUntilSomethingElseHappens) {
  Look([this](TScriptedUser& user, TFormDriver& form) {
    const std::pair<const char*, const char*> hints[] = {
        {"ButtonOK", OkHint}, {"ButtonCancel", CancelHint}, {"ButtonHelp", HelpHint}};
    for (const auto& [name, hint] : hints) {
      SCOPED_TRACE(name);
      form.TabTo(name);
      form.WaitPainted();  // drawing takes a bubble away
      form.Press(VK_F1);
      EXPECT_EQ(user.WaitForBubble(), hint);
      const RECT bubble = BoundsOf(Bubble());
      const RECT bounds = BoundsOf(form.Handle());
      const RECT place = PlaceOf(form.Control(name));
      RECT client;
      GetClientRect(form.Handle(), &client);
      EXPECT_EQ(bubble.left, bounds.left + place.left);
      EXPECT_EQ(bubble.top, bounds.bottom - client.bottom + place.bottom);
      EXPECT_LE(bubble.right - bubble.left, (bounds.right - bounds.left) / 2 + 4);
    }
    form.ClickFormAt({100, 60});
    user.WaitForNoBubble();

    form.WaitPainted();
    form.Press(VK_F1);
    EXPECT_EQ(user.WaitForBubble(), HelpHint);
    EXPECT_TRUE(HelpServer->Requests().empty());
  });
  EXPECT_EQ(Bubble(), nullptr);
}

TEST_F(BaseDialog, QuestionMarkShowsTheHintOfTheControlAskedAbout) {
  Look([](TScriptedUser& user, TFormDriver& form) {
    form.WaitPainted();
    form.AskAbout("ButtonCancel");
    EXPECT_EQ(user.WaitForBubble(), CancelHint);
    form.AskAbout("ButtonHelp");
    user.WaitUntil("the other bubble", [&] { return user.WaitForBubble() == HelpHint; });
    EXPECT_FALSE(form.Gone());
  });
}

TEST_F(BaseDialog, PointingAtAButtonShowsItsHint) {
  Look([](TScriptedUser& user, TFormDriver& form) {
    form.PointAt("ButtonHelp");
    EXPECT_EQ(user.WaitForBubble(), HelpHint);
  });
}

TEST_F(BaseDialog, HelpButtonAsksTheHelpSystemWithTheRightFile) {
  const std::string library = HelpFile;
  const struct {
    const char* What;
    const char* Main;  ///< set before, when not null
    const char* Own;
    std::string Expected;
  } cases[] = {
      {"the main file", HelpFile, nullptr, library},
      {"a file of its own", HelpFile, "C:\\ZEF\\Autre.hlp", "C:\\ZEF\\Autre.hlp"},
      {"an own file that is empty", HelpFile, "", ""},
      {"no file", "", nullptr, ""},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.What);
    HelpServer->Forget();
    Library->VCLSetMainHelpFile(each.Main);
    HWND dialog = nullptr;
    Look(
        [&](TScriptedUser&, TFormDriver& form) {
          dialog = form.Handle();
          form.Click("ButtonHelp");
          EXPECT_FALSE(form.Gone());
          form.Mnemonic('A');
        },
        each.Own);
    const THelpServer::TRequest expected{dialog, HELP_CONTEXT, 0, each.Expected};
    const auto& requests = HelpServer->Requests();
    EXPECT_EQ(std::ranges::count(requests, expected), 2);
    EXPECT_EQ(requests.size(), 2U);
  }
  // Without a question mark, F1 does as the Help button would.
  HelpServer->Forget();
  Library->VCLSetMainHelpFile(HelpFile);
  Library->VCLShowDebugText("");
  HWND debug = nullptr;
  WhileIdle([&](TScriptedUser& user) {
    TFormDriver form = user.WaitForForm("TDlgDebug");
    debug = form.Handle();
    form.Click("Memo");
    form.Press(VK_F1);
  });
  const std::vector<THelpServer::TRequest> asked{{debug, HELP_CONTEXT, 0, HelpFile}};
  EXPECT_EQ(HelpServer->Requests(), asked);
}

TEST_F(BaseDialog, IsOwnedByTheMainWindowOfTheMoment) {
  const HWND other = CreateWindowExW(0, L"STATIC", L"autre", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0,
                                     700, 500, nullptr, nullptr, nullptr, nullptr);
  const HWND owners[] = {other, nullptr, MainWindow};
  for (const HWND owner : owners) {
    Library->VCLSetMainWindowHandle(owner);
    Look([owner](TScriptedUser&, TFormDriver& form) {
      EXPECT_EQ(GetWindow(form.Handle(), GW_OWNER), owner);
    });
  }
  DestroyWindow(other);
  SetForegroundWindow(MainWindow);
}

TEST_F(BaseDialog, ModelessLivesInTheHostsWindowUntilFreed) {
  ZefDialog dialog = nullptr;
  Library->VCLInvokeNonModalDialog(MainWindow, "C:\\ZEF\\Autre.hlp", &dialog);
  ASSERT_NE(dialog, nullptr);
  HWND window = nullptr;
  WhileIdle([&](TScriptedUser& user) {
    TFormDriver form = user.WaitForForm("TDlgBase");
    window = form.Handle();
    EXPECT_EQ(GetAncestor(window, GA_PARENT), MainWindow);
    EXPECT_TRUE(IsWindowEnabled(MainWindow));
    form.Click("ButtonOK");
    form.Click("ButtonCancel");
    EXPECT_FALSE(form.Gone());
    form.TabTo("ButtonHelp");
    form.Press(VK_SPACE);
    form.TabTo("ButtonOK");
    form.WaitPainted();
    form.Press(VK_F1);
    EXPECT_EQ(user.WaitForBubble(), OkHint);
    form.CloseBox();
    form.WaitGone();
  });
  EXPECT_TRUE(IsWindow(window));
  const std::vector<THelpServer::TRequest> asked{{window, HELP_CONTEXT, 0, "C:\\ZEF\\Autre.hlp"}};
  EXPECT_EQ(HelpServer->Requests(), asked);
  EXPECT_EQ(Library->VCLFreeNonModalDialog(dialog) & 0xFF, 0);
  EXPECT_FALSE(IsWindow(window));
}

TEST_F(BaseDialog, RefusesHandlesThatAreNotItsOwn) {
  std::set<ZefDialog> freed;
  // In the middle of a call as well, each dialog takes its windows with it.
  Run([&](TScriptedUser&, TFormDriver& form) {
    InHost([&] {
      for (int count = 0; count < 100; ++count) {
        ZefDialog dialog = nullptr;
        Library->VCLInvokeNonModalDialog(MainWindow, nullptr, &dialog);
        Library->VCLFreeNonModalDialog(dialog);
        EXPECT_TRUE(freed.insert(dialog).second) << "a handle comes back";
      }
      EXPECT_TRUE(Descendants(MainWindow).empty());
    });
    form.Click("ButtonOK");
    form.WaitGone();
  });
  ZefDialog live = nullptr;
  Library->VCLInvokeNonModalDialog(MainWindow, nullptr, &live);
  const size_t windows = Descendants(MainWindow).size();
  char foreign[256]{};
  std::vector<void*> wrong{nullptr, foreign, reinterpret_cast<void*>(8), MainWindow};
  wrong.insert(wrong.end(), freed.begin(), freed.end());
  for (void* handle : wrong)
    EXPECT_EQ(Library->VCLFreeNonModalDialog(static_cast<ZefDialog>(handle)) & 0xFF, 0);
  EXPECT_EQ(Descendants(MainWindow).size(), windows);

  Library->VCLInvokeNonModalDialog(MainWindow, nullptr, nullptr);
  Library->VCLFreeNonModalDialog(live);
}

TEST_F(BaseDialog, OutlivesNeitherItsParentNorTheLibrary) {
  const HWND parent = CreateWindowExW(0, L"STATIC", L"parent", WS_CHILD | WS_VISIBLE, 0, 0, 700,
                                      300, MainWindow, nullptr, nullptr, nullptr);
  ZefDialog orphan = nullptr;
  Library->VCLInvokeNonModalDialog(parent, nullptr, &orphan);
  DestroyWindow(parent);
  EXPECT_EQ(Library->VCLFreeNonModalDialog(orphan) & 0xFF, 0);
  // Never freed: the end of the test unloads the library under it.
  ZefDialog forgotten = nullptr;
  Library->VCLInvokeNonModalDialog(MainWindow, nullptr, &forgotten);
  ASSERT_NE(forgotten, nullptr);
}
