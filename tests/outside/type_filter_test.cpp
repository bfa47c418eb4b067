#include <algorithm>

#include "outside/host_strings.h"
#include "outside/outside_test.h"

namespace {

using TLines = std::vector<std::string>;

const TLines Types = {"Virement", "CB/Chq", "Prélèvement", "Espèces"};
const TLines Cards = {"Visa Léa", "Chéquier n° 1", "Chéquier n° 2"};

std::vector<std::string> AllAnsi(const TLines& lines) {
  std::vector<std::string> result;
  std::ranges::transform(lines, std::back_inserter(result), Ansi);
  return result;
}

}  // namespace

/// Texts here are UTF-8.
class TypeFilter : public TOutsideTest {
 protected:
  using TScript = std::function<void(TFormDriver&)>;

  struct TOutcome {
    int Result;
    std::string Selection;
    bool operator==(const TOutcome&) const = default;
    friend void PrintTo(const TOutcome& outcome, std::ostream* out) {
      *out << outcome.Result << " \"" << outcome.Selection << '"';
    }
  };

  TOutcome Run(const TLines& types, const TLines& cards, const std::string& previous,
               const TScript& script) {
    const THostList typeList(*Library, AllAnsi(types));
    const THostList cardList(*Library, AllAnsi(cards));
    const THostString selection(*Library, Ansi(previous).c_str());
    TOutcome outcome{-1, {}};
    During(
        [&] {
          outcome.Result =
              Library->VCLSelectTypOp(typeList.Handle(), cardList.Handle(), selection.Handle());
        },
        [&](TScriptedUser& user) {
          User = &user;
          TFormDriver form = user.WaitForForm("TDlgSelectTypOp");
          script(form);
          form.WaitGone();
        });
    outcome.Selection = FromAnsi(selection.Text());
    return outcome;
  }
  TOutcome Run(const std::string& previous, const TScript& script) {
    return Run(Types, Cards, previous, script);
  }

  static void Shows(const TFormDriver& form, const std::string& type, const std::string& card,
                    bool cardsEnabled) {
    EXPECT_EQ(form.SelectedItem("ListTypOp"), type);
    EXPECT_EQ(form.SelectedItem("ListCB"), card);
    EXPECT_EQ(form.Enabled("ListCB"), cardsEnabled);
  }

  TScriptedUser* User = nullptr;  ///< while a script runs
};

TEST_F(TypeFilter, LooksAsLaidOut) {
  Run("", [this](TFormDriver& form) {
    EXPECT_EQ(form.Caption(), "Filtrage par type d'opération");
    EXPECT_EQ(GetWindow(form.Handle(), GW_OWNER), MainWindow);
    EXPECT_EQ(form.Text("Label1"), "Sélectionnez le type à afficher : ");
    EXPECT_EQ(form.Text("Label2"), "Sélectionnez une carte ou chèquier : ");
    EXPECT_EQ(form.Text("Memo1"),
              "Cliquez sur Annuler pour supprimer le filtre.\r\n\r\n"
              "Sélectionnez le type CB/Chq pour pouvoir \r\n"
              "sélectionner une carte ou un chèquier.");
    EXPECT_TRUE(GetWindowLongW(form.Control("Memo1"), GWL_STYLE) & ES_READONLY);
    EXPECT_EQ(form.Items("ListTypOp"), Types);
    EXPECT_EQ(form.Items("ListCB"), Cards);
    form.Press(VK_ESCAPE);
  });
}

TEST_F(TypeFilter, ListsExplainThemselves) {
  const std::string types = "Sélectionnez le type d'écriture à afficher lors du filtrage";
  const std::string cards =
      "Sélectionnez la carte ou le chèquier à afficher lors du filtrage (uniquement pour le type "
      "CB/Chq)";
  Run("CB/Chq", [&](TFormDriver& form) {
    form.PointAt("ListTypOp");
    EXPECT_EQ(User->WaitForBubble(), types);
    form.PointAt("ListCB");
    User->WaitUntil("the other bubble", [&] { return User->WaitForBubble() == cards; });
    form.Press(VK_ESCAPE);
  });
}

