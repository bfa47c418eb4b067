#include "syntax/rules/assistant_model.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>

#include "sample_syntax.h"

namespace {

class AssistantModel : public testing::Test {
 protected:
  // "^" in the line stands for the cursor.
  void Analyse(std::string marked) {
    FModel.SetDeclared("c=Compte");
    const std::size_t cursor = marked.find('^');
    FModel.AnalyseHostLine(kView, marked.erase(cursor, 1), static_cast<int>(cursor));
  }
  std::string Record() { return FModel.RecordUndeclaredType(kView).value_or("none"); }
  // The line, the position, the type and the member of as many; the rows, "+" enabled, "x" checked;
  // the value and its panel; the box of the return value, "?" greyed; what changed: (L)ine,
  // (I)tems, (R)ows, (V)alue.
  std::string Shown() {
    std::string text = FModel.Result() + " @" + std::to_string(FModel.Analysis().Position()) + " ";
    text += FModel.SelectedType() + " ";
    if (const int item = FModel.SelectedItem(); item >= 0) text += FModel.MemberItems().Text(item);
    text += "/" + std::to_string(FModel.MemberItems().Count());
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
    return text;
  }

  TAssistantModel FModel;
};

TEST_F(AssistantModel, ShowsWhatEachActionDoes) {
  std::string on;
  const auto number = [&] { return std::stoi(on); };
  const std::map<std::string, std::function<void()>> actions = {
      {"host", [&] { Analyse(on); }},
      {"edit", [&] { FModel.EditLine(kView, on); }},
      {"leave", [&] { FModel.LeaveLine(kView); }},
      {"step", [&] { FModel.Step(kView, number()); }},
      {"type", [&] { FModel.ChooseType(kView, on); }},
      {"member", [&] { FModel.ChooseMember(kView, FModel.MemberItems().Find(on)); }},
      {"param", [&] { FModel.SelectParam(kView, number()); }},
      {"value", [&] { FModel.SetValue(kView, on); }},
      {"tick", [&] { FModel.ToggleParamCheck(kView, number()); }},
      {"return", [&] { FModel.ClickUseReturn(kView); }},
      {"delete", [&] { FModel.DeleteMember(kView); }},
  };
  const struct {
    std::string Action;
    const char* Shown = nullptr;  ///< null: not looked at
  } steps[] = {
      // Each rewrites the line.
      {"host If c.No^m = 1 Then", "If c.Nom = 1 Then @0 Compte Nom/4 LI"},
      {"member ADD", "If c.Add = 1 Then @0 Compte Add()/4 Montant [Force]+ [Style]+ LR"},
      {"param 1", "If c.Add = 1 Then @0 Compte Add()/4 Montant [Force]+ [Style]+ ={obool,bool,,}"},
      {"value True",
       "If c.Add , True = 1 Then @0 Compte Add()/4 Montant [Force]+x [Style]+ =True{obool,bool,,} "
       "LR"},
      {"tick 1",
       "If c.Add = 1 Then @0 Compte Add()/4 Montant [Force]+ [Style]+ ={obool,bool,,} LRV"},
      {"tick 2",
       "If c.Add = 1 Then @0 Compte Add()/4 Montant [Force]+ [Style]+ ={o,Styles,0,le style} R"},
      {"param 3", "If c.Add = 1 Then @0 Compte Add()/4 Montant [Force]+ [Style]+"},
      {"tick -1", "If c.Add = 1 Then @0 Compte Add()/4 Montant [Force]+ [Style]+ R"},
      {"delete", "If c = 1 Then @0 Compte /4 LR"},
      {"delete", "If c = 1 Then @0 Compte /4"},
      // The other values stay while one is typed.
      {"host y = c.Ad^d(1, 2).Nom"},
      {"param 0",
       "y = c.Add(1, 2).Nom @0 Compte Add()/4 Montantx [Force]+x [Style]+ =1{r,,,} (?) LIRV"},
      {"value", "y = c.Add(, 2).Nom @0 Compte Add()/4 Montant [Force]+x [Style]+ ={r,,,} (?) LR"},
      {"value f(\"a, b)\", [c",
       "y = c.Add(f(\"a, b)\", [c, 2).Nom @0 Compte Add()/4 Montantx [Force]+x [Style]+ =f(\"a, "
       "b)\", [c{r,,,} (?) LR"},
      {"value \"(\"",
       "y = c.Add(\"(\", 2).Nom @0 Compte Add()/4 Montantx [Force]+x [Style]+ =\"(\"{r,,,} (?) L"},
      // The call is another one after its parentheses went.
      {"host c.Ad^d(1, 2)"},
      {"param 0"},
      {"value 34", "c.Add(34, 2) @0 Compte Add()/4 Montantx [Force]+x [Style]+ =34{r,,,} (?) LIRV"},
      {"return", "c.Add 34, 2 @0 Compte Add()/4 Montantx [Force]+x [Style]+ =34{r,,,} L"},
      {"value 345", "c.Add 345, 2 @0 Compte Add()/4 Montantx [Force]+x [Style]+ =345{r,,,} L"},
      // Several values typed at once are marked at once.
      {"value 3, 4, 5",
       "c.Add 3, 4, 5, 2 @0 Compte Add()/4 Montantx [Force]+x [Style]+x <?>+x =3, 4, 5{r,,,} LR"},
      {"host c.Ad^d(1,,)"},
      {"param 0"},
      {"value 3, 4",
       "c.Add(3, 4) @0 Compte Add()/4 Montantx [Force]+x [Style]+ =3, 4{r,,,} (?) LIRV"},
      // The box follows parentheses and the return value.
      {"host c.So^lde", "c.Solde @0 Compte Solde()/4 ( ) LIRV"},
      {"return", "c.Solde() @0 Compte Solde()/4 (x) L"},
      {"host c.Sol^de()", "c.Solde() @0 Compte Solde()/4 (x) LI"},
      {"return", "c.Solde @0 Compte Solde()/4 ( ) L"},
      {"host c.Ad^d(1, 2)", "c.Add(1, 2) @0 Compte Add()/4 Montantx [Force]+x [Style]+ (?) LIR"},
      {"return", "c.Add 1, 2 @0 Compte Add()/4 Montantx [Force]+x [Style]+ L"},
      {"host c.Ad^d 1", "c.Add 1 @0 Compte Add()/4 Montantx [Force]+ [Style]+ LIR"},
      {"return", "c.Add 1 @0 Compte Add()/4 Montantx [Force]+ [Style]+"},
      {"host c.So^lde 1,2", "c.Solde 1,2 @0 Compte Solde()/4 <?>+x <?>+x ( ) LIR"},
      {"return", "c.Solde(1,2) @0 Compte Solde()/4 <?>+x <?>+x (x) L"},
      // An emptied one keeps its row as long as it is selected.
      {"tick 1", "c.Solde(1) @0 Compte Solde()/4 <?>+x <?>+ ={a,,,} (x) LRV"},
      {"param 0", "c.Solde(1) @0 Compte Solde()/4 <?>+x =1{a,,,} (x) RV"},
      // The line is typed.
      {"host y = ^", "y =  @0  /2 LIRV"},
      {"edit c", "y =c  @0 Compte /4 I"},
      {"edit c.ecritures", "y =c.Ecritures  @0 Compte Ecritures/4 L"},
      {"edit c.ecritures.item(1).X", "y =c.Ecritures.item(1).X  @0 Compte Ecritures/4 L"},
      {"leave", "y =c.Ecritures.item(1).X  @0 Compte Ecritures/4"},
      {"step 1", "y =c.Ecritures.Item(1).X  @1 Ecritures Item()/1 Indexx (x) LIR"},
      {"step 2", "y =c.Ecritures.Item(1).X  @2 Ecriture /1 IR"},
      {"step 9", "y =c.Ecritures.Item(1).X  @3  /0 I"},
      {"edit app.comptes.count 1, 2", "y =app.comptes.count 1, 2  @2 Ecriture /1 I"},
      // The type of a count is none that is offered.
      {"leave", "y =app.Comptes.Count 1, 2  @2  /0 LI"},
      {"step 1", "y =app.Comptes.Count 1, 2  @1 Comptes Count/2 <?>+x <?>+x IR"},
      // Another first object drops what was chosen for the one before, and a shorter chain the
      // position's type.
      {"edit v", "y =v  @0  /0 IR"},
      {"leave"},
      {"type Compte", "y =v  @0 Compte /4 I"},
      {"edit w.Nom", "y =w.Nom  @0 Compte Nom/4"},
      {"leave", "y =w.Nom  @0  /0 I"},
      // Nothing is shown of what was before.
      {"host c.Ad^d(1).zzz"},
      {"param 0", "c.Add(1).zzz @0 Compte Add()/4 Montantx [Force]+ [Style]+ =1{r,,,} (?) LIRV"},
      {"step 1", "c.Add(1).zzz @1  /0 IRV"},
      {"step 0", "c.Add(1).zzz @0 Compte Add()/4 Montantx [Force]+ [Style]+ (?) IR"},
      {"type Texte", "c.Add(1).zzz @0 Texte /0 (?) IR"},
      {"type Compte", "c.Add(1).zzz @0 Compte Add()/4 Montantx [Force]+ [Style]+ (?) IR"},
      {"type rien", "c.Add(1).zzz @0  /0 (?) IR"},
      // A type that the chain meets twice, and a member that it does not know.
      {"host app.comptes.item(1).xyz.comptes.item^",
       "app.Comptes.Item(1).xyz.comptes.item @5  /0 L"},
      {"edit app.comptes.item(1).ecritures.item(2).x",
       "app.comptes.item(1).ecritures.item(2).x @5  /0"},
      {"leave", "app.Comptes.Item(1).Ecritures.Item(2).x @5  /0 L"},
      // A type that was chosen stays when a line is left that nobody edited.
      {"host app.comptes.count.x^"},
      {"step 1"},
      {"type Compte", "app.Comptes.Count.x @1 Compte /4 LI"},
      {"leave", "app.Comptes.Count.x @1 Compte /4"},
      {"leave", "app.Comptes.Count.x @1 Compte /4"},
      // Functions, of which no type is known.
      {"host MsgB^ox(1)", "MsgBox(1) @0  MsgBox()/2 Promptx [Buttons]+ (x) LIR"},
      {"type Compte", "MsgBox(1) @0  MsgBox()/2 Promptx [Buttons]+ (x)"},
      {"param 1", "MsgBox(1) @0  MsgBox()/2 Promptx [Buttons]+ ={o,,,} (x)"},
      {"edit c.Nom", "c.Nom @0 Compte Nom/4 IR"},
      {"edit Left", "Left @0  Left()/2 Text Length ( ) IR"},
      {"member msgbox", "MsgBox @0  MsgBox()/2 Prompt [Buttons]+ ( ) LR"},
      // Only what changed is said to have.
      {"host c.Nom^"},
      {"step 0", "c.Nom @0 Compte Nom/4 LIR"},
      {"edit c.Nom 1", "c.Nom 1 @0 Compte Nom/4 <?>+x R"},
      // Respelled under the user's hands.
      {"edit c.nom 1", "c.Nom 1 @0 Compte Nom/4 <?>+x LR"},
      {"param 0", "c.Nom 1 @0 Compte Nom/4 <?>+x =1{a,,,} V"},
      {"value 1", "c.Nom 1 @0 Compte Nom/4 <?>+x =1{a,,,}"},
      {"edit c.Nom 1", "c.Nom 1 @0 Compte Nom/4 <?>+x =1{a,,,}"},
      {"value 12", "c.Nom 12 @0 Compte Nom/4 <?>+x =12{a,,,} L"},
      {"step 0", "c.Nom 12 @0 Compte Nom/4 <?>+x =12{a,,,}"},
      {"step 1", "c.Nom 12 @1 Texte /0 IRV"},
  };
  for (const auto& [action, shown] : steps) {
    const std::string what = action.substr(0, action.find(' '));
    on = action.substr(std::min(action.size(), what.size() + 1));
    actions.at(what)();
    if (shown != nullptr) {
      EXPECT_EQ(Shown(), shown) << action;
    }
  }
}

TEST_F(AssistantModel, DeclaresWhatATypeWasChosenForWhateverItsName) {
  const struct {
    const char *Line, *Pick;
    std::vector<std::string> Edits;
    const char *Type, *Declared;
  } cases[] = {
      {"v.so^lde", "compte", {}, "Compte", "c=Compte,v=Compte"},
      {"v^", "Compte", {}, "Compte", "c=Compte,v=Compte"},  // no member yet: a line is begun
      {"v.so^lde", "", {}, "", "none"},
      {"v(1).so^lde", "Compte", {}, "Compte", "none"},
      {"c.so^lde", "Categorie", {}, "Categorie", "none"},
      {"app.comp^tes", "Categorie", {}, "Categorie", "none"},
      {"x.Nom^", "Categorie", {"xy.Nom", "y.Nom"}, "Categorie", "c=Compte,y=Categorie"},
      // On the way to the right name it is a known one, a function, or none for a moment.
      {"x.Nom^", "Categorie", {"c.Nom", "co.Nom"}, "Categorie", "c=Compte,co=Categorie"},
      {"x.Nom^", "Categorie", {"Left.Nom", "Left", "L"}, "Categorie", "c=Compte,L=Categorie"},
      {"x.Nom^", "Categorie", {".Nom", "w.Nom"}, "Categorie", "c=Compte,w=Categorie"},
      {"xy.Nom^", "Categorie", {"xy.Solde", "x.Solde"}, "Categorie", "c=Compte,x=Categorie"},
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
