#include "syntax/rules/constant_value.h"

#include <gtest/gtest.h>

#include "database_from_xml.h"
#include "text/collation.h"

namespace {

std::string Shown(const std::vector<TConstantCategory>& categories) {
  std::string text;
  for (const TConstantCategory& category : categories)
    text += (category.Additive ? "+" : " ") + category.Name;
  return text;
}

std::string Marks(const TConstantChoice& choice) {
  std::string marks;
  for (int i = 0; i < choice.Count(); ++i) marks += choice.Ticked(i) ? 'x' : '.';
  return marks;
}

TConstantChoice Choice(const std::string& list) {
  TConstantChoice choice;
  choice.Fill(DatabaseFromXml("<objects>" + list + "</objects>"), "L");
  return choice;
}

TConstantChoice Abc(bool additive) {
  return Choice("<list name=\"L\" flag=\"" + std::string(additive ? "add" : "") +
                R"("><listconst name="a"/><listconst name="B"/><listconst name="c"/></list>)");
}

TEST(ConstantCategories, AreGroupedSortedAndFiltered) {
  const TSyntaxDatabase database = DatabaseFromXml(R"(<objects>
    <list name="Style" flag="add"/><list name="zone"/><list name="BoxStyle" flag="add"/>
    <list name="Alarme"/><type name="Type"/><list name="ZONE"/><list flag="add"/>
    <list name="Presque" flag="Add"/><list name="Alarme" flag="add"/></objects>)");
  const struct {
    const char *Filter, *Categories;
    int Selected;
  } cases[] = {{"", " Alarme Presque zone+Alarme+BoxStyle+Style", -1},
               {"Alarme", " Alarme+Alarme", 1},  // the last of two
               {"Alarme+zone", " Alarme zone+Alarme", -1},
               {"BoxStyle", "+BoxStyle+Style", 0},
               {"Style", "+Style", 0},
               {"MonStyle", "+Style", -1},
               {"boxstyle", "", -1},
               {"Type", "", -1}};
  for (const auto& c : cases) {
    const auto categories = ConstantCategories(database, c.Filter);
    EXPECT_EQ(Shown(categories), c.Categories) << c.Filter;
    EXPECT_EQ(FindCategory(categories, c.Filter), c.Selected) << c.Filter;
  }
  EXPECT_EQ(FindCategory(ConstantCategories(database, ""), "BOXstyle"), 4);
  EXPECT_TRUE(ConstantCategories({}, "").empty());
}

TEST(ConstantChoice, MergesListsOfOneName) {
  const TConstantChoice choice = Choice(R"(
    <list name="L" flag="add" type="long"><comment>un</comment>
      <listconst name="A">aide A</listconst><listconst name="C"/><autre name="caché"/><comment/></list>
    <list name="l"><listconst name="non"/></list><type name="L"/>
    <list name="L" type="date"><comment>deux</comment><listconst name="B">X=y</listconst>
      <listconst name="b">a</listconst><listconst name="b">A</listconst></list>)");
  EXPECT_TRUE(choice.Additive());
  EXPECT_EQ(choice.Type(), "date");
  EXPECT_EQ(choice.Help(), (std::vector<std::string>{"un", "", "deux"}));
  std::string shown;
  for (int i = 0; i < choice.Count(); ++i)
    shown += choice.Name(i) + "=" + choice.ConstantHelp(i) + ";";
  EXPECT_EQ(shown, "A=aide A;C=;B=a;b=a;b=a;");
}

TEST(ConstantChoice, ParsesTheValue) {
  const std::pair<const char*, const char*> cases[] = {
      {"A + b", "xx.a+B"}, {"+ +c++\ta", "x.xa+c"}, {"a+a", "x..a"}, {"a,b+b", ".x.B"}};
  for (const bool additive : {false, true})
    for (const auto& [value, marks] : cases) {
      TConstantChoice choice = Abc(additive);
      choice.Parse("b");
      choice.Parse(value);
      EXPECT_EQ(Marks(choice) + choice.Value(), marks) << value;
    }
  // Constants of the same name are ticked together.
  TConstantChoice twins = Choice(
      "<list name=\"L\"><listconst name=\"Tue\"/>"
      "<listconst name=\"x\"/><listconst name=\"tUE\"/></list>");
  EXPECT_EQ(twins.Parse("tue"), (std::vector<int>{0, 2}));
}

TEST(ConstantChoice, AClickMovesTheMarks) {
  const struct {
    int Constant;
    bool Ticked;
    const char *Exclusive, *Additive;
    std::vector<int> Changed, ChangedAdditive;
  } clicks[] = {
      {1, true, ".x.", ".x.", {1}, {1}},  {2, true, "..x", ".xx", {1, 2}, {2}},
      {2, true, "..x", ".xx", {}, {}},    {0, true, "x..", "xxx", {0, 2}, {0}},
      {1, false, "...", "x.x", {0}, {1}}, {1, false, "...", "x.x", {}, {}},
  };
  TConstantChoice one = Abc(false), several = Abc(true);
  for (const auto& click : clicks) {
    EXPECT_EQ(one.Tick(click.Constant, click.Ticked), click.Changed);
    EXPECT_EQ(several.Tick(click.Constant, click.Ticked), click.ChangedAdditive);
    EXPECT_EQ(Marks(one), click.Exclusive);
    EXPECT_EQ(Marks(several), click.Additive);
    EXPECT_TRUE(several.Parse(several.Value()).empty());
  }
  EXPECT_EQ(several.Value(), "a+c");
}

}  // namespace
