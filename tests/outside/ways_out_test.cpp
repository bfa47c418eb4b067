#include "outside/situations.h"
#include "user/say.h"

/// Every way that a user, or another program, may leave each modal dialog.
class WaysOut : public TSituations {
 protected:
  struct TDialog {
    const char* Form;
    std::string (WaysOut::*Call)();
    void (*Change)(TFormDriver& form);
    const char* Confirmed;  ///< what the call gives when the change was confirmed
    const char* Cancelled;  ///< and when not
  };
  struct TWay {
    const char* Name;
    bool Confirms;
    void (*Leave)(TFormDriver& form);
  };
  static const TDialog Dialogs[];
  static const TWay Ways[];
};

const WaysOut::TDialog WaysOut::Dialogs[] = {
    {"TDlgBase", &WaysOut::Base, [](TFormDriver&) {}, "0", "0"},
    {"TDlgSyntax", &WaysOut::Assistant,
     [](TFormDriver& form) { form.Select("BoxMethod", "Fermer()"); }, "c.Fermer 1, 2 13",
     "c.Ajouter 1, 2 3"},
    {"TDlgSyntaxConst", &WaysOut::Picker, [](TFormDriver& form) { form.Fill("EditResult", "x"); },
     "x", "Gras"},
    {"TDlgSyntaxTypes", &WaysOut::Editor,
     [](TFormDriver& form) { form.Fill("EditNew", "x"), form.Click("BtnAdd"); },
     "c=Cpt,d=Cpt,x=Cpt", "c=Cpt,d=Cpt"},
    {"TDlgDirSelect", &WaysOut::Directories,
     [](TFormDriver& form) { form.Select("ListRep", "Comptes"); }, "10", "01"},
    {"TDlgSelectTypOp", &WaysOut::Filter,
     [](TFormDriver& form) { form.Select("ListTypOp", "CB/Chq"); }, "1Visa", "0Virement"},
    {"TDlgAskDwld", &WaysOut::Offer, [](TFormDriver&) {}, "1", "0"},
};

const WaysOut::TWay WaysOut::Ways[] = {
    {"OK", true, [](TFormDriver& form) { form.Click("ButtonOK"); }},
    {"Enter", true, [](TFormDriver& form) { form.TabTo("ButtonOK"), form.Press(VK_RETURN); }},
    {"Cancel", false, [](TFormDriver& form) { form.Click("ButtonCancel"); }},
    {"Escape", false, [](TFormDriver& form) { form.Press(VK_ESCAPE); }},
    {"close box", false, [](TFormDriver& form) { form.CloseBox(); }},
    // Not every system's combo boxes pass this key on.
    {"Alt+F4", false, [](TFormDriver& form) { form.TabTo("ButtonOK"), form.Press(VK_F4, mdAlt); }},
    // As other threads and programs send them: no message for the dialog's loop.
    {"sent close", false, [](TFormDriver& form) { SendMessageW(form.Handle(), WM_CLOSE, 0, 0); }},
    {"sent click", true,
     [](TFormDriver& form) { SendMessageW(form.Control("ButtonOK"), BM_CLICK, 0, 0); }},
};

TEST_F(WaysOut, ConfirmOrHandBackWhatWasGiven) {
  for (const TDialog& dialog : Dialogs) {
    for (const TWay& way : Ways) {
      SCOPED_TRACE(Say(dialog.Form, ", ", way.Name));
      Enter(Path("."));
      SetCapture(Owner);
      const TUnmasked unmasked;
      std::string outcome;
      During([&] { outcome = (this->*dialog.Call)(); },
             [&](TScriptedUser& user) {
               TFormDriver form = user.WaitForForm(dialog.Form);
               EXPECT_EQ(GetWindow(form.Handle(), GW_OWNER), Owner);
               EXPECT_FALSE(IsWindowEnabled(Owner));
               InHost([] {
                 EXPECT_EQ(GetCapture(), nullptr);
                 EXPECT_EQ(TUnmasked::Now() & 0x3F, 0x3F);
               });
               dialog.Change(form);
               way.Leave(form);
               form.WaitGone();
               user.WaitUntil("the owner's turn", [&] { return GetForegroundWindow() == Owner; });
             });
      EXPECT_EQ(outcome, way.Confirms ? dialog.Confirmed : dialog.Cancelled);
      const bool types = std::string_view(dialog.Form) == "TDlgSyntaxTypes";
      EXPECT_TRUE(!types || (Library->VCLSyntaxGetNewTypes(nullptr) != 0) == way.Confirms);
      EXPECT_TRUE(IsWindowEnabled(Owner));
      EXPECT_EQ(GetFocus(), Edit);
    }
  }
}
