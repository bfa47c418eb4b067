#include "outside/outside_test.h"

namespace {
constexpr char OkHint[] =
    "Cliquez ici pour fermer la boîte de dialogue et valider les modifications";
constexpr char CancelHint[] =
    "Cliquez ici pour fermer la boîte de dialogue sans prendre en compte les modifications";
constexpr char HelpHint[] = "Affiche l'aide sur cette fenêtre";
}  // namespace

class BaseDialog : public TOutsideTest {
 protected:
  using TRequests = std::vector<THelpServer::TRequest>;

  /// Runs the modal dialog; the script is left by Escape.
  void Look(const std::function<void(TScriptedUser&, TFormDriver&)>& script,
            const char* helpFile = nullptr) {
    During([&] { EXPECT_EQ(Library->VCLInvokeModalDialog(helpFile) & 0xFF, 0); },
           [&](TScriptedUser& user) {
             TFormDriver form = user.WaitForForm("TDlgBase");
             script(user, form);
             form.Press(VK_ESCAPE);
             form.WaitGone();
           });
  }
};

TEST_F(BaseDialog, TellsItsHintsOverTheMiddleOfTheMainWindowOfTheMoment) {
  const HWND other = CreateWindowExW(0, L"STATIC", L"autre", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0,
                                     700, 500, nullptr, nullptr, nullptr, nullptr);
  for (const HWND owner : {other, HWND{}, MainWindow}) {
    Library->VCLSetMainWindowHandle(owner);
    Look([owner](TScriptedUser& user, TFormDriver& form) {
      EXPECT_EQ(GetWindow(form.Handle(), GW_OWNER), owner);
      const RECT bounds = BoundsOf(form.Handle());
      if (owner) {
        EXPECT_NEAR(bounds.left + bounds.right, BoundsOf(owner).left + BoundsOf(owner).right, 2);
      }
      // By the mouse, by F1 under the control, and by the question mark.
      EXPECT_EQ(form.TipAt("ButtonHelp"), HelpHint);
      form.TabTo("ButtonCancel");
      form.WaitPainted();  // drawing takes a bubble away
      form.Press(VK_F1);
      user.WaitUntil("the hint", [&] { return user.WaitForBubble() == CancelHint; });
      RECT place = BoundsOf(form.Control("ButtonCancel"));
      MapWindowPoints(nullptr, form.Handle(), reinterpret_cast<POINT*>(&place), 2);
      EXPECT_EQ(BoundsOf(user.FindBubble()).left, bounds.left + place.left);
      form.AskAbout("ButtonOK");
      user.WaitUntil("the other hint", [&] { return user.WaitForBubble() == OkHint; });
      form.ClickFormAt({100, 60});
      user.WaitForNoBubble();
    });
  }
  DestroyWindow(other);
  SetForegroundWindow(MainWindow);
}

TEST_F(BaseDialog, HelpButtonAsksTheHelpSystemWithTheRightFile) {
  const struct {
    const char* What;
    const char* Main;
    const char* Own;
    std::string Expected;
  } cases[] = {
      {"the main file", HelpFile, nullptr, HelpFile},
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
          form.Mnemonic('A');
        },
        each.Own);
    const THelpServer::TRequest asked{dialog, HELP_CONTEXT, 0, each.Expected};
    EXPECT_EQ(HelpServer->Requests(), (TRequests{asked, asked}));
  }
}
