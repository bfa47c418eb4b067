#include "syntax/rules/script_variables.h"

#include <gtest/gtest.h>

namespace {

TEST(ScriptVariables, ChangesAreKeptAndFlagged) {
  using V = TScriptVariables;
  const struct {
    const char* Start;
    void (*Change)(V&);
    const char* Text;
  } cases[] = {
      {"a=Cpt,b=T", [](V& v) { v.Add("B"); }, "a=Cpt,b=Cpt"},
      {"a=Cpt,b=T", [](V& v) { v.Rename("A", "z"); }, "b=T,z=Cpt"},
      {"a=Cpt", [](V& v) { v.Rename("b", "z"); }, "a=Cpt,z="},
      {"a=Cpt,b=T,a=U", [](V& v) { v.Rename("a", "c"); }, "b=T,a=U,c=Cpt"},
      {"a=Cpt,b=T", [](V& v) { v.SetType("b", "T"); }, "a=Cpt,b=T"},
      {"a=Cpt,b=T", [](V& v) { v.SetType("A", ""); }, "b=T"},
      {"a=Cpt,b=T", [](V& v) { v.SetType("n", "N"); }, "a=Cpt,b=T,n=N"},
      {"a=T,a=T", [](V& v) { v.Delete("b"); }, "a=T,a=T"},
      {"a=Cpt,b=T", [](V& v) { v.Delete("A"); }, "b=T"},
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
    EXPECT_FALSE(variables.Changed() || V().Changed());
    variables.Replace("a=b");
    variables.Load(c.Start);
    EXPECT_FALSE(variables.Changed());
  }
}

TEST(ScriptVariables, NamesAreFoundInAnyCase) {
  TScriptVariables variables;
  variables.Load("\xC9t\xE9=Saison,a=Cpt,=T,seul,a=U");
  EXPECT_TRUE(variables.Exists("\xE9T\xC9") && !variables.Exists("seul"));
  std::string types;
  for (const char* name : {"\xE9T\xC9", "A", "seul"}) types.append(variables.Type(name)) += ' ';
  EXPECT_EQ(types, "Saison Cpt  ");
  EXPECT_EQ(variables.Names(), (std::vector<std::string>{"\xC9t\xE9", "a", "a"}));
}

TEST(ScriptVariables, AnEditMovesTheButtons) {
  TScriptVariables variables;
  variables.Load("a=Cpt");
  using enum TVariablesDefault;
  const struct {
    TVariablesInput Input;
    TVariablesButtons AfterNew, AfterOther;
  } cases[] = {{{"", false, ""}, {false, false, OK}, {{}, false, OK}},
               {{"A", true, "a"}, {false, false, OK}, {{}, false, OK}},
               {{"n", true, "b"}, {true, {}, Add}, {{}, true, Rename}},
               {{"a", true, "b"}, {false, true, Rename}, {{}, true, Rename}},
               {{"", false, "b"}, {false, false, OK}, {{}, false, OK}},
               {{"", true, ""}, {false, false, OK}, {{}, false, OK}}};
  for (const auto& c : cases) {
    EXPECT_EQ(ButtonsAfterNewName(variables, c.Input), c.AfterNew) << c.Input.NewName;
    EXPECT_EQ(ButtonsAfterOtherName(variables, c.Input), c.AfterOther) << c.Input.OtherName;
  }
}

}  // namespace
