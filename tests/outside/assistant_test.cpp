#include "outside/syntax_test.h"
#include "user/say.h"

class Assistant : public TSyntaxTest {
 protected:
  static constexpr char ChooseType[] = " <--- Sélectionnez un type pour cet objet !";

  /// What the assistant says of the object before the user.
  struct TShown {
    std::string Object;
    std::string Type;
    std::string Member;
    std::string ReturnType;
    bool operator==(const TShown&) const = default;
    friend void PrintTo(const TShown& shown, std::ostream* out) {
      *out << Say('{', shown.Object, " | ", shown.Type, " | ", shown.Member, " | ",
                  shown.ReturnType, '}');
    }
  };
  static TShown Shown(const TFormDriver& form) {
    return {form.Text("EditObjet"), form.SelectedItem("BoxType"), form.Text("EditMethod"),
            form.Text("TextReturnType")};
  }
  /// Looks at the dialog and cancels.
  void Look(std::string_view line, int cursor, const TScript& script, std::string_view types = {}) {
    Assist(
        line, cursor,
        [&](TScriptedUser& user, TFormDriver& form) {
          script(user, form);
          form.Press(VK_ESCAPE);
        },
        types);
  }
};

TEST_F(Assistant, UnderstandsRealLinesAndConfirmsThemUnchanged) {
  const struct {
    const char* Line;
    int Cursor;
    const char* Expression;
    int After;
    TShown Shown;
  } cases[] = {
      {"If x > 0 Then c.Ajouter 1, Gras",
       20,
       "c.Ajouter 1, Gras",
       31,
       {"c", "Compte", "Ajouter 1, Gras", "Ecriture"}},
      {"y = c.Solde ' note", 8, "c.Solde", 11, {"c", "Compte", "Solde", "Double"}},
      {"y = ZEF.Compte.Ajouter(3).Montant ' é",
       28,
       "ZEF.Compte.Ajouter(3).Montant ",
       34,
       {"Ajouter(3)", "Ecriture", "Montant ", "Double"}},
      {"x = MsgBox(\"a\", OuiNon)",
       7,
       "MsgBox(\"a\", OuiNon)",
       23,
       {"MsgBox", "", "MsgBox(\"a\", OuiNon)", "Integer"}},
      {"n = taux.Valeur", 6, "taux.Valeur", 15, {"taux", "Double", "Valeur", ""}},
      {"   ", 1, "", 2, {"", "", "", ""}},
      {"a = b", 900, "b", 5, {"b", "", "", ""}},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.Line);
    const TAssisted result = Assist(
        each.Line, each.Cursor,
        [&](TScriptedUser&, TFormDriver& form) {
          EXPECT_EQ(form.Text("EditLigne"), each.Expression);
          EXPECT_EQ(Shown(form), each.Shown);
          form.WaitFocus(form.Enabled("BoxMethod") ? "BoxMethod" : "BoxType");
        },
        "c=Compte,taux=Double");
    EXPECT_EQ(result, (TAssisted{each.Line, each.After}));
  }
}

