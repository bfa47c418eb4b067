#include "outside/outside_test.h"
#include "user/say.h"

class BaseDialog : public TOutsideTest {
 protected:
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

// By the mouse, by F1 under the control, and by the question mark.
TEST_F(BaseDialog, TellsItsHintsOverTheMiddleOfTheMainWindow) {
  Look([this](TScriptedUser& user, TFormDriver& form) {
    const auto waitBubble = [&](const char* how, const std::function<void()>& ask) {
      return user.WaitForBubble(Say("Cliquez ici pour fermer la boîte de dialogue ", how), ask);
    };
    const RECT bounds = BoundsOf(form.Handle()), owner = BoundsOf(MainWindow);
    EXPECT_NEAR(bounds.left + bounds.right, owner.left + owner.right, 2);
    form.WaitForTip("ButtonHelp", "Affiche l'aide sur cette fenêtre");
    form.TabTo("ButtonCancel");
    form.WaitPainted();  // drawing takes a bubble away
    const RECT bubble =
        waitBubble("sans prendre en compte les modifications", [&] { form.Press(VK_F1); });
    RECT place = BoundsOf(form.Control("ButtonCancel"));
    MapWindowPoints(nullptr, form.Handle(), reinterpret_cast<POINT*>(&place), 2);
    EXPECT_EQ(bubble.left, bounds.left + place.left);
    waitBubble("et valider les modifications", [&] { form.AskAbout("ButtonOK"); });
    form.ClickFormAt({100, 60});
    user.WaitForNoBubble();
  });
}

TEST_F(BaseDialog, HelpButtonAsksTheRightHelpSystemWithTheRightFile) {
  constexpr UINT HtmlTopic = 0, HtmlContext = 15;
  const struct {
    const char *Main, *Own, *Asked;
    bool Compiled;
  } cases[] = {{HelpFile, nullptr, HelpFile, false},
               {"Zef.CHM", nullptr, "Zef.CHM", true},
               {HelpFile, "Autre.hlp", "Autre.hlp", false},
               {"Zef.chm.hlp", "", "", false}};
  for (const auto& [mainFile, own, asked, compiled] : cases) {
    SCOPED_TRACE(mainFile);
    Library->VCLFree();  // a dialog keeps the file that it was made with
    Library->VCLSetMainHelpFile(mainFile);
    THelpRequest::All.clear();
    THelpRequest base{{}, asked, compiled ? HtmlTopic : HELP_CONTEXT, 0, compiled};
    THelpRequest assistant{{}, mainFile, compiled ? HtmlContext : HELP_CONTEXT, 50001, compiled};
    Look(
        [&](TScriptedUser&, TFormDriver& form) {
          base.Window = form.Handle();
          form.Click("ButtonHelp");
          form.Mnemonic('A');
        },
        own);
    During([&] { Library->VCLSyntaxHelpBox("", nullptr, nullptr, nullptr); },
           [&](TScriptedUser& user) {
             TFormDriver form = user.WaitForForm("TDlgSyntax");
             assistant.Window = form.Handle();
             form.Click("ButtonHelp");
             form.Press(VK_ESCAPE);
             form.WaitGone();
           });
    EXPECT_EQ(THelpRequest::All, (std::vector{base, base, assistant}));
  }
}