TEST_F(TypeFilter, OpensOnTheEarlierChoice) {
  const TLines noCardType = {"Virement"};
  const TLines otherCase = {"Virement", "cb/chq"};
  const struct {
    TLines Types;
    TLines Cards;
    const char* Previous;
    const char* Type;
    const char* Card;
    bool CardsEnabled;
    const char* Chosen;  ///< by OK at once
  } cases[] = {
      {Types, Cards, "", "", "", false, ""},
      {Types, Cards, "Inconnu", "", "", false, ""},
      {Types, Cards, "Vire", "", "", false, ""},
      {Types, Cards, "Espèces", "Espèces", "", false, "Espèces"},
      {Types, Cards, "PRÉLÈVEMENT", "Prélèvement", "", false, "Prélèvement"},
      {Types, Cards, "CB/Chq", "CB/Chq", "Visa Léa", true, "Visa Léa"},
      {Types, Cards, "Chéquier n° 2", "CB/Chq", "Chéquier n° 2", true, "Chéquier n° 2"},
      {Types, Cards, "visa léa", "CB/Chq", "Visa Léa", true, "Visa Léa"},
      {Types, {}, "CB/Chq", "CB/Chq", "", true, ""},
      {noCardType, Cards, "Visa Léa", "", "Visa Léa", false, ""},
      {otherCase, Cards, "Visa Léa", "cb/chq", "Visa Léa", false, "cb/chq"},
      {{}, {}, "Virement", "", "", false, ""},
      {{"Visa Léa"}, Cards, "Visa Léa", "Visa Léa", "", false, "Visa Léa"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.Previous);
    const TOutcome outcome = Run(c.Types, c.Cards, c.Previous, [&](TFormDriver& form) {
      EXPECT_EQ(form.Items("ListTypOp"), c.Types);
      EXPECT_EQ(form.Items("ListCB"), c.Cards);
      Shows(form, c.Type, c.Card, c.CardsEnabled);
      form.Click("ButtonOK");
    });
    EXPECT_EQ(outcome, (TOutcome{1, c.Chosen}));
  }
}

TEST_F(TypeFilter, CardsFollowTheType) {
  const TOutcome card = Run("", [](TFormDriver& form) {
    form.Select("ListTypOp", "CB/Chq");
    Shows(form, "CB/Chq", "Visa Léa", true);
    form.Select("ListCB", "Chéquier n° 1");
    form.Select("ListTypOp", "Virement");
    Shows(form, "Virement", "Chéquier n° 1", false);
    form.Select("ListTypOp", "CB/Chq");
    Shows(form, "CB/Chq", "Chéquier n° 1", true);
    form.Click("ButtonOK");
  });
  EXPECT_EQ(card, (TOutcome{1, "Chéquier n° 1"}));

  const TOutcome type = Run("Chéquier n° 2", [](TFormDriver& form) {
    form.Select("ListTypOp", "Espèces");
    Shows(form, "Espèces", "Chéquier n° 2", false);
    form.Click("ButtonOK");
  });
  EXPECT_EQ(type, (TOutcome{1, "Espèces"}));

  const TOutcome noCard = Run(Types, {}, "Virement", [](TFormDriver& form) {
    form.Select("ListTypOp", "CB/Chq");
    Shows(form, "CB/Chq", "", true);
    form.Click("ButtonOK");
  });
  EXPECT_EQ(noCard, (TOutcome{1, ""}));
}

TEST_F(TypeFilter, IsLeftWithoutAChoiceInEveryWay) {
  const struct {
    const char* Way;
    TScript Leave;
  } ways[] = {
      {"Cancel", [](TFormDriver& form) { form.Click("ButtonCancel"); }},
      {"Escape", [](TFormDriver& form) { form.Press(VK_ESCAPE); }},
      {"Alt+N", [](TFormDriver& form) { form.Mnemonic('N'); }},
      {"close box", [](TFormDriver& form) { form.CloseBox(); }},
  };
  for (const auto& way : ways) {
    SCOPED_TRACE(way.Way);
    const TOutcome outcome = Run("Virement", [&](TFormDriver& form) {
      form.Select("ListTypOp", "Espèces");
      way.Leave(form);
    });
    EXPECT_EQ(outcome, (TOutcome{0, "Virement"}));
    EXPECT_TRUE(IsWindowEnabled(MainWindow));
  }
}

TEST_F(TypeFilter, IsUsedByKeyboardAlone) {
  const TOutcome outcome = Run("", [](TFormDriver& form) {
    form.WaitFocus("ListTypOp");
    form.Press(VK_HOME);
    Shows(form, "Virement", "", false);
    form.Press(VK_TAB);
    EXPECT_EQ(form.Focus(), "ButtonOK") << "neither the disabled list nor the memo";
    form.Press(VK_TAB, mdShift);
    form.Type("C");
    Shows(form, "CB/Chq", "Visa Léa", true);
    for (const char* next : {"ListCB", "ButtonOK", "ButtonCancel", "ButtonHelp", "ListTypOp"}) {
      form.Press(VK_TAB);
      EXPECT_EQ(form.Focus(), next);
    }
    form.TabTo("ListCB");
    form.Press(VK_END);
    form.Press(VK_RETURN);
  });
  EXPECT_EQ(outcome, (TOutcome{1, "Chéquier n° 2"}));
  EXPECT_EQ(GetForegroundWindow(), MainWindow);
}