TEST_F(Assistant, BuildsACallWithEveryControl) {
  const TAssisted result =
      Assist("total = c. ' fin", 10, [&](TScriptedUser& user, TFormDriver& form) {
        EXPECT_EQ(form.Text("EditHelpType"), ChooseType);
        EXPECT_FALSE(form.Enabled("BoxMethod"));
        form.Select("BoxType", "Compte");
        EXPECT_EQ(form.Text("EditHelpType"), "Un compte.");
        EXPECT_EQ(form.Text("EditHelpMethod"), " Sélectionnez une méthode ci-dessus !");
        EXPECT_EQ(form.Items("BoxMethod"),
                  (std::vector<std::string>{"Ajouter()", "Fermer()", "Premiere", "Solde"}));
        form.Select("BoxMethod", "Ajouter()");
        EXPECT_EQ(form.Text("EditMethod"), "Ajouter");
        EXPECT_EQ(form.Text("EditHelpMethod"),
                  "Ajoute une écriture.Valeur retournée : La nouvelle.");
        EXPECT_EQ(form.Items("ListParam"),
                  (std::vector<std::string>{"montant", "[style]", "[visible]"}));
        EXPECT_FALSE(form.Enabled("EditValue"));
        EXPECT_FALSE(form.Enabled("RadioParam"));

        form.Select("ListParam", "montant");
        EXPECT_EQ(form.Checked("RadioParam0"), BST_CHECKED);
        EXPECT_EQ(form.Text("TextParamType"), "Double");
        EXPECT_FALSE(form.Enabled("ButValue"));
        form.Fill("EditValue", "12");
        form.ToggleItem("ListParam", "montant");
        EXPECT_TRUE(form.ItemChecked("ListParam", "montant"));
        EXPECT_EQ(form.Text("EditLigne"), "c.Ajouter 12");

        form.Select("ListParam", "[style]");
        EXPECT_EQ(form.Text("TextDefVal"), "Gras");
        EXPECT_EQ(form.Text("EditParamHelp"), "Mise en évidence.");
        form.Click("RadioParam2");
        EXPECT_EQ(form.Checked("RadioParam1"), BST_CHECKED);
        EXPECT_EQ(form.Checked("RadioParam2"), BST_UNCHECKED);
        form.Click("ButValue");
        TFormDriver picker = user.WaitForForm("TDlgSyntaxConst");
        EXPECT_EQ(picker.Items("BoxCat"), (std::vector<std::string>{"Style", "Styles"}));
        EXPECT_EQ(picker.SelectedItem("BoxCat"), "Styles");
        picker.ToggleItem("ListConst", "Souligné");
        picker.ToggleItem("ListConst", "Gras");
        picker.Click("ButtonOK");
        picker.WaitGone();
        EXPECT_EQ(form.Text("EditValue"), "Gras+Souligné");
        EXPECT_TRUE(form.ItemChecked("ListParam", "[style]"));

        form.ToggleItem("ListParam", "[visible]");
        EXPECT_FALSE(form.ItemChecked("ListParam", "[visible]"));
        form.DoubleClickItem("ListParam", "[visible]");
        TFormDriver truth = user.WaitForForm("TDlgSyntaxConst");
        EXPECT_EQ(truth.SelectedItem("BoxCat"), "bool");
        truth.ToggleItem("ListConst", "True");
        truth.Press(VK_RETURN);
        truth.WaitGone();
        EXPECT_EQ(form.Focus(), "EditValue");
        EXPECT_EQ(form.Text("EditLigne"), "c.Ajouter 12, Gras+Souligné, True");
        form.ToggleItem("ListParam", "[style]");
        EXPECT_EQ(form.Text("EditLigne"), "c.Ajouter 12, , True");
        EXPECT_EQ(form.Text("EditValue"), "");

        form.Click("BoxUseReturn");
        EXPECT_EQ(form.Text("EditLigne"), "c.Ajouter(12, , True)");
        form.Click("EditLigne");
        EXPECT_TRUE(form.Enabled("ButUpdt"));
        form.Press(VK_END);
        form.Type(".montant");
        form.Click("ButUpdt");
        EXPECT_FALSE(form.Enabled("ButUpdt"));
        EXPECT_EQ(form.Focus(), "EditObjet");
        EXPECT_EQ(Shown(form), (TShown{"c", "Compte", "Ajouter(12, , True)", "Ecriture"}));
        form.StepUp("UpDown");
        EXPECT_EQ(Shown(form), (TShown{"Ajouter(12, , True)", "Ecriture", "Montant", "Double"}));
        EXPECT_EQ(form.Text("EditLigne"), "c.Ajouter(12, , True).Montant");
        form.Click("ButDelete");
        EXPECT_EQ(form.Text("EditLigne"), "c.Ajouter(12, , True)");
      });
  EXPECT_EQ(result, (TAssisted{"total = c.Ajouter(12, , True) ' fin", 29}));
  EXPECT_EQ(NewTypes(), "c=Compte");
}

TEST_F(Assistant, SelectsAParameterByItsBoxItsTextAndTab) {
  Look(
      "c.Ajouter 1", 3,
      [](TScriptedUser&, TFormDriver& form) {
        const auto expectSelected = [&form](const char* item, const char* value) {
          SCOPED_TRACE(item);
          EXPECT_EQ(form.SelectedItem("ListParam"), item);
          EXPECT_TRUE(form.Enabled("EditValue"));
          EXPECT_EQ(form.Text("EditValue"), value);
          EXPECT_EQ(form.ItemChecked("ListParam", item), *value != '\0');
        };
        form.TabTo("ListParam");
        expectSelected("montant", "1");
        form.ToggleItem("ListParam", "[visible]");
        expectSelected("[visible]", "");
        form.ToggleItem("ListParam", "montant");
        expectSelected("montant", "1");
        form.ToggleItem("ListParam", "[style]");
        form.Fill("EditValue", "Gras");
        expectSelected("[style]", "Gras");
        form.Select("ListParam", "montant");
        form.ToggleItem("ListParam", "[style]");
        expectSelected("[style]", "");
        EXPECT_EQ(form.Text("EditLigne"), "c.Ajouter 1");
      },
      "c=Compte");
}

