#include "syntax/rules/assistant_model.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>

#include "sample_syntax.h"

namespace {

const std::string kDeclared = "c=Compte,=Texte,a,a";

class AssistantModel : public testing::Test {
 protected:
  // "^" in the line stands for the cursor.
  void Analyse(std::string marked) {
    FModel.SetDeclared(kDeclared);
    const std::size_t cursor = marked.find('^');
    FModel.AnalyseHostLine(kView, marked.erase(cursor, 1), static_cast<int>(cursor));
  }
  // What comes to the declared ones.
  std::string Record() {
    const std::string all = FModel.RecordUndeclaredType(kView).value_or(kDeclared + "none");
    return all.starts_with(kDeclared) ? all.substr(kDeclared.size()) : all;
  }
  void Do(const std::string& action) {
    const std::string what = action.substr(0, action.find(' '));
    const std::string on = action.substr(std::min(action.size(), what.size() + 1));
    const auto number = [&] { return std::stoi(on); };
    const std::map<std::string, std::function<void()>> actions = {
        {"host", [&] { Analyse(on); }},
        {"edit", [&] { FModel.EditLine(kView, on); }},
        {"leave", [&] { FModel.LeaveLine(kView); }},
        {"step", [&] { FModel.Step(kView, number()); }},
        {"type", [&] { FModel.ChooseType(kView, on); }},
        {"member", [&] { FModel.ChooseMember(kView, FModel.MemberItems().Find(on)); }},
        {"item", [&] { FModel.ChooseMember(kView, number()); }},
        {"param", [&] { FModel.SelectParam(kView, number()); }},
        {"value", [&] { FModel.SetValue(kView, on); }},
        {"tick", [&] { FModel.ToggleParamCheck(kView, number()); }},
        {"return", [&] { FModel.ClickUseReturn(kView); }},
        {"delete", [&] { FModel.DeleteMember(kView); }},
        {"ok", [&] { FDeclared = Record(); }},
    };
    actions.at(what)();
  }
  // The line, the cursor in it, the position, the type and the member of as many, "-" for those of
  // no use; the rows, "+" enabled, "x" checked; the value and its panel; the box of the return
  // value, "?" greyed; what changed: (L)ine, (I)tems, (R)ows, (V)alue; the helps, where they
  // did, and what OK declares.
  std::string Shown() {
    std::string text = FModel.Result();
    const auto cursor = static_cast<std::size_t>(FModel.ResultCursor());
    if (cursor < text.size()) text.insert(cursor, 1, '^');
    text += " @" + std::to_string(FModel.Analysis().Position()) + " " + FModel.SelectedType() + " ";
    if (const int item = FModel.SelectedItem(); item >= 0) text += FModel.MemberItems().Text(item);
    text += (FModel.MemberBoxEnabled() ? "/" : "-") + std::to_string(FModel.MemberItems().Count());
    for (const TParamRow& row : FModel.ParamRows())
      text += " " + row.Text + (row.Enabled ? "+" : "") + (row.Checked ? "x" : "");
    const TParamPanel& panel = FModel.ParamPanel();
    if (FModel.SelectedParam() >= 0)
      text += " =" + FModel.Value() + "{" + "roa"[static_cast<int>(panel.Kind)] + panel.Type + "," +
              panel.List + "," + panel.Default + "," + panel.Help + "}";
    const TUseReturnBox box = FModel.UseReturnBox();
    if (box.Enabled) text += std::string(" (") + " x?"[static_cast<int>(box.State)] + ")";
    const unsigned changes = FModel.TakeChanges();
    text += changes != 0 ? " " : "";
    for (int i = 0; i < 4; ++i)
      if (changes >> i & 1) text += "LIRV"[i];
    const std::string help = Text(FModel.TypeHelp()) + "/" + Text(FModel.MemberHelp());
    if (help != std::exchange(FHelp, help)) text += " " + help;
    return text + std::exchange(FDeclared, {});
  }
  // Our own by a letter: (T)ype, (M)ember to be chosen, (F)unction.
  static std::string Text(const TAssistantHelp& help) {
    return "-TMF"[static_cast<int>(help.Own)] + help.Text +
           (help.Returned ? ":" + *help.Returned : "");
  }

