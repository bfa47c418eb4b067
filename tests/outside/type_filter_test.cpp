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

/// What a choice means has tests of its own; here are the dialog's windows. Texts are UTF-8.
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
    TypeList.emplace(*Library, AllAnsi(types));
    CardList.emplace(*Library, AllAnsi(cards));
    Selection.emplace(*Library, Ansi(previous).c_str());
    TOutcome outcome{-1, "(freed)"};
    During(
        [&] {
          outcome.Result =
              Library->VCLSelectTypOp(TypeList->Handle(), CardList->Handle(), Selection->Handle());
        },
        [&](TScriptedUser& user) {
          TFormDriver form = user.WaitForForm("TDlgSelectTypOp");
          script(form);
          form.WaitGone();
        });
    if (Selection) outcome.Selection = FromAnsi(Selection->Text());
    FreeHandles();
    return outcome;
  }
  TOutcome Run(const std::string& previous, const TScript& script) {
    return Run(Types, Cards, previous, script);
  }

  void FreeHandles() {
    TypeList.reset();
    CardList.reset();
    Selection.reset();
  }

  static void Shows(const TFormDriver& form, const std::string& type, const std::string& card,
                    bool cardsEnabled) {
    EXPECT_EQ(form.SelectedItem("ListTypOp"), type);
    EXPECT_EQ(form.SelectedItem("ListCB"), card);
    EXPECT_EQ(form.Enabled("ListCB"), cardsEnabled);
  }

  std::optional<THostList> TypeList;  ///< these three while a dialog runs
  std::optional<THostList> CardList;
  std::optional<THostString> Selection;
};

TEST_F(TypeFilter, OneDialogServesEveryCallAfresh) {
  HWND first = nullptr;
  const TOutcome cancelled = Run("Chéquier n° 2", [&](TFormDriver& form) {
    first = form.Handle();
    EXPECT_EQ(form.Items("ListTypOp"), Types);
    EXPECT_EQ(form.Items("ListCB"), Cards);
    Shows(form, "CB/Chq", "Chéquier n° 2", true);
    form.Select("ListTypOp", "Espèces");
    Shows(form, "Espèces", "Chéquier n° 2", false);
    form.TabTo("ButtonHelp");
    form.Press(VK_ESCAPE);
  });
  EXPECT_EQ(cancelled, (TOutcome{0, "Chéquier n° 2"}));
  const TLines others = {"Autre", "CB/Chq"};
  const TOutcome chosen = Run(others, {"Carte"}, "", [&](TFormDriver& form) {
    EXPECT_EQ(form.Handle(), first);
    EXPECT_EQ(form.Items("ListTypOp"), others);
    EXPECT_EQ(form.Items("ListCB"), TLines{"Carte"});
    Shows(form, "", "", false);
    form.WaitFocus("ListTypOp");
    form.Select("ListTypOp", "CB/Chq");
    Shows(form, "CB/Chq", "Carte", true);
    form.Click("ButtonOK");
  });
  EXPECT_EQ(chosen, (TOutcome{1, "Carte"}));
  Library->VCLFree();
  EXPECT_FALSE(IsWindow(first));
}

// One list is enabled, the other is not; a text that does not fit is told instead of the hint.
TEST_F(TypeFilter, ListsExplainThemselves) {
  const std::string longName(80, 'm');
  Run({"Virement", longName}, Cards, "", [&](TFormDriver& form) {
    EXPECT_EQ(form.TipAt("ListTypOp", 0.5, 0.9),
              "Sélectionnez le type d'écriture à afficher lors du filtrage");
    EXPECT_EQ(form.TipAt("ListTypOp", 0.5, 0.1), longName);
    EXPECT_EQ(form.TipAt("ListCB", 0.5, 0.9),
              "Sélectionnez la carte ou le chèquier à afficher lors du filtrage (uniquement pour "
              "le type CB/Chq)");
    form.Press(VK_ESCAPE);
  });
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
    form.TabTo("ListCB");
    form.Press(VK_END);
    form.Press(VK_RETURN);
  });
  EXPECT_EQ(outcome, (TOutcome{1, "Chéquier n° 2"}));
  EXPECT_EQ(GetForegroundWindow(), MainWindow);
}

TEST_F(TypeFilter, RefusesWhatIsNoHandle) {
  const THostList list(*Library, {"Virement"});
  const THostString text(*Library, "Virement");
  const auto textAsList = reinterpret_cast<ZefStringList>(text.Handle());
  const auto listAsText = reinterpret_cast<ZefString>(list.Handle());
  for (const ZefStringList wrong : {ZefStringList(), textAsList}) {
    EXPECT_EQ(Library->VCLSelectTypOp(wrong, list.Handle(), text.Handle()), 0);
    EXPECT_EQ(Library->VCLSelectTypOp(list.Handle(), wrong, text.Handle()), 0);
  }
  for (const ZefString wrong : {ZefString(), listAsText})
    EXPECT_EQ(Library->VCLSelectTypOp(list.Handle(), list.Handle(), wrong), 0);
  EXPECT_EQ(text.Text(), "Virement");
}

TEST_F(TypeFilter, StandsWhatTheHostDoesMeanwhile) {
  const struct {
    const char* What;
    std::function<void()> Act;
    TOutcome Outcome;
  } cases[] = {
      {"calls again",
       [&] {
         EXPECT_EQ(
             Library->VCLSelectTypOp(CardList->Handle(), CardList->Handle(), Selection->Handle()),
             0);
       },
       {1, "Espèces"}},
      {"frees the handles", [&] { FreeHandles(); }, {1, "(freed)"}},
      {"frees the library", [&] { Library->VCLFree(); }, {0, "Virement"}},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.What);
    const TOutcome outcome = Run("Virement", [&](TFormDriver& form) {
      form.Select("ListTypOp", "Espèces");
      InHost(each.Act);
      if (form.Gone()) return;
      EXPECT_EQ(form.Items("ListTypOp"), Types);
      form.Press(VK_RETURN);
    });
    EXPECT_EQ(outcome, each.Outcome);
    EXPECT_TRUE(IsWindowEnabled(MainWindow));
  }
}
