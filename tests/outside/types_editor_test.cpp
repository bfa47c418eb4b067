#include "outside/syntax_test.h"

/// How changes are kept and said has tests of its own.
class TypesEditor : public TSyntaxTest {
 protected:
  using TNames = std::vector<std::string>;
};

TEST_F(TypesEditor, ShowsAndTakesEachChange) {
  using TForm = TFormDriver;
  const struct {
    const char* Variables;
    std::function<void(TForm&)> Act;
    const char* Result;
  } cases[] = {
      {"seul a=Cpt b=T",
       [](TForm& form) {
         for (const char* name : {"BtnAdd", "BtnValidNom", "BtnDel", "EditModif"})
           EXPECT_FALSE(form.Enabled(name)) << name;
         form.Fill("EditNew", "B");
         EXPECT_FALSE(form.Enabled("BtnAdd")) << "taken";
         form.Select("BoxConst", "b");
         form.Fill("EditModif", "A");
         EXPECT_FALSE(form.Enabled("BtnValidNom")) << "taken";
       },
       "seul,a=Cpt,b=T"},
      // What is added is selected unless it comes first.
      {"b=T",
       [](TForm& form) {
         for (const char* name : {"a", "x"}) {
           form.Fill("EditNew", name);
           form.Click("BtnAdd");
           EXPECT_EQ(form.SelectedItem("BoxConst"), *name == 'x' ? "x" : "");
         }
         EXPECT_EQ(form.Items("BoxConst"), (TNames{"a", "b", "x"}));
       },
       "b=T,a=Cpt,x=Cpt"},
      {"a=Cpt,b=T",
       [](TForm& form) {
         form.Select("BoxConst", "b");
         form.Fill("EditModif", "d");
         form.Click("BtnValidNom");
         EXPECT_EQ(form.SelectedItem("BoxConst"), "d");
         form.Select("BoxTypes", "Tiers");
       },
       "a=Cpt,d=Tiers"},
      {"a=T,b=Double",
       [](TForm& form) {
         form.Select("BoxConst", "b");
         form.TabTo("BoxTypes");
         form.Press(VK_HOME);
         form.Press(VK_END, mdShift);
         form.Press(VK_DELETE);
         EXPECT_EQ(form.Items("BoxConst"), (TNames{"a", "b"}));
         form.Select("BoxConst", "a");
         form.TabTo("BoxTypes");
         form.Type("Été, 1");
       },
       "\"a=Été, 1\""},
      {"a=Cpt,b=T",
       [](TForm& form) {
         form.Select("BoxConst", "a");
         form.Click("BtnDel");
         EXPECT_EQ(form.Items("BoxConst"), TNames{"b"});
         EXPECT_EQ(form.Text("EditModif") + form.Text("BoxTypes"), "");
         form.Click("BtnDel");
       },
       "b=T"},
  };
  for (const auto& each : cases) {
    const auto script = [&](TScriptedUser&, TForm& form) { each.Act(form); };
    EXPECT_EQ(EditTypes(each.Variables, script), each.Result);
  }
}

TEST_F(TypesEditor, IsUsedByKeyboard) {
  const std::string result = EditTypes("a=Cpt,beta=T", [](TScriptedUser&, TFormDriver& form) {
    form.WaitFocus("EditNew");
    // Enter does what is being typed.
    form.Type("gamma");
    form.Press(VK_RETURN);
    EXPECT_EQ(form.Text("EditNew"), "");
    form.Type("delta");
    form.TabTo("BtnAdd");
    form.Press(VK_SPACE);
    // The button is disabled under the focus now.
    form.TabTo("BoxConst");
    form.Press(VK_HOME);
    form.Type("b");
    EXPECT_EQ(form.SelectedItem("BoxConst"), "beta");
    form.TabTo("EditModif");
    form.Press(VK_END);
    form.Type("2");
    form.Press(VK_RETURN);
    form.TabTo("BoxTypes");
    form.Press(VK_DOWN, mdAlt);
    form.Press(VK_DOWN);
    form.Press(VK_RETURN);
    EXPECT_EQ(form.Text("BoxTypes"), "Agence");
    form.TabTo("BoxConst");
    form.Press(VK_HOME);
    form.TabTo("BtnDel");
    form.Press(VK_SPACE);
    EXPECT_EQ(form.Items("BoxConst"), (TNames{"beta2", "delta", "gamma"}));
    form.Mnemonic('O');
  });
  EXPECT_EQ(result, "gamma=Cpt,delta=Cpt,beta2=Agence");
}