  std::string FHelp, FDeclared;
  TAssistantModel FModel;
};

TEST_F(AssistantModel, ShowsWhatEachActionDoes) {
  const struct {
    std::string Actions;
    const char* Shown;
  } steps[] = {
      // Each rewrites the line.
      {"host If c.No^m Then", "If c.Nom^ Then @0 Compte Nom/4 LI -cpt/-"},
      {"member ADD", "If c.Add^ Then @0 Compte Add()/4 Prix [Oui]+ [Gras]+ LR"},
      {"param 1; value True",
       "If c.Add , True^ Then @0 Compte Add()/4 Prix [Oui]+x [Gras]+ =True{obool,bool,,} LR"},
      {"tick 1", "If c.Add^ Then @0 Compte Add()/4 Prix [Oui]+ [Gras]+ ={obool,bool,,} LRV"},
      {"tick 2", "If c.Add^ Then @0 Compte Add()/4 Prix [Oui]+ [Gras]+ ={o,Styles,0,le style} R"},
      {"param 3", "If c.Add^ Then @0 Compte Add()/4 Prix [Oui]+ [Gras]+"},
      {"tick 0", "If c.Add^ Then @0 Compte Add()/4 Prix [Oui]+ [Gras]+ ={r,,,} R"},
      {"member add", "If c.Add^ Then @0 Compte Add()/4 Prix [Oui]+ [Gras]+ L"},
      {"tick 3; tick -1", "If c.Add^ Then @0 Compte Add()/4 Prix [Oui]+ [Gras]+ R"},
      {"delete", "If c^ Then @0 Compte /4 LR -cpt/M"},
      {"delete; item -1; item 4", "If c^ Then @0 Compte /4"},
      // The other values stay while one is typed.
      {"host y = c.Ad^d(1, 2).Nom; param 0; value",
       "y = c.Add(, 2).Nom @0 Compte Add()/4 Prix [Oui]+x [Gras]+ ={r,,,} (?) LIRV -cpt/-"},
      {"value f(\"a, b)\", [c",
       "y = c.Add(f(\"a, b)\", [c, 2).Nom @0 Compte Add()/4 Prixx [Oui]+x [Gras]+ =f(\"a, b)\", "
       "[c{r,,,} (?) LR"},
      {"value \"(\"",
       R"(y = c.Add("(", 2).Nom @0 Compte Add()/4 Prixx [Oui]+x [Gras]+ ="("{r,,,} (?) L)"},
      // The call is another one after its parentheses went, and for another of its values.
      {"host c.Ad^d(1, 2, 3); param 0; value 7",
       "c.Add(7, 2, 3) @0 Compte Add()/4 Prixx [Oui]+x [Gras]+x =7{r,,,} (?) LIRV"},
      {"return; value 78", "c.Add 78, 2, 3 @0 Compte Add()/4 Prixx [Oui]+x [Gras]+x =78{r,,,} L"},
      {"param 1; value 5",
       "c.Add 78, 5, 3 @0 Compte Add()/4 Prixx [Oui]+x [Gras]+x =5{obool,bool,,} LV"},
      // Several values typed at once are marked at once.
      {"value 3, 4, 5",
       "c.Add 78, 3, 4, 5, 3 @0 Compte Add()/4 Prixx [Oui]+x [Gras]+x <?>+x <?>+x =3, 4, "
       "5{obool,bool,,} LR"},
      {"host c.Ad^d(1,,); param 0; value 3, 4",
       "c.Add(3, 4) @0 Compte Add()/4 Prixx [Oui]+x [Gras]+ =3, 4{r,,,} (?) LIRV"},
      // The box follows parentheses and the return value.
      {"host c.So^lde", "c.Solde @0 Compte Solde()/4 ( ) LIRV -cpt/-net:le solde"},
      {"return", "c.Solde() @0 Compte Solde()/4 (x) L"},
      {"host c.Sol^de(); return", "c.Solde @0 Compte Solde()/4 ( ) LI"},
      {"host c.Ad^d(1, 2)", "c.Add(1, 2) @0 Compte Add()/4 Prixx [Oui]+x [Gras]+ (?) LIR -cpt/-"},
      {"return", "c.Add 1, 2 @0 Compte Add()/4 Prixx [Oui]+x [Gras]+ L"},
      {"host c.Ad^d 1", "c.Add 1 @0 Compte Add()/4 Prixx [Oui]+ [Gras]+ LIR"},
      {"return", "c.Add 1 @0 Compte Add()/4 Prixx [Oui]+ [Gras]+"},
      {"host c.So^lde 1,2; return",
       "c.Solde(1,2) @0 Compte Solde()/4 <?>+x <?>+x (x) LIR -cpt/-net:le solde"},
      // An emptied one keeps its row as long as it is selected.
      {"tick 1; tick 1", "c.Solde(1) @0 Compte Solde()/4 <?>+x <?>+ ={a,,,} (x) LRV"},
      {"param 0", "c.Solde(1) @0 Compte Solde()/4 <?>+x =1{a,,,} (x) RV"},
      // The line is typed.
      {"host y = ^; edit c; edit", "y =^  @0  /3 LIRV F/M"},
      {"edit c", "y =c^  @0 Compte /4 I -cpt/M"},
      {"edit c.ecritures", "y =c.Ecritures^  @0 Compte Ecritures/4 L -cpt/-"},
      {"edit c.ecritures.item(1).X; leave", "y =c.Ecritures.item(1).X^  @0 Compte Ecritures/4 L"},
      {"step 1", "y =c.Ecritures.Item(1).X^  @1 Ecritures Item()/1 Indexx (x) LIR -/-:"},
      {"step 2", "y =c.Ecritures.Item(1).X^  @2 Ecriture /1 IR -/M"},
      {"step 9", "y =c.Ecritures.Item(1).X^  @3  -0 I T/-"},
      {"edit app.comptes.count 1, 2", "y =app.comptes.count 1, 2^  @2 Ecriture /1 I -/M"},
      // The type of a count is none that is offered.
      {"leave", "y =app.Comptes.Count 1, 2^  @2  -0 LI T/-"},
      {"step 1", "y =app.Comptes.Count 1, 2^  @1 Comptes Count/2 <?>+x <?>+x IR -/-"},
      // Another first object drops what was chosen for the one before, and a shorter chain the
      // position's type.
      {"edit v", "y =v^  @0  -0 IR T/-"},
      {"leave; type Compte", "y =v^  @0 Compte /4 I -cpt/M"},
      {"edit w.Nom", "y =w.Nom^  @0 Compte Nom/4 -cpt/-"},
      {"member add", "y =w.Add^  @0 Compte Add()/4 Prix [Oui]+ [Gras]+ LR"},
      {"delete", "y =w^  @0 Compte /4 LR -cpt/M"},
      {"leave", "y =w^  @0  -0 I T/-"},
      {"type Compte; edit x; leave", "y =x^  @0 Compte /4 I -cpt/M"},
      // Nothing is shown of what was before.
      {"host c.Ad^d(1).zzz; param 0; step 1", "c.Add(1).zzz @1  -0 LIRV T/-"},
      {"step 0", "c.Add(1).zzz @0 Compte Add()/4 Prixx [Oui]+ [Gras]+ (?) IR -cpt/-"},
      {"type Texte", "c.Add(1).zzz @0 Texte -0 (?) IR -mots/-"},
      {"type Compte", "c.Add(1).zzz @0 Compte Add()/4 Prixx [Oui]+ [Gras]+ (?) IR -cpt/-"},
      {"type rien", "c.Add(1).zzz @0  -0 (?) IR T/-"},
      {"type Application", "c.Add(1).zzz @0 Application /1 (?) I -/M"},
      // What was chosen stays where the database says nothing, or is told nothing.
      {"type Compte; step 1; type Compte", "c.Add(1).zzz @1 Compte /4 IR -cpt/M"},
      {"type rien", "c.Add(1).zzz @1  -0 I T/-"},
      {"step 0; type Compte; step 1", "c.Add(1).zzz @1 Compte /4 IR -cpt/M"},
      {"edit c.Add(1).zzz 2; leave", "c.Add(1).zzz 2 @1 Compte /4 R"},
      // No type is left over from another line or member.
      {"host x^; type Categorie; host y.zzz.q^; step 1; type Compte; edit w.zzz.q; leave; step 0",
       "w.zzz.q @0  -0 LI T/-"},
      {"host c.Ecr^itures.x.y; edit c.Rien.x.y; step 1", "c.Rien.x.y @1  -0 LI"},
      {"edit c.Ecritures.x.y; step 0; step 1; step 2", "c.Ecritures.x.y @2  -0 I"},
      {"step 1; step 0", "c.Ecritures.x.y @0 Compte Ecritures/4 I -cpt/-"},
      // A type that the chain meets thrice, and a member that it does not know.
      {"host haut.ha^ut.x; type Categorie", "haut.Haut.x @0 Categorie Haut/2 LI -/-"},
      {"step 1; edit haut.haut.haut.nom", "haut.haut.Haut.nom @1 Categorie Haut/2 L"},
      {"leave", "haut.Haut.Haut.nom @1 Categorie Haut/2 L"},
      {"step 3; edit haut.haut.haut.nom.x; leave; ok",
       "haut.Haut.Haut.Nom.x @3 Texte -0 LI -mots/-,haut=Categorie"},
      {"host app.comptes.item(1).xyz.comptes.item^",
       "app.Comptes.Item(1).xyz.comptes.item @5  -0 L T/-"},
      {"edit app.comptes.item(1).ecritures.item(2).x; leave",
       "app.Comptes.Item(1).Ecritures.Item(2).x @5  -0 L"},
      // An object's text gives its type, which its member keeps.
      {"host x.c.N^om; edit x.d; leave", "x.d @1  -0 LI"},
      {"host x.c.N^om; edit x.d.Nom; leave", "x.d.Nom @1 Compte Nom/4 LI -cpt/-"},
      // A type that was chosen stays when a line is left that nobody edited.
      {"edit z; host app.comptes.count.x^; step 1; type Compte",
       "app.Comptes.Count.x @1 Compte /4 LI -cpt/M"},
      {"leave; leave", "app.Comptes.Count.x @1 Compte /4"},
      // Functions, of which no type is known.
      {"host MsgB^ox(1)", "MsgBox(1) @0  MsgBox()/3 Promptx [Buttons]+ (x) LIR F/-:le bouton"},
      {"type Compte; param 1; delete", "MsgBox(1) @0  MsgBox()/3 Promptx [Buttons]+ ={o,,,} (x)"},
      {"edit c.Nom", "c.Nom @0 Compte Nom/4 IR -cpt/-"},
      {"edit Left", "Left @0  Left()/3 Text Length ( ) IR F/-:"},
      {"member msgbox", "MsgBox @0  MsgBox()/3 Prompt [Buttons]+ ( ) LR F/-:le bouton"},
      {"member date", "Date @0  -0 LIR T/-"},
      // Another function drops what was chosen for the object before it.
      {"host x^; type Categorie; edit Left; member msgbox; edit y", "y @0  -0 LIR"},
      // Only what changed is said to have.
      {"host c.Nom^; step 0", "c.Nom @0 Compte Nom/4 LI -cpt/-"},
      {"edit c.Nom 1", "c.Nom 1 @0 Compte Nom/4 <?>+x R"},
      // Respelled under the user's hands.
      {"edit c.nom 1", "c.Nom 1 @0 Compte Nom/4 <?>+x LR"},
      {"param 0; value 1; edit c.Nom 1", "c.Nom 1 @0 Compte Nom/4 <?>+x =1{a,,,} V"},
      {"value 12; step 0", "c.Nom 12 @0 Compte Nom/4 <?>+x =12{a,,,} L"},
      {"step 1", "c.Nom 12 @1 Texte -0 IRV -mots/-"},
      // An empty name, and the values of a member that nobody knows.
      {"host .N^om", ".Nom @0  -0 L T/-"},
      {"host c.N^om; edit c.Rien 1", "c.Rien 1 @0 Compte /4 <?>+x LIR -cpt/M"},
      {"leave", "c.Rien 1 @0 Compte /4 <?>+x"},
  };
  for (const auto& [row, shown] : steps) {
    for (std::size_t at = 0, end = 0; end != std::string::npos; at = end + 2) {
      end = row.find("; ", at);
      Do(row.substr(at, end - at));
    }
    EXPECT_EQ(Shown(), shown) << row;
  }
}

TEST_F(AssistantModel, DeclaresWhatATypeWasChosenForWhateverItsName) {
  const struct {
    const char *Line, *Pick;
    std::vector<std::string> Edits;
    const char *Type, *Declared;
  } cases[] = {
      {"v.so^lde", "compte", {}, "Compte", ",v=Compte"},
      {"v^", "Compte", {}, "Compte", ",v=Compte"},  // no member yet: a line is begun
      {"v.so^lde", "", {}, "", "none"},
      {"v(1).so^lde", "Compte", {}, "Compte", "none"},
      {"c.so^lde", "Categorie", {}, "Categorie", "none"},
      {"app.comp^tes", "Categorie", {}, "Categorie", "none"},
      {"x.Nom^", "Categorie", {"xy.Nom", "y.Nom"}, "Categorie", ",y=Categorie"},
      // On the way to the right name it is a known one, a function, or none for a moment.
      {"x.Nom^", "Categorie", {"c.Nom", "co.Nom"}, "Categorie", ",co=Categorie"},
      {"x.Nom^", "Categorie", {"Left.Nom", "Left", "L"}, "Categorie", ",L=Categorie"},
      {"x.Nom^", "Categorie", {".Nom", "w.Nom"}, "Categorie", ",w=Categorie"},
      {"xy.Nom^", "Categorie", {"xy.Solde", "x.Solde"}, "Categorie", ",x=Categorie"},
      {"x.Nom^", "Categorie", {"c.Nom"}, "Compte", "none"},
      {"x.Nom^", "Categorie", {"app.Nom"}, "Application", "none"},
      {"x.Nom^", "Categorie", {"w.Solde"}, "", "none"},
      {"x.Nom^", "Categorie", {"", "w"}, "", "none"},
      {"x.Nom^", "Categorie", {"w", "w.Nom"}, "", "none"},
  };
  for (const bool leaves : {false, true})
    for (const auto& [line, pick, edits, type, declared] : cases) {
      SCOPED_TRACE(std::string(line) + " " + pick + (edits.empty() ? "" : edits.back()));
      Analyse(line);
      FModel.Step(kView, 0);
      FModel.ChooseType(kView, pick);
      FModel.Step(kView, 1);
      FModel.Step(kView, 0);
      for (const std::string& edit : edits) {
        FModel.EditLine(kView, edit);
        if (leaves) FModel.LeaveLine(kView);
      }
      FModel.LeaveLine(kView);
      EXPECT_EQ(FModel.SelectedType(), type);
      EXPECT_EQ(Record(), declared);
      EXPECT_EQ(Record(), "none");
    }
}

TEST(MemberItems, AreInTheOrderOfTheirTexts) {
  const TSyntaxDatabase database = DatabaseFromXml(
      "<objects><object name=\"O\"><data name=\"b\"/><method name=\"C\"/><data name=\"a\"/>"
      "<data name=\"B\"/><event name=\"e\"/></object></objects>");
  const TMemberItems items(database.Elements()[0]);
  std::string shown;
  for (int i = 0; i < items.Count(); ++i)
    shown += items.Text(i) + std::to_string(items.Image(i)) + " ";
  EXPECT_EQ(shown, "a2 b2 B2 C()0 ");
  EXPECT_EQ(items.Name(3), "C");
  EXPECT_EQ(items.Find("B"), 1);
}

}  // namespace
