#include "outside/host_objects.h"
#include "outside/outside_test.h"

namespace {
constexpr char Words[] = R"(<objects>
  <object name="Agence"><data name="Nom"/></object>
  <object name="Application"><data name="Compte" type="Compte"/><data name="Nom"/></object>
  <object name="Compte"><data name="Nom"/><data name="Note"/><data name="Numero"/>
    <data name="Solde"/><method name="Fermer"><param name="raison"/></method>
    <method name="Ajouter"><return type="Double"/><param name="montant" type="Double"/>
      <oparam name="style" type="Integer" list="Styles" def="Gras"/></method></object>
  <type name="Cpt"/><const name="ZEF" type="Application"/>
  <list name="Styles" flag="add" type="Integer"><listconst name="Gras"/>
    <listconst name="Italique"/><listconst name="Souligné">En bas.</listconst></list>
</objects>)";

std::string Assist(const TLibrary& library, const char* line, int cursor) {
  const char* result = nullptr;
  library.VCLSyntaxHelpBox(line, &cursor, &result, "c=Compte");
  return result;
}

std::string Pick(const TLibrary& library) { return TextFrom(library.VCLSyntaxConstHelpBox, ""); }
std::string EditTypes(const TLibrary& library) {
  return TextFrom(library.VCLSyntaxTypesBox, "a=Cpt,beta=T");
}

const std::string LongName(80, 'm');

std::string Filter(const TLibrary& library) {
  return FilterFrom(library, {LongName, "CB/Chq", "Mandat"}, {Ansi("Visa Léa"), Ansi("Chéquier")},
                    "");
}

struct TRow {
  const char* At;          ///< the control that Tab leads to, behind the class of another form
  const char* Keys;        ///< null: the control has the focus already
  const char* Shows = "";  ///< a control, and what a user reads there then
  const char* Reading = "";
};

const struct {
  std::string (*Open)(const TLibrary& library);
  std::vector<TRow> Rows;
  const char* Result;
} Runs[] = {
    {[](const TLibrary& library) { return Assist(library, "x = ZEF.Nom", 6); },
     {{"TDlgSyntax.BoxMethod", nullptr},
      {"", "c"},
      {"UpDown", "Right"},
      {"BoxMethod", "aj", "EditLigne", "ZEF.Compte.Ajouter"},
      {"ListParam", "Space", "ListParam", "montant"},
      {"EditValue", "12"},
      {"ListParam", "Down"},
      {"ButValue", "Space"},
      {"TDlgSyntaxConst.BoxCat", nullptr, "BoxCat", "Styles"},
      {"ListConst", "it Space Enter"},
      {"TDlgSyntax.ButValue", nullptr},
      {"BoxUseReturn", "Space", "EditLigne", "ZEF.Compte.Ajouter(12, Italique)"},
      // What is disabled under the focus must not take the keyboard with it.
      {"ButDelete", "Space"},
      {"EditLigne", "End .solde"},
      // The first Escape closes the open list only.
      {"BoxMethod", "Alt+Down Esc", "EditLigne", "ZEF.Compte.Solde"},
      {"", "Alt+O"}},
     "x = ZEF.Compte.Solde"},
    {[](const TLibrary& library) { return Assist(library, "c.", 2); },
     {{"TDlgSyntax.BoxMethod", nullptr},
      // An open list that is left by Escape has chosen nothing.
      {"", "Alt+Down Down Esc", "EditLigne", "c."},
      {"", "Alt+Down Down Enter", "EditLigne", "c.Ajouter"},
      // The same letter walks on, round the end as well.
      {"", "n", "BoxMethod", "Nom"},
      {"", "n n", "BoxMethod", "Numero"},
      {"", "n", "BoxMethod", "Nom"},
      // Enter presses the button that has the focus; disabled by that, it hands the focus on.
      {"ButDelete", "Enter", "EditLigne", "c"},
      {"BoxMethod", nullptr},
      // What the host's code page lacks shows as what the host will get.
      {"EditLigne", "Home Shift+End c.Ω→é(1)", "EditLigne", "c.Ω→é(1)"},
      {"", "Home Shift+End c.Fermer Space 1"},
      {"ListParam", "Home", "EditValue", "1"},
      // A group that only shows is one stop, where the arrows stay.
      {"RadioParam0", "Right"},
      {"RadioParam0", nullptr},
      {"", "Tab"},
      {"EditParamHelp", nullptr},
      {"", "Alt+O"}},
     "c.Fermer 1"},
    // A parameter is edited in an assistant of its own, which is left by Cancel, then by OK.
    {[](const TLibrary& library) { return Assist(library, "c.Ajouter ZEF.Nom, 1", 3); },
     {{"TDlgSyntax.ListParam", "Space"},
      {"ButRecall", "Space", "EditValue", "ZEF.Nom"},
      {"TDlgSyntax.BoxMethod", "c", "EditLigne", "ZEF.Compte"},
      {"", "Esc"},
      {"TDlgSyntax.ButRecall", nullptr, "EditValue", "ZEF.Nom"},
      {"", "Space"},
      {"TDlgSyntax.BoxMethod", "c Alt+O"},
      {"TDlgSyntax.ButRecall", nullptr, "EditValue", "ZEF.Compte"},
      {"", "Alt+O"}},
     "c.Ajouter ZEF.Compte, 1"},
    {Pick,
     {{"TDlgSyntaxConst.BoxCat", nullptr},
      {"", "styles"},
      {"ListConst", "so", "EditConstHelp", "En bas."},
      {"", "Space Up Space Up Space Space", "EditResult", "Italique+Souligné"},
      {"", "Alt+E"},
      {"EditResult", nullptr},
      {"", "italique Enter"}},
     "italique"},
    {EditTypes,
     {{"TDlgSyntaxTypes.EditNew", nullptr},
      // Enter does what is being typed.
      {"", "gamma Enter", "EditNew", ""},
      {"", "delta"},
      {"BtnAdd", "Space"},
      // The button is disabled under the focus now.
      {"BoxConst", "Home b", "BoxConst", "beta"},
      {"EditModif", "End 2 Enter"},
      {"BoxTypes", "Alt+Down Down Enter", "BoxTypes", "Agence"},
      {"BoxConst", "Home"},
      {"BtnDel", "Space"},
      {"", "Alt+O"}},
     "gamma=Cpt,delta=Cpt,beta2=Agence"},
    {Filter,
     {{"TDlgSelectTypOp.ListTypOp", nullptr},
      {"", "Home Tab"},
      {"ButtonOK", nullptr},  // neither the disabled list nor the memo
      {"", "Shift+Tab C", "ListCB", "Visa Léa"},
      {"ListCB", "End Enter"}},
     "1Chéquier"},
};
}  // namespace

