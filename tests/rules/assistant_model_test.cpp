#include "syntax/rules/assistant_model.h"

#include <gtest/gtest.h>

#include "sample_syntax.h"

namespace {

using TValues = std::vector<std::string>;

class AssistantModel : public testing::Test {
 protected:
  // "^" in the line stands for the cursor.
  void Analyse(std::string marked) {
    const std::size_t cursor = marked.find('^');
    FModel.AnalyseHostLine(FSyntax.View(), marked.erase(cursor, 1), static_cast<int>(cursor));
  }
  std::string Expression() const { return FModel.Analysis().Expression(); }
  int Position() const { return FModel.Analysis().Position(); }
  std::string SelectedItem() const {
    const int item = FModel.SelectedItem();
    return item < 0 ? std::string() : FModel.MemberItems().Text(item);
  }
  TValues Rows() const {  // "+" enabled, "x" checked
    TValues rows;
    for (const TParamRow& row : FModel.ParamRows())
      rows.push_back(row.Text + (row.Enabled ? "+" : "") + (row.Checked ? "x" : ""));
    return rows;
  }
  void Type(std::string_view text) {  // as keys into the value box
    for (std::size_t length = 1; length <= text.size(); ++length)
      FModel.SetValue(FSyntax.View(), text.substr(0, length));
  }

