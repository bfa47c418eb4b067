#include "outside/directories_fixture.h"
#include "outside/host_strings.h"
#include "outside/syntax_test.h"
#include "user/say.h"

namespace {
constexpr char Line[] = "c.Ajouter 1, 2";

/// A text that one of the assistant's functions hands back, and the types that it says changed.
std::string Given(const TLibrary& library, const char* text) {
  const std::string given = FromAnsi(text);
  const char* types = nullptr;
  const bool changed = library.VCLSyntaxGetNewTypes(&types) != 0;
  return given + (changed ? " types " + FromAnsi(types) : "");
}

/// One of the library's modal dialogs: how a host opens it, what a user changes in it, and what the
/// host has when the change was confirmed and when it was not.
const struct {
  const char* Form;
  std::string (*Open)(const TLibrary& library);
  void (*Change)(TFormDriver& form);
  std::string Confirmed, Cancelled;
} Dialogs[] = {
    {"TDlgBase",
     [](const TLibrary& library) { return Say(library.VCLInvokeModalDialog(nullptr) & 0xFF); },
     [](TFormDriver&) {}, "0", "0"},
    {"TDlgSyntax",
     [](const TLibrary& library) {
       const char* text = nullptr;
       int cursor = 3;
       library.VCLSyntaxHelpBox(Line, &cursor, &text, "c=Compte");
       return Say(cursor, ' ', Given(library, text));
     },
     [](TFormDriver& form) { form.Select("BoxMethod", "Fermer()"); }, "13 c.Fermer 1, 2",
     Say("3 ", Line)},
    {"TDlgSyntaxConst",
     [](const TLibrary& library) {
       const char* text = nullptr;
       library.VCLSyntaxConstHelpBox(Line, &text);
       return Given(library, text);
     },
     [](TFormDriver& form) { form.Fill("EditResult", "Gras"); }, "Gras", Line},
    {"TDlgSyntaxTypes",
     [](const TLibrary& library) {
       const char* text = nullptr;
       library.VCLSyntaxTypesBox(Line, &text);
       return Given(library, text);
     },
     [](TFormDriver& form) { form.Fill("EditNew", "x"), form.Click("BtnAdd"); },
     "c.Ajouter,1,2,x=Cpt types c.Ajouter,1,2,x=Cpt", Line},
    {"TDlgSelectTypOp",
     [](const TLibrary& library) {
       const THostList types(library, {"Virement", "CB/Chq"}), cards(library, {"Visa"});
       const THostString choice(library, "Virement");
       const int chosen = library.VCLSelectTypOp(types.Handle(), cards.Handle(), choice.Handle());
       return Say(chosen, ' ', choice.Text());
     },
     [](TFormDriver& form) { form.Select("ListTypOp", "CB/Chq"); }, "1 Visa", "0 Virement"},
    {"TDlgDirSelect",
     [](const TLibrary& library) {
       unsigned char cancelled = 2;
       const int changed = library.VCLSelectDirList("", static_cast<unsigned char>(1), &cancelled);
       return Say(changed, ' ', static_cast<int>(cancelled));
     },
     [](TFormDriver& form) { form.Select("ListRep", "Comptes"); }, "0 0", "0 1"},
    {"TDlgAskDwld",
     [](const TLibrary& library) { return Say(library.VCLAskForDownload("1", "2", "")); },
     [](TFormDriver& form) { form.TabTo("ButtonOK"); }, "1", "0"},
};

const struct {
  const char* Name;
  bool Confirms;
  void (*Leave)(TFormDriver& form);
} Ways[] = {
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
}  // namespace

class WaysOut : public TDirectoriesTest {};

TEST_F(WaysOut, ConfirmOrHandBackWhatWasGiven) {
  const TDatabaseFile database(TSyntaxTest::SampleDatabase);
  Enter(MakeDirectory("comptes"));
  Store({{"Comptes", Current()}});
  for (const auto& dialog : Dialogs) {
    for (const auto& way : Ways) {
      SCOPED_TRACE(Say(dialog.Form, ", ", way.Name));
      std::string outcome;
      During([&] { outcome = dialog.Open(*Library); },
             [&](TScriptedUser& user) {
               TFormDriver form = user.WaitForForm(dialog.Form);
               EXPECT_EQ(GetWindow(form.Handle(), GW_OWNER), MainWindow);
               EXPECT_FALSE(IsWindowEnabled(MainWindow));
               dialog.Change(form);
               way.Leave(form);
               form.WaitGone();
             });
      EXPECT_EQ(outcome, way.Confirms ? dialog.Confirmed : dialog.Cancelled);
      EXPECT_TRUE(IsWindowEnabled(MainWindow));
      EXPECT_EQ(GetForegroundWindow(), MainWindow);
    }
  }
}
