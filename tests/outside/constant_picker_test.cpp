#include "outside/syntax_test.h"
#include "user/items.h"
#include "user/say.h"

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

TEST_F(ConstantPicker, EveryWayOutHandsBackTheValueOrTheTextGiven) {
  for (const TWayOut& way : WaysOut) {
    SCOPED_TRACE(way.Name);
    const std::string result = Pick("Gras", [&](TScriptedUser&, TFormDriver& form) {
      EXPECT_FALSE(IsWindowEnabled(MainWindow));
      form.WaitFocus("BoxCat");
      EXPECT_EQ(form.Items("BoxCat"), (TNames{"bool", "Boutons", "Style", "Styles"}));
      EXPECT_EQ(form.SelectedItem("BoxCat"), "");
      EXPECT_TRUE(form.Items("ListConst").empty());
      form.Select("BoxCat", "Styles");
      form.ToggleItem("ListConst", "Souligné");
      way.Leave(form);
      form.WaitGone();
    });
    EXPECT_EQ(result, way.Confirms ? "Gras+Souligné" : "Gras");
  }
}

TEST_F(ConstantPicker, ShowsAsTickedWhatTheValueNames) {
  const struct {
    const char* Value;
    const char* Category;
    TNames Ticked;
  } cases[] = {
      {"", "Styles", {}},
      {" GRAS + souligné ", "Styles", {"Gras", "Souligné"}},
      {"Gras+", "Styles", {"Gras"}},
      {"+++", "Styles", {}},
      {"Gras+Inconnu+12+Italique", "Styles", {"Gras", "Italique"}},
      {"Gras Italique", "Styles", {}},
      {"OkSeul+OuiNon", "Boutons", {"OkSeul", "OuiNon"}},
      {"MsgBox \"a\", OuiNon", "Boutons", {}},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.Value);
    const std::string result = Pick(each.Value, [&](TScriptedUser&, TFormDriver& form) {
      form.Select("BoxCat", each.Category);
      EXPECT_EQ(Ticked(form), each.Ticked);
      EXPECT_EQ(form.Text("EditResult"), each.Value);
    });
    EXPECT_EQ(result, each.Value);
  }
}

TEST_F(ConstantPicker, BuildsTheValueOfWhatIsTicked) {
  const struct {
    const char* Category;
    const char* Before;
    TNames Toggled;
    const char* Value;
  } cases[] = {
      {"Styles", "", {"Souligné", "Gras"}, "Gras+Souligné"},
      {"Styles", "gras + inconnu", {"Italique"}, "Gras+Italique"},
      {"Styles", "Gras+Italique", {"Gras", "Italique"}, ""},
      {"Boutons", "", {"OkSeul", "OuiNon"}, "OuiNon"},
      {"Boutons", "OkSeul+OuiNon", {"OkSeul"}, ""},
      {"Boutons", "Gras+1", {"OuiNon"}, "OuiNon"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(std::string(each.Category) + " on " + each.Before);
    const std::string result = Pick(each.Before, [&](TScriptedUser&, TFormDriver& form) {
      form.Select("BoxCat", each.Category);
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

TEST_F(ConstantPicker, IsUsedByKeyboardAndHeardByScreenReaders) {
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
    EXPECT_EQ(SpokenName(form.Control("EditResult")), "Ligne :");
    EXPECT_EQ(SpokenName(form.Control("ButClear")), "Effacer");
    form.Press(VK_RETURN);
    form.WaitGone();
  });
  EXPECT_EQ(result, "Italique+Souligné");
}

TEST_F(ConstantPicker, LooksAsLaidOut) {
  Pick("", [this](TScriptedUser& user, TFormDriver& form) {
    EXPECT_EQ(form.Caption(), "Sélection d'une constante");
    ExpectLayout(user, form, 50002,
                 {{"Label2", "Ligne :", 0, ""},
                  {"EditResult", "", 100, "Texte retourné à l'éditeur"},
                  {"ButClear", "&Effacer", 0, "Effacer la ligne"},
                  {"Label1", "Catégorie :", 0, ""},
                  {"BoxCat", "", 101, "Catégorie de constantes"},
                  {"EditType", "", 102, "Type des constantes dans cette catégorie"},
                  {"EditHelp", "", 103, "Donne une aide sur la catégorie sélectionnée"},
                  {"ListConst", "", 104,
                   "Liste des constantes, les constantes sélectionnés sont celles utilisées"},
                  {"EditConstHelp", "", 105, "Donne une aide sur la constante sélectionnée"}});
  });
}

TEST_F(ConstantPicker, StaysFluidWithThousandsOfConstants) {
  constexpr int Constants = 5000;
  std::string database = "<objects><list name=\"Vaste\" flag=\"add\" type=\"Integer\">";
  std::string all;
  for (int index = 0; index < Constants; ++index) {
    database += Say("<listconst name=\"zefConstante", index, "\">Aide.</listconst>");
    all += Say(index ? "+" : "", "zefConstante", index);
  }
  Database.reset();
  Database.emplace(database + "</list></objects>");
  const std::string result = Pick("", [&](TScriptedUser&, TFormDriver& form) {
    Timed("filling 5,000 constants", [&] { form.Type("v"); });
    form.TabTo("ListConst");
    form.Press(VK_END);
    Timed("ten ticks among 5,000", [&] {
      for (int tick = 0; tick < 5; ++tick) {
        form.Press(VK_SPACE);
        form.Press(VK_UP);
        form.Press(VK_SPACE);
      }
    });
    SetWindowTextA(form.Control("EditResult"), all.c_str());
    form.TabTo("EditResult");
    form.Press(VK_END);
    Timed("ten keys in a value of 5,000", [&] { form.Type("+azertyuio"); });
    EXPECT_TRUE(ItemChecked(form.Control("ListConst"), Constants - 1));
    Timed("clearing 5,000 ticks", [&] { form.Mnemonic('E'); });
    EXPECT_FALSE(ItemChecked(form.Control("ListConst"), Constants - 1));
  });
  EXPECT_EQ(result, "");
}
