#include "syntax/rules/script_variables.h"

#include <gtest/gtest.h>

namespace {

TEST(ScriptVariables, CommaTextComesBack) {
  const struct {
    const char* Text;
    const char* Back;
    std::vector<std::string> Names;
  } cases[] = {
      {"", "", {}},
      {"a=Cpt,b=T", "a=Cpt,b=T", {"a", "b"}},
      {"b=T,a=Cpt,B=U", "b=T,a=Cpt,B=U", {"b", "a", "B"}},
      {"a=Cpt,a=Cpt", "a=Cpt,a=Cpt", {"a", "a"}},
      {"a=Cpt b=T", "a=Cpt,b=T", {"a", "b"}},
      {"\"mon compte=Cpt\",\"c=\"\"x\"\"\"",
       "\"mon compte=Cpt\",\"c=\"\"x\"\"\"",
       {"mon compte", "c"}},
      {"a=b=c", "a=b=c", {"a"}},
      {"seul,=T,a=", "seul,=T,a=", {"a"}},
      {"\"a=T", "a=T", {"a"}},
      {"a=T,", "a=T,", {"a"}},
  };
  for (const auto& c : cases) {
    TScriptVariables variables;
    variables.Load(c.Text);
    EXPECT_EQ(variables.Names(), c.Names) << c.Text;
    EXPECT_FALSE(variables.Changed());
    const std::string text = variables.CommaText();
    variables.Load(text);
    EXPECT_EQ(variables.Names(), c.Names) << text;
    EXPECT_EQ(variables.CommaText(), text);
    EXPECT_EQ(text, c.Back);
  }
}

TEST(ScriptVariables, ChangesAreKeptAndFlagged) {
  using V = TScriptVariables;
  const struct {
    const char* Start;
    void (*Change)(V&);
    const char* Text;
  } cases[] = {
      {"a=Cpt,b=T", [](V& v) { v.Add("x"); }, "a=Cpt,b=T,x=Cpt"},
      {"a=Cpt,b=T", [](V& v) { v.Add("B"); }, "a=Cpt,b=Cpt"},
      {"", [](V& v) { v.Add("x,y"); }, "\"x,y=Cpt\""},
      {"a=Cpt,b=T", [](V& v) { v.Rename("A", "z"); }, "b=T,z=Cpt"},
      {"a=Cpt", [](V& v) { v.Rename("b", "z"); }, "a=Cpt,z="},
      {"a=Cpt,b=T,a=U", [](V& v) { v.Rename("a", "c"); }, "b=T,a=U,c=Cpt"},
      {"a=Cpt,b=T", [](V& v) { v.SetType("a", "Long"); }, "a=Long,b=T"},
      {"a=Cpt,b=T", [](V& v) { v.SetType("b", "T"); }, "a=Cpt,b=T"},
      {"a=Cpt,b=T", [](V& v) { v.SetType("A", ""); }, "b=T"},
      {"a=Cpt,b=T", [](V& v) { v.SetType("n", "N"); }, "a=Cpt,b=T,n=N"},
      {"a=Cpt,b=T", [](V& v) { v.Delete("B"); }, "a=Cpt"},
      {"a=Cpt", [](V& v) { v.Delete("b"); }, "a=Cpt"},
      {"a=Cpt,seul", [](V& v) { v.Delete("seul"); }, "a=Cpt,seul"},
      {"a=Cpt", [](V& v) { v.Replace("q=R"); }, "q=R"},
  };
  for (const auto& c : cases) {
    V variables;
    variables.Load(c.Start);
    c.Change(variables);
    EXPECT_EQ(variables.CommaText(), c.Text) << c.Start;
    EXPECT_TRUE(variables.Changed()) << c.Text;
    variables.ClearChanged();
    EXPECT_FALSE(variables.Changed());
    variables.Replace("a=b");
    variables.Load(c.Start);
    EXPECT_FALSE(variables.Changed());
  }
}

TEST(ScriptVariables, NamesAreFoundInAnyCase) {
  TScriptVariables variables;
  variables.Load("\xC9t\xE9=Saison,a=Cpt,=T,seul,a=U");
  EXPECT_TRUE(variables.Exists("\xE9T\xC9"));
  EXPECT_EQ(variables.Type("\xE9T\xC9"), "Saison");
  EXPECT_EQ(variables.Type("A"), "Cpt");
  EXPECT_FALSE(variables.Exists("seul"));
  EXPECT_FALSE(variables.Exists("Cpt"));
  EXPECT_EQ(variables.Type("seul"), "");
}

TEST(ScriptVariables, ButtonsFollowTheNamesTyped) {
  TScriptVariables variables;
  variables.Load("a=Cpt,b=T");
  using enum TVariablesDefault;
  const struct {
    TVariablesInput Input;
    TVariablesButtons AfterNew, AfterOther;
  } cases[] = {
      {{"", false, ""}, {false, false, OK}, {{}, false, OK}},
      {{"x", false, ""}, {true, {}, Add}, {{}, false, OK}},
      {{"A", false, ""}, {false, false, OK}, {{}, false, OK}},
      {{"x", true, "z"}, {true, {}, Add}, {{}, true, Rename}},
      {{"", true, "z"}, {false, true, Rename}, {{}, true, Rename}},
      {{"a", true, "z"}, {false, true, Rename}, {{}, true, Rename}},
      {{"a", true, "B"}, {false, false, OK}, {{}, false, OK}},
      {{"", false, "z"}, {false, false, OK}, {{}, false, OK}},
      {{"", true, ""}, {false, false, OK}, {{}, false, OK}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ButtonsAfterNewName(variables, c.Input), c.AfterNew)
        << c.Input.NewName << "/" << c.Input.OtherName;
    EXPECT_EQ(ButtonsAfterOtherName(variables, c.Input), c.AfterOther)
        << c.Input.NewName << "/" << c.Input.OtherName;
  }
}

}  // namespace