TEST_F(TypeFilter, OneDialogServesEveryCallAfresh) {
  HWND first = nullptr;
  Run("Chéquier n° 2", [&](TFormDriver& form) {
    first = form.Handle();
    form.TabTo("ButtonHelp");
    form.Press(VK_ESCAPE);
  });
  const TLines others = {"Autre", "CB/Chq"};
  Run(others, {"Carte"}, "", [&](TFormDriver& form) {
    EXPECT_EQ(form.Handle(), first);
    EXPECT_EQ(form.Items("ListTypOp"), others);
    EXPECT_EQ(form.Items("ListCB"), TLines{"Carte"});
    Shows(form, "", "", false);
    form.WaitFocus("ListTypOp");
    form.Select("ListTypOp", "CB/Chq");
    Shows(form, "CB/Chq", "Carte", true);
    form.Press(VK_ESCAPE);
  });
  Library->VCLFree();
  EXPECT_FALSE(IsWindow(first));
  EXPECT_EQ(Run("", [](TFormDriver& form) { form.Press(VK_RETURN); }), (TOutcome{1, ""}));
}

TEST_F(TypeFilter, RefusesWhatIsNoHandle) {
  const THostList list(*Library, {"Virement"});
  const THostString selection(*Library, "Virement");
  const auto stringAsList = reinterpret_cast<ZefStringList>(selection.Handle());
  const auto listAsString = reinterpret_cast<ZefString>(list.Handle());
  const struct {
    ZefStringList Types;
    ZefStringList Cards;
    ZefString Selection;
  } cases[] = {{nullptr, list.Handle(), selection.Handle()},
               {list.Handle(), nullptr, selection.Handle()},
               {list.Handle(), list.Handle(), nullptr},
               {stringAsList, list.Handle(), selection.Handle()},
               {list.Handle(), stringAsList, selection.Handle()},
               {list.Handle(), list.Handle(), listAsString}};
  for (const auto& c : cases) EXPECT_EQ(Library->VCLSelectTypOp(c.Types, c.Cards, c.Selection), 0);
  EXPECT_EQ(selection.Text(), "Virement");
}

TEST_F(TypeFilter, RefusesACallFromInsideItself) {
  const THostList list(*Library, {"Autre"});
  const THostString inner(*Library, "Autre");
  const TOutcome outcome = Run("Virement", [&](TFormDriver& form) {
    unsigned char result = 1;
    InHost([&] { result = Library->VCLSelectTypOp(list.Handle(), list.Handle(), inner.Handle()); });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(form.Items("ListTypOp"), Types) << "undisturbed";
    form.Select("ListTypOp", "Espèces");
    form.Press(VK_RETURN);
  });
  EXPECT_EQ(outcome, (TOutcome{1, "Espèces"}));
  EXPECT_EQ(inner.Text(), "Autre");
}

TEST_F(TypeFilter, EndsAsCancelledWhenTheLibraryIsFreedUnderIt) {
  HWND window = nullptr;
  const TOutcome outcome = Run("Virement", [&](TFormDriver& form) {
    window = form.Handle();
    form.Select("ListTypOp", "Espèces");
    InHost([this] { Library->VCLFree(); });
  });
  EXPECT_EQ(outcome, (TOutcome{0, "Virement"}));
  EXPECT_FALSE(IsWindow(window));
  EXPECT_TRUE(IsWindowEnabled(MainWindow));
}

TEST_F(TypeFilter, SurvivesTheHostFreeingTheHandlesMeanwhile) {
  THostList* types = new THostList(*Library, {"Virement"});
  THostString* selection = new THostString(*Library, "Virement");
  unsigned char result = 0;
  During(
      [&] {
        result = Library->VCLSelectTypOp(types->Handle(), types->Handle(), selection->Handle());
      },
      [&](TScriptedUser& user) {
        TFormDriver form = user.WaitForForm("TDlgSelectTypOp");
        InHost([&] {
          delete types;
          delete selection;
        });
        form.Press(VK_RETURN);
        form.WaitGone();
      });
  EXPECT_EQ(result, 1);
}
