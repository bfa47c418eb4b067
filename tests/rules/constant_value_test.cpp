#include "syntax/rules/constant_value.h"

#include <gtest/gtest.h>

#include <random>

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

TConstantChoice Choice(std::string_view list) {
  TConstantChoice choice;
  choice.Fill(DatabaseFromXml("<objects>" + std::string(list) + "</objects>"), "L");
  return choice;
}

constexpr std::string_view kAbc =
    R"(<listconst name="a"/><listconst name="B"/><listconst name="c"/>)";

TConstantChoice Abc(bool additive) {
  return Choice("<list name=\"L\" flag=\"" + std::string(additive ? "add" : "") + "\">" +
                std::string(kAbc) + "</list>");
}

TEST(ConstantCategories, AreGroupedSortedAndFiltered) {
  const TSyntaxDatabase database = DatabaseFromXml(R"(<objects>
    <list name="Style" flag="add"/><list name="zone"/><list name="BoxStyle" flag="add"/>
    <list name="Alarme"/><type name="Type"/><list name="ZONE"/><list flag="add"/>
    <list name="Presque" flag="Add"/><list name="Alarme" flag="add"/></objects>)");
  const struct {
    const char* Filter;
    const char* Categories;
    int Selected;
  } cases[] = {
      {"", " Alarme Presque zone+Alarme+BoxStyle+Style", -1},
      {"BoxStyle", "+BoxStyle+Style", 0},
      {"Style", "+Style", 0},
      {"boxstyle", "", -1},
      {"MonStyle", "+Style", -1},
      {"Alarme", " Alarme+Alarme", 1},  // the last of two
      {"Alarme+zone", " Alarme zone+Alarme", -1},
      {"Type", "", -1},
  };
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
      <listconst name="A">aide A</listconst><autre name="caché"/><comment/></list>
    <list name="l"><listconst name="non"/></list><type name="L"/>
    <list name="L" type="date"><comment>deux</comment><listconst name="B">x=y</listconst>
      <listconst name="C"/><listconst name="D=1">perdu</listconst></list>)");
  EXPECT_TRUE(choice.Additive());
  EXPECT_EQ(choice.Type(), "date");
  EXPECT_EQ(choice.Help(), (std::vector<std::string>{"un", "", "deux"}));
  const std::pair<const char*, const char*> constants[] = {
      {"A", "aide A"}, {"B", "x=y"}, {"C", ""}, {"D=1", ""}};
  ASSERT_EQ(choice.Count(), 4);
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(choice.Name(i), constants[i].first);
    EXPECT_EQ(choice.ConstantHelp(i), constants[i].second);
  }
}

TEST(ConstantChoice, FillForgetsWhatWasThere) {
  TConstantChoice choice = Abc(true);
  choice.Parse("a");
  const TSyntaxDatabase database = DatabaseFromXml(
      "<objects><list><listconst name=\"x\"/></list>"
      "<list name=\"M\"><listconst name=\"y\"/></list>"
      "</objects>");
  choice.Fill(database, "M");
  EXPECT_FALSE(choice.Additive());
  EXPECT_EQ(Marks(choice), ".");
  EXPECT_EQ(choice.Value(), "");
  choice.Fill(database, "");
  EXPECT_EQ(choice.Count(), 0);
  EXPECT_TRUE(choice.Parse("x").empty());
}

TEST(ConstantChoice, ParsesTheValue) {
  const struct {
    const char* Value;
    const char* Marks;
  } cases[] = {
      {"", "..."},        {"a", "x.."},        {" A ", "x.."},         {"A + b", "xx."},
      {"c+a", "x.x"},     {"a+", "x.."},       {"+ +a++\tc", "x.x"},   {"a+a", "x.."},
      {"a b", "..."},     {"a,b", "..."},      {"inconnu + B", ".x."}, {"a+b+c", "xxx"},
      {"\"a\"+b", ".x."}, {"MsgBox a", "..."},
  };
  for (const bool additive : {false, true})
    for (const auto& c : cases) {
      TConstantChoice choice = Abc(additive);
      choice.Parse("b");
      choice.Parse(c.Value);
      EXPECT_EQ(Marks(choice), c.Marks) << c.Value;
    }
  // Constants of the same name are ticked together.
  TConstantChoice twins = Choice(
      "<list name=\"L\"><listconst name=\"Tue\"/>"
      "<listconst name=\"x\"/><listconst name=\"tUE\"/></list>");
  EXPECT_EQ(twins.Parse("tue"), (std::vector<int>{0, 2}));
}

TEST(ConstantChoice, BuildsTheValueFromTicks) {
  struct TTick {
    int Constant;
    bool Ticked;
    std::vector<int> Changed;
    const char* Value;
  };
  const struct {
    bool Additive;
    const char* Start;
    std::vector<TTick> Ticks;
  } cases[] = {
      {true, "A + b", {{2, true, {2}, "a+B+c"}, {0, false, {0}, "B+c"}, {2, true, {}, "B+c"}}},
      {true, "autre+c", {{0, true, {0}, "a+c"}, {1, false, {}, "a+c"}}},
      {false, "", {{0, true, {0}, "a"}, {2, true, {0, 2}, "c"}, {2, false, {2}, ""}}},
      {false, "a+c", {{1, true, {0, 1, 2}, "B"}, {1, true, {}, "B"}}},
      {false, "a+c", {{0, false, {0, 2}, ""}}},
  };
  for (const auto& c : cases) {
    TConstantChoice choice = Abc(c.Additive);
    choice.Parse(c.Start);
    for (const TTick& tick : c.Ticks) {
      EXPECT_EQ(choice.Tick(tick.Constant, tick.Ticked), tick.Changed) << c.Start;
      EXPECT_EQ(choice.Value(), tick.Value) << c.Start;
    }
  }
}

TEST(ConstantChoice, RandomTicksAndValuesAgree) {
  std::string list = "<list name=\"L\" flag=\"add\">";
  for (int i = 0; i < 60; ++i) list += "<listconst name=\"k" + std::to_string(i) + "\"/>";
  TConstantChoice choice = Choice(list + "</list>");
  std::mt19937 random(7);
  std::string shown(60, '.');
  for (int turn = 0; turn < 2000; ++turn) {
    std::vector<int> changed;
    if (random() % 4) {
      changed = choice.Tick(static_cast<int>(random() % 60), random() % 2);
    } else {
      std::string value;
      for (int i = 0; i < 3; ++i) value += "K" + std::to_string(random() % 80) + " +";
      changed = choice.Parse(value);
    }
    // A dialog that redraws only what changed shows what is so, and the value says the same.
    for (const int i : changed) {
      char& mark = shown[static_cast<std::size_t>(i)];
      mark = mark == 'x' ? '.' : 'x';
    }
    ASSERT_EQ(Marks(choice), shown);
    ASSERT_TRUE(choice.Parse(choice.Value()).empty());
  }
}

}  // namespace
