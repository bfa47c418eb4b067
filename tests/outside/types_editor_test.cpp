#include "outside/syntax_test.h"
#include "user/say.h"

class TypesEditor : public TSyntaxTest {
 protected:
  using TNames = std::vector<std::string>;

  /// Rename, retype and so on as the user does them.
  static void Add(TFormDriver& form, std::string_view name) {
    form.Fill("EditNew", name);
    form.Click("BtnAdd");
  }
  static void Rename(TFormDriver& form, std::string_view name, std::string_view newName) {
    form.Select("BoxConst", name);
    form.Fill("EditModif", newName);
    form.Click("BtnValidNom");
  }
  static void Retype(TFormDriver& form, std::string_view name, std::string_view type) {
    form.Select("BoxConst", name);
    form.Select("BoxTypes", type);
  }
  static void Delete(TFormDriver& form, std::string_view name) {
    form.Select("BoxConst", name);
    form.Click("BtnDel");
  }
};

TEST_F(TypesEditor, HandsBackWhatWasChangedAndSaysSo) {
  const struct {
    const char* What;
    const char* Variables;
    std::function<void(TFormDriver&)> Act;
    const char* Result;
    bool Changed;
  } cases[] = {
      {"nothing", "a=Cpt,b=T",
       [](TFormDriver& form) {
         for (const char* name : {"BtnAdd", "BtnValidNom", "BtnDel", "EditModif"})
           EXPECT_FALSE(form.Enabled(name)) << name;
         EXPECT_EQ(form.Items("BoxTypes"),
                   (TNames{"Agence", "Application", "Banque", "Compte", "Cpt", "Double", "Ecriture",
                           "String", "Tiers"}));
       },
       "a=Cpt,b=T", false},
      {"no comma text", "seul b=T", [](TFormDriver&) {}, "seul,b=T", false},
      {"a click", "a=Cpt,b=T", [](TFormDriver& form) { form.Select("BoxConst", "a"); }, "a=Cpt,b=T",
       true},
      {"a click on an unknown type", "a=Cpt,b=T",
       [](TFormDriver& form) { form.Select("BoxConst", "b"); }, "a=Cpt,b=T", false},
      {"a click on the first type", "a=Agence",
       [](TFormDriver& form) {
         form.Select("BoxConst", "a");
         EXPECT_EQ(form.Text("BoxTypes"), "");
       },
       "a=Agence", false},
      {"an added one", "a=Cpt,b=T",
       [](TFormDriver& form) {
         Add(form, "x");
         EXPECT_EQ(form.SelectedItem("BoxConst"), "x");
         EXPECT_EQ(form.Text("BoxTypes"), "Cpt");
       },
       "a=Cpt,b=T,x=Cpt", true},
      {"an added one that comes first", "b=T",
       [](TFormDriver& form) {
         Add(form, "a");
         EXPECT_EQ(form.Items("BoxConst"), (TNames{"a", "b"}));
         EXPECT_EQ(form.SelectedItem("BoxConst"), "");
       },
       "b=T,a=Cpt", true},
      {"a rename", "a=Cpt,b=T,c=U",
       [](TFormDriver& form) {
         Rename(form, "b", "d");
         EXPECT_EQ(form.SelectedItem("BoxConst"), "d");
         EXPECT_EQ(form.Text("EditModif"), "d");
       },
       "a=Cpt,c=U,d=T", true},
      {"a rename to a taken name", "a=Cpt,b=T",
       [](TFormDriver& form) {
         form.Select("BoxConst", "b");
         form.Fill("EditModif", "A");
         EXPECT_FALSE(form.Enabled("BtnValidNom"));
       },
       "a=Cpt,b=T", false},
      {"an added taken name", "a=Cpt,b=T",
       [](TFormDriver& form) {
         form.Fill("EditNew", "A");
         EXPECT_FALSE(form.Enabled("BtnAdd"));
       },
       "a=Cpt,b=T", false},
      {"a chosen type", "a=Cpt,b=T", [](TFormDriver& form) { Retype(form, "b", "Tiers"); },
       "a=Cpt,b=Tiers", true},
      {"a typed type", "a=Cpt,b=T",
       [](TFormDriver& form) {
         form.Select("BoxConst", "b");
         form.TabTo("BoxTypes");
         form.Type("Été, 1");
       },
       "a=Cpt,\"b=Été, 1\"", true},
      {"an emptied type", "a=Cpt,b=Double",
       [](TFormDriver& form) {
         form.Select("BoxConst", "b");
         form.TabTo("BoxTypes");
         form.Press(VK_HOME);
         form.Press(VK_END, mdShift);
         form.Press(VK_DELETE);
         EXPECT_EQ(form.Text("BoxTypes"), "");
         EXPECT_EQ(form.Items("BoxConst"), (TNames{"a", "b"}));
       },
       "a=Cpt", true},
      {"a deleted one", "a=Cpt,b=T",
       [](TFormDriver& form) {
         Delete(form, "a");
         EXPECT_EQ(form.Items("BoxConst"), TNames{"b"});
         EXPECT_TRUE(form.Enabled("BtnDel"));
         EXPECT_TRUE(form.Enabled("EditModif"));
         EXPECT_EQ(form.Text("EditModif"), "");
         EXPECT_EQ(form.Text("BoxTypes"), "");
         form.Click("BtnDel");
       },
       "b=T", true},
      {"a name with an equals sign", "", [](TFormDriver& form) { Add(form, "a=b"); }, "a=b=Cpt",
       true},
  };
  for (const auto& each : cases) {
    for (const bool confirm : {true, false}) {
      SCOPED_TRACE(Say(each.What, confirm ? ", confirmed" : ", cancelled"));
      const std::string result = EditTypes(each.Variables, [&](TScriptedUser&, TFormDriver& form) {
        each.Act(form);
        form.Click(confirm ? "ButtonOK" : "ButtonCancel");
      });
      EXPECT_EQ(result, confirm ? each.Result : each.Variables);
      EXPECT_EQ(NewTypes(),
                confirm && each.Changed ? std::optional<std::string>(each.Result) : std::nullopt);
    }
  }
}

