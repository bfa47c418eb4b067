#include "outside/syntax_test.h"

/// How lines are understood and rewritten has tests of its own, and each stop of the tour uses the
/// assistant once; here its controls play together.
class Assistant : public TSyntaxTest {};

TEST_F(Assistant, IsUsedByKeyboardAlone) {
  const TAssisted result = Assist("x = ZEF.Nom", 6, [](TScriptedUser& user, TFormDriver& form) {
    form.WaitFocus("BoxMethod");
    form.Type("c");
    form.TabTo("UpDown");
    form.Press(VK_RIGHT);
    form.TabTo("BoxMethod");
    form.Type("aj");
    EXPECT_EQ(form.Text("EditLigne"), "ZEF.Compte.Ajouter");
    form.TabTo("ListParam");
    EXPECT_EQ(form.SelectedItem("ListParam"), "montant");
    form.Press(VK_SPACE);
    form.TabTo("EditValue");
    form.Type("12");
    form.TabTo("ListParam");
    form.Press(VK_DOWN);
    form.TabTo("ButValue");
    form.Press(VK_SPACE);
    TFormDriver picker = user.WaitForForm("TDlgSyntaxConst");
    picker.WaitFocus("BoxCat");
    picker.TabTo("ListConst");
    picker.Type("it");
    picker.Press(VK_SPACE);
    picker.Press(VK_RETURN);
    picker.WaitGone();
    form.WaitFocus("ButValue");
    form.TabTo("BoxUseReturn");
    form.Press(VK_SPACE);
    EXPECT_EQ(form.Text("EditLigne"), "ZEF.Compte.Ajouter(12, Italique)");
    // What is disabled under the focus must not take the keyboard with it.
    form.TabTo("ButDelete");
    form.Press(VK_SPACE);
    form.TabTo("EditLigne");
    form.Press(VK_END);
    form.Type(".solde");
    form.TabTo("BoxMethod");
    EXPECT_EQ(form.Text("EditLigne"), "ZEF.Compte.Solde");
    // The first Escape closes the open list only.
    form.Press(VK_DOWN, mdAlt);
    form.Press(VK_ESCAPE);
    EXPECT_FALSE(form.Gone());
    form.Mnemonic('O');
  });
  EXPECT_EQ(result.Line, "x = ZEF.Compte.Solde");
}

TEST_F(Assistant, EditsAParameterInAnAssistantOfItsOwn) {
  const TAssisted result = Assist(
      "c.Ajouter ZEF.Nom, 1", 3,
      [](TScriptedUser& user, TFormDriver& form) {
        form.Select("ListParam", "montant");
        for (const bool confirm : {false, true}) {
          form.Click("ButRecall");
          TFormDriver nested = user.WaitForForm("TDlgSyntax");
          ASSERT_NE(nested.Handle(), form.Handle());
          EXPECT_EQ(nested.Text("EditLigne"), "ZEF.Nom");
          nested.Select("BoxMethod", "Compte");
          nested.Click(confirm ? "ButtonOK" : "ButtonCancel");
          nested.WaitGone();
          EXPECT_EQ(form.Text("EditValue"), confirm ? "ZEF.Compte" : "ZEF.Nom");
        }
      },
      "c=Compte");
  EXPECT_EQ(result.Line, "c.Ajouter ZEF.Compte, 1");
}

TEST_F(Assistant, OpensOnAnyDatabaseAndALineOfAMegabyte) {
  const std::string sample = SampleDatabase;
  const struct {
    const char* What;
    std::optional<std::string> Bytes;
    LRESULT Types;
  } cases[] = {
      {"missing", std::nullopt, 0},
      {"cut short", sample.substr(0, sample.size() / 2), 0},
      {"whole again", sample, 9},
  };
  const std::string line = "x = ZEF.Nom & \"" + std::string(1 << 20, 'a') + "\"";
  for (const auto& each : cases) {
    SCOPED_TRACE(each.What);
    Database.reset();
    if (each.Bytes) Database.emplace(*each.Bytes);
    const TAssisted result = Assist(line, 6, [&](TScriptedUser&, TFormDriver& form) {
      EXPECT_EQ(Ask(form.Control("BoxType"), CB_GETCOUNT), each.Types);
    });
    EXPECT_TRUE(result.Line == line) << result.Line.size();
    EXPECT_EQ(Pick("A+B", [](TScriptedUser&, TFormDriver&) {}), "A+B");
    EXPECT_EQ(EditTypes("a=b", [](TScriptedUser&, TFormDriver&) {}), "a=b");
  }
}