TEST_F(Assistant, IsUsedByKeyboardAlone) {
  const TAssisted result = Assist("x = ZEF.Nom", 6, [&](TScriptedUser& user, TFormDriver& form) {
    form.WaitFocus("BoxMethod");
    form.Type("c");
    EXPECT_EQ(form.Text("EditLigne"), "ZEF.Compte");
    form.TabTo("UpDown");
    form.Press(VK_RIGHT);
    form.TabTo("BoxMethod");
    form.Type("aj");
    EXPECT_EQ(form.Text("EditLigne"), "ZEF.Compte.Ajouter");
    form.TabTo("ListParam");
    form.Press(VK_HOME);
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
    EXPECT_TRUE(picker.ItemChecked("ListConst", "Italique"));
    picker.Press(VK_RETURN);
    picker.WaitGone();
    form.WaitFocus("ButValue");
    form.TabTo("BoxUseReturn");
    form.Press(VK_SPACE);
    EXPECT_EQ(form.Text("EditLigne"), "ZEF.Compte.Ajouter(12, Italique)");
    // What is disabled under the focus must not take the keyboard with it.
    form.TabTo("ButDelete");
    form.Press(VK_SPACE);
    EXPECT_EQ(form.Text("EditLigne"), "ZEF.Compte");
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

TEST_F(Assistant, StepsAlongAChainOfTypedMembers) {
  const TShown chain[] = {{"ZEF", "Application", "Compte", "Compte"},
                          {"Compte", "Compte", "Premiere", "Ecriture"},
                          {"Premiere", "Ecriture", "", ""}};
  Look("x = ZEF.Compte.Premiere", 5, [&](TScriptedUser&, TFormDriver& form) {
    for (const char* step : {"", "+1", "+2", "+2", "-1", "-0"}) {
      SCOPED_TRACE(step);
      if (*step == '+') form.StepUp("UpDown");
      if (*step == '-') form.StepDown("UpDown");
      const int position = *step ? step[1] - '0' : 0;
      EXPECT_EQ(form.Position("UpDown"), position);
      EXPECT_EQ(Shown(form), chain[position]);
      const auto [start, end] = form.Selection("EditLigne");
      EXPECT_EQ(form.Text("EditLigne")
                    .substr(static_cast<size_t>(start), static_cast<size_t>(end - start)),
                chain[position].Object);
    }
  });
}

TEST_F(Assistant, OffersFunctionsWhereThereIsNoObject) {
  const TAssisted result = Assist("x = MsgBox \"a\"", 5, [](TScriptedUser&, TFormDriver& form) {
    EXPECT_FALSE(form.Enabled("BoxType"));
    EXPECT_FALSE(form.Enabled("ButDelete"));
    EXPECT_EQ(form.Text("EditHelpType"), "Fonction Visual Basic");
    EXPECT_EQ(form.SelectedItem("BoxMethod"), "MsgBox()");
    form.StepUp("UpDown");
    EXPECT_EQ(form.Position("UpDown"), 0);
    form.Select("ListParam", "[boutons]");
    form.Fill("EditValue", "OuiNon");
    form.Click("BoxUseReturn");
    EXPECT_EQ(form.Checked("BoxUseReturn"), BST_CHECKED);
  });
  EXPECT_EQ(result.Line, "x = MsgBox(\"a\", OuiNon)");
}

TEST_F(Assistant, ShowsAndRemovesParenthesesOfAMemberThatReturnsNothing) {
  const TAssisted result = Assist(
      "c.Fermer(1, 2)", 3,
      [](TScriptedUser&, TFormDriver& form) {
        EXPECT_EQ(form.Checked("BoxUseReturn"), BST_INDETERMINATE);
        EXPECT_EQ(form.Items("ListParam"), (std::vector<std::string>{"[raison]", "<?>"}));
        form.Click("BoxUseReturn");
        EXPECT_EQ(form.Checked("BoxUseReturn"), BST_UNCHECKED);
        EXPECT_FALSE(form.Enabled("BoxUseReturn"));
      },
      "c=Compte");
  EXPECT_EQ(result.Line, "c.Fermer 1, 2");
}

TEST_F(Assistant, DeclaresTheVariableThatTheUserGaveAType) {
  const auto chooseTiers = [](TScriptedUser&, TFormDriver& form) {
    form.Select("BoxType", "Tiers");
  };
  Assist("client.Banque", 2, chooseTiers, "a=Double");
  EXPECT_EQ(NewTypes(), "a=Double,client=Tiers");
  Assist(
      "client.Banque", 2,
      [](TScriptedUser&, TFormDriver& form) { EXPECT_EQ(form.SelectedItem("BoxType"), "Tiers"); },
      "a=Double,client=Tiers");
  EXPECT_EQ(NewTypes(), std::nullopt);
  Look("autre.Banque", 2, chooseTiers);
  EXPECT_EQ(NewTypes(), std::nullopt);
  Assist("f(1).Banque", 5, chooseTiers);
  EXPECT_EQ(NewTypes(), std::nullopt);
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
