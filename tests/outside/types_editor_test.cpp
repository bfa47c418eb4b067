#include "outside/syntax_test.h"

/// How changes are kept and said has tests of its own.
class TypesEditor : public TSyntaxTest {
 protected:
  using TNames = std::vector<std::string>;
};

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