  const TSampleSyntax FSyntax;
  TAssistantModel FModel;
};

TEST_F(AssistantModel, RewritesWithEachAction) {
  const TSyntaxView syntax = FSyntax.View();
  FModel.SetDeclared("c=Compte");
  Analyse("If c.No^m = 1 Then");
  FModel.ChooseMember(syntax, FModel.MemberItems().Find("ADD"));
  EXPECT_EQ(FModel.Result(), "If c.Add = 1 Then");
  FModel.SelectParam(syntax, 1);
  Type("True");
  EXPECT_EQ(FModel.Result(), "If c.Add , True = 1 Then");
  EXPECT_EQ(Rows(), (TValues{"Montant", "[Force]+x", "[Style]+"}));
  FModel.ToggleParamCheck(syntax, 1);
  EXPECT_EQ(FModel.Result(), "If c.Add = 1 Then");
  EXPECT_EQ(FModel.Value(), "");
  FModel.TakeChanges();
  FModel.ToggleParamCheck(syntax, 2);
  EXPECT_EQ(FModel.Result(), "If c.Add = 1 Then");
  EXPECT_EQ(FModel.TakeChanges(), TAssistantModel::ParamRowsChanged);
  FModel.DeleteMember(syntax);
  EXPECT_EQ(FModel.Result(), "If c = 1 Then");
  EXPECT_EQ(FModel.ResultCursor(), 4);
  EXPECT_FALSE(FModel.DeleteEnabled());
  EXPECT_EQ(FModel.MemberHelp().Own, TAssistantText::ChooseMember);
}

TEST_F(AssistantModel, KeepsTheOtherValuesWhileOneIsTyped) {
  FModel.SetDeclared("c=Compte");
  Analyse("y = c.Ad^d(1, 2).Nom");
  FModel.SelectParam(FSyntax.View(), 0);
  FModel.SetValue(FSyntax.View(), "");
  EXPECT_EQ(Expression(), "c.Add(, 2).Nom");
  Type("f(\"a, b)\", [c");
  Type("\"(\"");
  EXPECT_EQ(Expression(), "c.Add(\"(\", 2).Nom");
  // The call is another one after its parentheses went.
  Analyse("c.Ad^d(1, 2)");
  FModel.SelectParam(FSyntax.View(), 0);
  Type("34");
  FModel.ClickUseReturn(FSyntax.View());
  FModel.SetValue(FSyntax.View(), "345");
  EXPECT_EQ(Expression(), "c.Add 345, 2");
}

TEST_F(AssistantModel, UseReturnBoxFollowsParenthesesAndReturn) {
  // "x" checked, "?" greyed, "+" enabled.
  const struct {
    const char *Line, *Box, *AfterClick, *NextBox;
  } cases[] = {
      {"c.Solde^", "+", "c.Solde()", "x+"},     {"c.Sol^de()", "x+", "c.Solde", "+"},
      {"c.Ad^d(1, 2)", "?+", "c.Add 1, 2", ""}, {"c.Add^ 1", "", "c.Add 1", ""},
      {"c.Ad^d(1,,)", "?+", "c.Add 1", ""},     {"c.Ad^d(,5)", "?+", "c.Add , 5", ""},
      {"c.Ad^d(,)", "?+", "c.Add", ""},         {"c.Solde^ 1,2", "+", "c.Solde(1,2)", "x+"},
  };
  const auto box = [&] {
    const TUseReturnBox shown = FModel.UseReturnBox();
    const char* const marks[] = {"", "x", "?"};
    return std::string(marks[static_cast<int>(shown.State)]) + (shown.Enabled ? "+" : "");
  };
  FModel.SetDeclared("c=Compte");
  for (const auto& test : cases) {
    Analyse(test.Line);
    FModel.Step(FSyntax.View(), 0);
    EXPECT_EQ(box(), test.Box) << test.Line;
    FModel.ClickUseReturn(FSyntax.View());
    EXPECT_EQ(Expression(), test.AfterClick) << test.Line;
    EXPECT_EQ(box(), test.NextBox) << test.Line;
  }
}

TEST_F(AssistantModel, DeclaresAnUndeclaredVariableWithItsChosenType) {
  const TSyntaxView syntax = FSyntax.View();
  struct {
    const char *Line, *Type;
    std::optional<std::string> Declared;
  } const cases[] = {
      {"v.so^lde", "compte", "c=Compte,v=Compte"},
      {"v^", "Compte", "c=Compte,v=Compte"},  // no member yet, as when a line is begun
      {"v.so^lde", "", std::nullopt},
      {"v(1).so^lde", "Compte", std::nullopt},
      {"c.so^lde", "Categorie", std::nullopt},
      {"app.comp^tes", "Categorie", std::nullopt},
  };
  for (const auto& test : cases) {
    FModel.SetDeclared("c=Compte");
    Analyse(test.Line);
    FModel.ChooseType(syntax, test.Type);
    EXPECT_EQ(FModel.RecordUndeclaredType(syntax), test.Declared) << test.Line;
  }
  FModel.SetDeclared("c=Compte");
  Analyse("v.So^lde");
  FModel.ChooseType(syntax, "Compte");
  FModel.Step(syntax, 1);
  FModel.Step(syntax, 0);
  EXPECT_EQ(FModel.SelectedType(), "Compte");
  EXPECT_EQ(FModel.RecordUndeclaredType(syntax), "c=Compte,v=Compte");
  EXPECT_EQ(FModel.RecordUndeclaredType(syntax), std::nullopt);
}

TEST_F(AssistantModel, FollowsTheUserTypingTheLine) {
  const TSyntaxView syntax = FSyntax.View();
  FModel.SetDeclared("c=Compte");
  Analyse("y = ^");
  const std::string typed = "c.ecritures.item(1).X";
  for (std::size_t length = 1; length <= typed.size(); ++length) {
    FModel.EditLine(syntax, typed.substr(0, length));
    ASSERT_EQ(FModel.SelectedType(), "Compte") << "known from the first letter on";
  }
  FModel.LeaveLine(syntax);
  EXPECT_EQ(FModel.SelectedType(), "Compte");
  EXPECT_EQ(SelectedItem(), "Ecritures");
  EXPECT_EQ(FModel.Result(), "y =c.Ecritures.item(1).X ");
  FModel.Step(syntax, 1);
  FModel.Step(syntax, 2);
  EXPECT_EQ(FModel.SelectedType(), "Ecriture");

  FModel.EditLine(syntax, "app.comptes.count 1, 2");
  EXPECT_EQ(Position(), 2);
  FModel.LeaveLine(syntax);
  EXPECT_EQ(FModel.SelectedType(), "");  // the type of a count is none that is offered
  FModel.Step(syntax, 1);
  EXPECT_EQ(FModel.SelectedType(), "Comptes");
  EXPECT_EQ(Rows(), (TValues{"<?>+x", "<?>+x"}));
  EXPECT_EQ(Expression(), "app.Comptes.Count 1, 2");

  // Another first object drops what was chosen for the one before, and a shorter chain the
  // position's type.
  FModel.EditLine(syntax, "v");
  EXPECT_EQ(Position(), 0);
  EXPECT_EQ(FModel.SelectedType(), "");
  FModel.LeaveLine(syntax);
  FModel.ChooseType(syntax, "Compte");
  FModel.EditLine(syntax, "w.Nom");
  FModel.LeaveLine(syntax);
  EXPECT_EQ(FModel.SelectedType(), "");
  EXPECT_EQ(FModel.RecordUndeclaredType(syntax), std::nullopt);
}

TEST_F(AssistantModel, KeepsThePickWhileTheObjectIsRenamed) {
  const TSyntaxView syntax = FSyntax.View();
  struct {
    std::vector<std::string> Edits;
    const char* Type;
    std::optional<std::string> Declared;
  } const cases[] = {
      {{"cmpt.Nom", "cpt.Nom"}, "Categorie", "c=Compte,cpt=Categorie"},
      // On the way to the right name it is a known one, a function, or none for a moment.
      {{"c.Nom", "co.Nom"}, "Categorie", "c=Compte,co=Categorie"},
      {{"Left.Nom", "Left", "Lefts"}, "Categorie", "c=Compte,Lefts=Categorie"},
      {{".Nom", "w.Nom"}, "Categorie", "c=Compte,w=Categorie"},
      {{"cmtp.Solde", "cmt.Solde"}, "Categorie", "c=Compte,cmt=Categorie"},
      {{"c.Nom"}, "Compte", std::nullopt},
      {{"app.Nom"}, "Application", std::nullopt},
      {{"w.Solde"}, "", std::nullopt},
      {{"", "w"}, "", std::nullopt},
      {{"w", "w.Nom"}, "", std::nullopt},
  };
  for (const auto& test : cases)
    for (const bool leaves : {false, true}) {
      SCOPED_TRACE(test.Edits.back());
      FModel.SetDeclared("c=Compte");
      Analyse("cmtp.Nom^");
      FModel.Step(syntax, 0);
      FModel.ChooseType(syntax, "Categorie");
      for (const std::string& edit : test.Edits) {
        FModel.EditLine(syntax, edit);
        if (leaves) FModel.LeaveLine(syntax);
      }
      FModel.LeaveLine(syntax);
      EXPECT_EQ(FModel.SelectedType(), test.Type);
      EXPECT_EQ(FModel.RecordUndeclaredType(syntax), test.Declared);
    }
}

TEST_F(AssistantModel, ShowsNothingOfWhatWasBefore) {
  const TSyntaxView syntax = FSyntax.View();
  FModel.SetDeclared("c=Compte");
  Analyse("c.Ad^d(1).zzz");
  FModel.SelectParam(syntax, 0);
  FModel.Step(syntax, 1);
  EXPECT_EQ(FModel.SelectedParam(), -1);
  EXPECT_EQ(Rows(), TValues());
  FModel.Step(syntax, 0);
  for (const char* type : {"Texte", "Compte"}) {
    FModel.ChooseType(syntax, type);
    EXPECT_EQ(FModel.MemberItems().Count(), *type == 'T' ? 0 : 4) << type;
  }
  // A type that the chain meets twice, and a member that it does not know.
  Analyse("app.comptes.item(1).xyz.comptes.item^");
  EXPECT_EQ(Expression(), "app.Comptes.Item(1).xyz.comptes.item");
  FModel.TakeChanges();
  FModel.EditLine(syntax, "app.comptes.item(1).ecritures.item(2).x");
  FModel.LeaveLine(syntax);
  EXPECT_EQ(Expression(), "app.Comptes.Item(1).Ecritures.Item(2).x");
  EXPECT_NE(FModel.TakeChanges() & TAssistantModel::LineChanged, 0U);
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

TEST_F(AssistantModel, SaysWhatChanged) {
  const TSyntaxView syntax = FSyntax.View();
  FModel.SetDeclared("c=Compte");
  Analyse("c.Nom^");
  FModel.Step(syntax, 0);
  FModel.TakeChanges();
  FModel.EditLine(syntax, "c.Nom 1");
  EXPECT_EQ(FModel.TakeChanges(), TAssistantModel::ParamRowsChanged);
  FModel.EditLine(syntax, "c.nom 1");  // respelled under the user's hands
  EXPECT_NE(FModel.TakeChanges() & TAssistantModel::LineChanged, 0U);
  FModel.SelectParam(syntax, 0);
  EXPECT_EQ(FModel.TakeChanges(), TAssistantModel::ValueChanged);
  FModel.SetValue(syntax, "1");
  FModel.EditLine(syntax, Expression());
  EXPECT_EQ(FModel.SelectedParam(), 0);
  EXPECT_EQ(FModel.TakeChanges(), 0U);
  FModel.SetValue(syntax, "12");
  EXPECT_EQ(FModel.TakeChanges(), TAssistantModel::LineChanged | TAssistantModel::ParamRowsChanged);
}

}  // namespace
