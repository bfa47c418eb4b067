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
      <listconst name="C"/><listconst name="b">a</listconst></list>)");
  EXPECT_TRUE(choice.Additive());
  EXPECT_EQ(choice.Type(), "date");
  EXPECT_EQ(choice.Help(), (std::vector<std::string>{"un", "", "deux"}));
  const std::pair<const char*, const char*> constants[] = {
      {"A", "aide A"}, {"B", "a"}, {"C", ""}, {"b", "a"}};
  ASSERT_EQ(choice.Count(), 4);
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(choice.Name(i), constants[i].first);
    EXPECT_EQ(choice.ConstantHelp(i), constants[i].second);
  }
}

TEST(ConstantChoice, ParsesTheValue) {
  const struct {
    const char* Value;
    const char* Marks;
  } cases[] = {
      {"A + b", "xx."}, {"+ +a++\tc", "x.x"}, {"a+a", "x.."}, {"a,b", "..."}, {"\"a\"+b", ".x."},
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

class RandomConstantChoice : public testing::TestWithParam<bool> {};

TEST_P(RandomConstantChoice, TicksAndValuesAgree) {
  const bool additive = GetParam();
  std::string list = additive ? "<list name=\"L\" flag=\"add\">" : "<list name=\"L\">";
  for (int i = 0; i < 60; ++i) list += "<listconst name=\"k" + std::to_string(i) + "\"/>";
  TConstantChoice choice = Choice(list + "</list>");
  std::mt19937 random(7);
  std::string shown(60, '.');
  for (int turn = 0; turn < 2000; ++turn) {
    std::vector<int> changed;
    if (random() % 4) {
      const int constant = static_cast<int>(random() % 60);
      const bool ticked = random() % 2;
      changed = choice.Tick(constant, ticked);
      ASSERT_EQ(choice.Ticked(constant), ticked);
      if (!additive && ticked) {
        ASSERT_EQ(choice.Value(), choice.Name(constant));
      }
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

INSTANTIATE_TEST_SUITE_P(Kinds, RandomConstantChoice, testing::Bool());

}  // namespace
