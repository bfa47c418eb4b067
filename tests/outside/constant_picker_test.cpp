#include "outside/syntax_test.h"

/// What ticks make of a value has tests of its own.
class ConstantPicker : public TSyntaxTest {
 protected:
  using TNames = std::vector<std::string>;
};

TEST_F(ConstantPicker, FiltersForAParameterAndForgets) {
  EditTypes("", [](TScriptedUser&, TFormDriver& form) {
    form.Fill("EditNew", "x");
    form.Click("BtnAdd");
  });
  EXPECT_NE(Library->VCLSyntaxGetNewTypes(nullptr), 0);
  Pick("", [](TScriptedUser&, TFormDriver&) {});
  EXPECT_EQ(Library->VCLSyntaxGetNewTypes(nullptr), 0);
  const TAssisted result = Assist(
      "c.Fermer", 3,
      [](TScriptedUser& user, TFormDriver& form) {
        form.Select("ListParam", "[raison]");
        form.Click("ButValue");
        TFormDriver picker = user.WaitForForm("TDlgSyntaxConst");
        EXPECT_EQ(picker.Items("BoxCat"), (TNames{"Boutons", "Style"}));
        EXPECT_EQ(picker.SelectedItem("BoxCat"), "");
        picker.Select("BoxCat", "Style");
        picker.ToggleItem("ListConst", "Normal");
        picker.Click("ButtonOK");
        picker.WaitGone();
      },
      "c=Compte");
  EXPECT_EQ(result.Line, "c.Fermer Normal");
  // The next run from the host is not filtered and starts from nothing.
  Pick("", [](TScriptedUser&, TFormDriver& form) {
    EXPECT_EQ(form.Items("BoxCat"), (TNames{"bool", "Boutons", "Style", "Styles"}));
    EXPECT_EQ(form.Text("EditType"), "");
    EXPECT_TRUE(form.Items("ListConst").empty());
  });
}

TEST_F(ConstantPicker, IsUsedByKeyboard) {
  const std::string result = Pick("", [](TScriptedUser&, TFormDriver& form) {
    form.WaitFocus("BoxCat");
    form.Type("styles");
    form.TabTo("ListConst");
    form.Type("so");
    EXPECT_EQ(form.Text("EditConstHelp"), "Souligné.");
    for (const int key : {VK_SPACE, VK_UP, VK_SPACE, VK_UP, VK_SPACE, VK_SPACE})
      form.Press(static_cast<WORD>(key));
    EXPECT_EQ(form.Text("EditResult"), "Italique+Souligné");
    // Clearing is typing, too.
    form.Mnemonic('E');
    EXPECT_EQ(form.Focus(), "EditResult");
    form.Type("italique");
    EXPECT_TRUE(form.ItemChecked("ListConst", "Italique"));
    form.Press(VK_RETURN);
    form.WaitGone();
  });
  EXPECT_EQ(result, "italique");
}