TEST_F(TypesEditor, EnterDoesWhatIsBeingTyped) {
  const std::string result = EditTypes("a=Cpt,b=T", [](TScriptedUser&, TFormDriver& form) {
    form.WaitFocus("EditNew");
    form.Type("z");
    form.Press(VK_RETURN);
    EXPECT_EQ(form.Items("BoxConst"), (TNames{"a", "b", "z"}));
    EXPECT_EQ(form.Text("EditNew"), "");
    form.Select("BoxConst", "b");
    form.Fill("EditModif", "d");
    form.Press(VK_RETURN);
    EXPECT_EQ(form.Items("BoxConst"), (TNames{"a", "d", "z"}));
    form.Fill("EditNew", "y");
    form.Fill("EditNew", "");
    form.Press(VK_RETURN);
    form.WaitGone();
  });
  EXPECT_EQ(result, "a=Cpt,z=Cpt,d=T");
}

TEST_F(TypesEditor, IsUsedByKeyboard) {
  const std::string result = EditTypes("a=Cpt,beta=T", [](TScriptedUser&, TFormDriver& form) {
    form.WaitFocus("EditNew");
    form.Type("gamma");
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
    form.TabTo("BtnValidNom");
    form.Press(VK_SPACE);
    form.TabTo("BoxTypes");
    EXPECT_EQ(form.Text("BoxTypes"), "");
    form.Press(VK_DOWN, mdAlt);
    form.Press(VK_DOWN);
    form.Press(VK_RETURN);
    EXPECT_EQ(form.Text("BoxTypes"), "Agence");
    form.TabTo("BoxConst");
    form.Press(VK_HOME);
    form.TabTo("BtnDel");
    form.Press(VK_SPACE);
    EXPECT_EQ(form.Items("BoxConst"), (TNames{"beta2", "gamma"}));
    form.Mnemonic('O');
  });
  EXPECT_EQ(result, "gamma=Cpt,beta2=Agence");
}