/// What the dialogs do has tests of its own; here each is used by keyboard alone, as every kind of
/// control should answer it.
class Keyboard : public TOutsideTest {
 protected:
  const TDatabaseFile Database{Words};
};

TEST_F(Keyboard, UsesEveryDialog) {
  for (const auto& run : Runs) {
    SCOPED_TRACE(run.Result);
    std::string result;
    During([&] { result = run.Open(*Library); },
           [&](TScriptedUser& user) {
             std::optional<TFormDriver> form;
             for (std::string at; const TRow& row : run.Rows) {
               SCOPED_TRACE(testing::Message() << row.At << ' ' << (row.Keys ? row.Keys : ""));
               at = row.At;
               if (const auto dot = at.find('.'); dot != at.npos) {
                 form.emplace(user.WaitForForm(at.substr(0, dot)));
                 at.erase(0, dot + 1);
               }
               if (!row.Keys) form->WaitFocus(at);
               if (row.Keys && !at.empty()) form->TabTo(at);
               form->Keys(row.Keys ? row.Keys : "");
               if (!*row.Shows) continue;
               EXPECT_EQ(form->Reading(row.Shows), FromAnsi(Ansi(row.Reading)));
             }
             form->WaitGone();
           });
    EXPECT_EQ(FromAnsi(result), run.Result);
  }
}

// One list is enabled, the other is not; a text that does not fit is told instead of the hint.
TEST_F(Keyboard, IsNotNeededForTheTipsOfLists) {
  During([&] { Filter(*Library); },
         [&](TScriptedUser& user) {
           TFormDriver form = user.WaitForForm("TDlgSelectTypOp");
           form.WaitForTip("ListTypOp",
                           "Sélectionnez le type d'écriture à afficher lors du filtrage", 0.5, 0.9);
           form.WaitForTip("ListTypOp", LongName, 0.5, 0.05);
           form.WaitForTip("ListCB",
                           "Sélectionnez la carte ou le chèquier à afficher lors du filtrage "
                           "(uniquement pour le type CB/Chq)",
                           0.5, 0.9);
           form.Press(VK_ESCAPE);
         });
}
