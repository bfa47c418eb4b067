#include <algorithm>

#include "outside/host_strings.h"
#include "outside/outside_test.h"

namespace {
using TLines = std::vector<std::string>;
const TLines Types = {"Virement", "CB/Chq", "Prélèvement", "Espèces"};
const TLines Cards = {"Visa Léa", "Chéquier n° 1", "Chéquier n° 2"};

TLines AllAnsi(const TLines& lines) {
  TLines result;
  std::ranges::transform(lines, std::back_inserter(result), Ansi);
  return result;
}
}  // namespace

/// What a choice means has tests of its own; here are the dialog's windows. Texts are UTF-8.
class TypeFilter : public TOutsideTest {
 protected:
  /// What was chosen, or "(cancelled)" with the selection left.
  std::string Run(const TLines& types, const TLines& cards, const std::string& previous,
                  const std::function<void(TFormDriver&)>& script) {
    const THostList typeList(*Library, AllAnsi(types)), cardList(*Library, AllAnsi(cards));
    const THostString selection(*Library, Ansi(previous).c_str());
    int chosen = -1;
    During(
        [&] {
          chosen =
              Library->VCLSelectTypOp(typeList.Handle(), cardList.Handle(), selection.Handle());
        },
        [&](TScriptedUser& user) {
          TFormDriver form = user.WaitForForm("TDlgSelectTypOp");
          script(form);
          form.WaitGone();
        });
    return (chosen ? "" : "(cancelled) ") + FromAnsi(selection.Text());
  }
  static void Shows(const TFormDriver& form, const char* type, const char* card, bool cards) {
    EXPECT_EQ(form.SelectedItem("ListTypOp"), type);
    EXPECT_EQ(form.SelectedItem("ListCB"), card);
    EXPECT_EQ(form.Enabled("ListCB"), cards);
  }
};

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
  const auto script = [](TFormDriver& form) {
    form.WaitFocus("ListTypOp");
    form.Press(VK_HOME);
    Shows(form, "Virement", "", false);
    form.Press(VK_TAB);
    form.WaitFocus("ButtonOK");  // neither the disabled list nor the memo
    form.Press(VK_TAB, mdShift);
    form.Type("C");
    Shows(form, "CB/Chq", "Visa Léa", true);
    form.TabTo("ListCB");
    form.Press(VK_END);
    form.Press(VK_RETURN);
  };
  EXPECT_EQ(Run(Types, Cards, "", script), "Chéquier n° 2");
}
