#include "outside/syntax_test.h"

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

TEST_F(ConstantPicker, TicksShowTheValueAndMakeIt) {
  const struct {
    const char* Category;
    const char* Before;
    TNames Ticked;
    TNames Toggled;
    const char* Value;
  } cases[] = {
      {"Styles", "gras + inconnu", {"Gras"}, {"Souligné"}, "Gras+Souligné"},
      {"Styles", "Gras+Italique", {"Gras", "Italique"}, {"Gras", "Italique"}, ""},
      {"Boutons", "OkSeul+OuiNon", {"OkSeul", "OuiNon"}, {"OkSeul"}, ""},
      {"Boutons", "Gras+1", {}, {"OkSeul", "OuiNon"}, "OuiNon"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(std::string(each.Category) + " on " + each.Before);
    const std::string result = Pick(each.Before, [&](TScriptedUser&, TFormDriver& form) {
      EXPECT_EQ(form.Items("BoxCat"), (TNames{"bool", "Boutons", "Style", "Styles"}));
      EXPECT_EQ(form.SelectedItem("BoxCat"), "");
      EXPECT_TRUE(form.Items("ListConst").empty());
      form.Select("BoxCat", each.Category);
      EXPECT_EQ(Ticked(form), each.Ticked);
      for (const std::string& name : each.Toggled) form.ToggleItem("ListConst", name);
      EXPECT_EQ(form.Text("EditResult"), each.Value);
    });
    EXPECT_EQ(result, each.Value);
  }
}

TEST_F(ConstantPicker, HelpsAndClears) {
  const std::string result = Pick("Gras", [](TScriptedUser&, TFormDriver& form) {
    form.Select("BoxCat", "Styles");
    EXPECT_EQ(form.Text("EditType"), "Integer");
    EXPECT_EQ(form.Text("EditHelp"), "Styles du texte.\r\nIls s'ajoutent.");
    form.Select("ListConst", "Italique");
    EXPECT_EQ(form.Text("EditConstHelp"), "En italique.");
    EXPECT_EQ(form.Text("EditResult"), "Gras");
    form.DoubleClickItem("ListConst", "Gras");
    EXPECT_EQ(form.Text("EditResult"), "Gras");
    EXPECT_EQ(form.Text("EditConstHelp"), "En gras.");
    form.DoubleClickItem("ListConst", "Souligné");
    EXPECT_EQ(Ticked(form), (TNames{"Gras", "Souligné"}));
    form.Select("BoxCat", "Boutons");
    EXPECT_EQ(form.Text("EditConstHelp"), "");
    EXPECT_EQ(form.Text("EditHelp"), "");
    form.Mnemonic('E');
    EXPECT_EQ(form.Text("EditResult"), "");
    EXPECT_EQ(form.Focus(), "EditResult");
    form.Type("ouinon");
    EXPECT_EQ(Ticked(form), TNames{"OuiNon"});
  });
  EXPECT_EQ(result, "ouinon");
}

TEST_F(ConstantPicker, FilteredByAListOfNoCategoryOffersThoseItsNameContains) {
  const TAssisted result = Assist(
      "c.Fermer", 3,
      [](TScriptedUser& user, TFormDriver& form) {
        form.Select("ListParam", "[raison]");
        form.Click("ButValue");
        TFormDriver picker = user.WaitForForm("TDlgSyntaxConst");
        EXPECT_EQ(picker.Items("BoxCat"), (TNames{"Boutons", "Style"}));
        EXPECT_EQ(picker.SelectedItem("BoxCat"), "");
        EXPECT_TRUE(picker.Items("ListConst").empty());
        picker.Select("BoxCat", "Style");
        picker.ToggleItem("ListConst", "Normal");
        picker.Click("ButtonOK");
        picker.WaitGone();
      },
      "c=Compte");
  EXPECT_EQ(result.Line, "c.Fermer Normal");
  // The next run from the host is not filtered, and starts from nothing.
  Pick("", [](TScriptedUser&, TFormDriver& form) {
    EXPECT_EQ(form.Items("BoxCat").size(), 4U);
    EXPECT_EQ(form.Text("EditType"), "");
    EXPECT_TRUE(form.Items("ListConst").empty());
  });
}

TEST_F(ConstantPicker, ItsRunForgetsThatTypesChanged) {
  EditTypes("", [](TScriptedUser&, TFormDriver& form) {
    form.Fill("EditNew", "x");
    form.Click("BtnAdd");
  });
  EXPECT_EQ(NewTypes(), "x=Cpt");
  Pick("", [](TScriptedUser&, TFormDriver&) {});
  EXPECT_EQ(NewTypes(), std::nullopt);
}

TEST_F(ConstantPicker, IsUsedByKeyboard) {
  const std::string result = Pick("", [](TScriptedUser&, TFormDriver& form) {
    form.WaitFocus("BoxCat");
    form.Type("styles");
    EXPECT_EQ(form.SelectedItem("BoxCat"), "Styles");
    form.TabTo("ListConst");
    form.Type("so");
    EXPECT_EQ(form.SelectedItem("ListConst"), "Souligné");
    EXPECT_EQ(form.Text("EditConstHelp"), "Souligné.");
    form.Press(VK_SPACE);
    form.Press(VK_UP);
    form.Press(VK_SPACE);
    form.Press(VK_UP);
    form.Press(VK_SPACE);
    form.Press(VK_SPACE);
    EXPECT_EQ(Ticked(form), (TNames{"Italique", "Souligné"}));
    form.Press(VK_RETURN);
    form.WaitGone();
  });
  EXPECT_EQ(result, "Italique+Souligné");
}
