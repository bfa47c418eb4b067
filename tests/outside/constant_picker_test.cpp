#include "outside/syntax_test.h"

/// What ticks make of a value has tests of its own.
class ConstantPicker : public TSyntaxTest {
 protected:
  using TNames = std::vector<std::string>;

  static TNames Ticked(const TFormDriver& form) {
    TNames names = form.Items("ListConst");
    std::erase_if(names,
                  [&](const std::string& name) { return !form.ItemChecked("ListConst", name); });
    return names;
  }
};

TEST_F(ConstantPicker, HelpsTicksAndClears) {
  const std::string result = Pick("gras", [](TScriptedUser&, TFormDriver& form) {
    EXPECT_TRUE(form.Items("ListConst").empty());
    form.Select("BoxCat", "Styles");
    EXPECT_EQ(Ticked(form), TNames{"Gras"});
    EXPECT_EQ(form.Text("EditType"), "Integer");
    EXPECT_EQ(form.Text("EditHelp"), "Styles du texte.\r\nIls s'ajoutent.");
    form.Select("ListConst", "Italique");
    EXPECT_EQ(form.Text("EditConstHelp"), "En italique.");
    EXPECT_EQ(form.Text("EditResult"), "gras");
    form.DoubleClickItem("ListConst", "Souligné");
    EXPECT_EQ(Ticked(form), (TNames{"Gras", "Souligné"}));
    EXPECT_EQ(form.Text("EditResult"), "Gras+Souligné");
    form.Select("BoxCat", "Boutons");
    EXPECT_EQ(form.Text("EditConstHelp"), "");
    form.Mnemonic('E');
    EXPECT_EQ(form.Text("EditResult"), "");
    EXPECT_EQ(form.Focus(), "EditResult");
    form.Type("ouinon");
    EXPECT_EQ(Ticked(form), TNames{"OuiNon"});
  });
  EXPECT_EQ(result, "ouinon");
}

TEST_F(ConstantPicker, FiltersForAParameterAndForgets) {
  EditTypes("", [](TScriptedUser&, TFormDriver& form) {
    form.Fill("EditNew", "x");
    form.Click("BtnAdd");
  });
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
  // The next run from the host is not filtered, starts from nothing and changed no types.
  Pick("", [](TScriptedUser&, TFormDriver& form) {
    EXPECT_EQ(form.Items("BoxCat"), (TNames{"bool", "Boutons", "Style", "Styles"}));
    EXPECT_EQ(form.Text("EditType"), "");
    EXPECT_TRUE(form.Items("ListConst").empty());
  });
  EXPECT_EQ(NewTypes(), std::nullopt);
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
    EXPECT_EQ(Ticked(form), (TNames{"Italique", "Souligné"}));
    form.Press(VK_RETURN);
    form.WaitGone();
  });
  EXPECT_EQ(result, "Italique+Souligné");
}
