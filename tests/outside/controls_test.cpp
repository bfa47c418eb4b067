#include <windows.h>

#include "outside/syntax_test.h"

namespace {

/// Types enough to fill any list, and one with members of the same initial.
std::string LargeDatabase() {
  std::string xml = "<objects>";
  for (char letter = 'A'; letter <= 'Z'; ++letter)
    xml += std::string("<object name=\"Type") + letter + "\"><data name=\"X\"/></object>";
  xml +=
      "<object name=\"Compte\"><data name=\"Nom\" type=\"String\"/><data name=\"Note\"/>"
      "<data name=\"Numero\"/><method name=\"Fermer\"><param name=\"raison\"/></method>";
  for (int i = 0; i < 20; ++i) xml += "<data name=\"Z" + std::to_string(i) + "\"/>";
  return xml + "</object></objects>";
}

/// Whole lines that the open list of a combo box shows.
int LinesShown(TScriptedUser& user) {
  HWND list = nullptr;
  user.WaitUntil("an open list", [&] {
    for (const HWND window : TopWindows(GetCurrentProcessId()))
      if (Shown(window) && ClassOf(window) == "ComboLBox") list = window;
    return list != nullptr;
  });
  RECT client{};
  GetClientRect(list, &client);
  return static_cast<int>(client.bottom / Ask(list, LB_GETITEMHEIGHT));
}

}  // namespace

/// What every kind of control does in any dialog, tried in the one that has them all.
class Controls : public TSyntaxTest {
 protected:
  void SetUp() override {
    TSyntaxTest::SetUp();
    Database.reset();
    Database.emplace(LargeDatabase());
  }
};

TEST_F(Controls, DropAsManyLinesAsLaidOut) {
  const auto drops = [](TScriptedUser& user, TFormDriver& form, const char* box, int lines) {
    SCOPED_TRACE(box);
    form.TabTo(box);
    form.Press(VK_DOWN, mdAlt);
    EXPECT_EQ(LinesShown(user), lines);
    form.Press(VK_ESCAPE);
  };
  Assist(
      "c.", 2,
      [&](TScriptedUser& user, TFormDriver& form) {
        drops(user, form, "BoxMethod", 8);
        drops(user, form, "BoxType", 10);
      },
      "c=Compte");
  EditTypes("c=Compte",
            [&](TScriptedUser& user, TFormDriver& form) { drops(user, form, "BoxTypes", 8); });
}

TEST_F(Controls, AnswerKeysAsTheirKindShould) {
  const TAssisted result = Assist(
      "c.", 2,
      [](TScriptedUser&, TFormDriver& form) {
        form.WaitFocus("BoxMethod");
        // An open list that is left by Escape has chosen nothing.
        form.Press(VK_DOWN, mdAlt);
        form.Press(VK_DOWN);
        form.Press(VK_ESCAPE);
        EXPECT_EQ(form.SelectedItem("BoxMethod"), "");
        EXPECT_EQ(form.Text("EditLigne"), "c.");
        form.Press(VK_DOWN, mdAlt);
        form.Press(VK_DOWN);
        form.Press(VK_RETURN);
        EXPECT_EQ(form.Text("EditLigne"), "c.Fermer");
        // The same letter walks on, round the end as well.
        for (const char* next : {"Nom", "Note", "Numero", "Nom"}) {
          form.Type("n");
          EXPECT_EQ(form.SelectedItem("BoxMethod"), next);
        }
        // Enter presses the button that has the focus; what is disabled by that hands the focus on.
        form.TabTo("ButDelete");
        form.Press(VK_RETURN);
        EXPECT_EQ(form.Text("EditLigne"), "c");
        form.WaitFocus("BoxMethod");
        EXPECT_EQ(GetWindowLongW(form.Control("ButDelete"), GWL_STYLE) & BS_TYPEMASK, BS_OWNERDRAW);
        // What the host's code page lacks shows as what the host will get.
        form.TabTo("EditLigne");
        form.Fill("EditLigne", "c.Ω→é(1)");
        EXPECT_EQ(form.Text("EditLigne"), FromAnsi(Ansi("c.Ω→é(1)")));
        form.Fill("EditLigne", "c.Fermer 1");
        form.Click("ButUpdt");
        form.Select("ListParam", "raison");
        // At its end the arrow does nothing at all.
        form.StepDown("UpDown");
        EXPECT_TRUE(form.Enabled("EditValue"));
        // A group that only shows is one stop, where the arrows stay.
        form.TabTo("RadioParam0");
        form.Press(VK_RIGHT);
        EXPECT_EQ(form.Focus(), "RadioParam0");
        EXPECT_EQ(form.RadioItem("RadioParam"), "Obligatoire");
        form.Press(VK_TAB);
        EXPECT_EQ(form.Focus(), "EditParamHelp");
      },
      "c=Compte");
  EXPECT_EQ(result.Line, "c.Fermer 1");
}
