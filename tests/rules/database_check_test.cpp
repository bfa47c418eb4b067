#include "zefdb/rules/database_check.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "database_from_xml.h"

namespace {

using enum TDatabaseFaultKind;

/// Hands the nodes on with their lines, which a name's place in the document gives.
struct TLineSink {
  std::string_view Xml;
  TDatabaseCheck& Check;

  void StartElement(std::string_view name, std::span<const TDatabaseCheck::TAttribute> attributes) {
    const auto before = Xml.substr(0, static_cast<std::size_t>(name.data() - Xml.data()));
    Check.StartElement(1 + static_cast<int>(std::ranges::count(before, '\n')), name, attributes);
  }
  void EndElement() { Check.EndElement(); }
  void Characters(std::string_view text) { Check.Text(text); }
  void CDataSection(std::string_view text) { Check.Text(text); }
  void OtherNode() {}
};

TDatabaseCheck Checked(std::string_view xml) {
  TDatabaseCheck check;
  TLineSink sink{xml, check};
  FeedXml(xml, sink);
  return check;
}

// Each document begins with a type T, an object O and a list L that are in order, on line 1. A "?"
// stands for help.
TEST(DatabaseCheck, FindsWhatAnAuthorGetsWrong) {
  const std::string good =
      R"(<objects><type name="T">x</type><object name="O">?<data name="D" type="t">?</data>)"
      R"(</object><list name="L"><listconst name="c"/></list>)";
  const struct {
    const char* Xml;
    std::vector<TDatabaseFault> Faults;
  } rows[] = {
      {"", {}},
      {R"(<objects><object name="P"/></objects>)",
       {{2, UnknownElement, "objects", "objects"}, {2, UnknownElement, "object", "objects"}}},
      {R"(<type name="U"><comment/>x</type>)", {{2, UnknownElement, "comment", "type"}}},
      {R"(<const name="c" typ="T"/>)", {{2, UnknownAttribute, "typ", "const"}}},
      {R"(<object/><list flag="add"/><method name="F">?<param name="p" list="F"/></method>)",
       {{2, NoName, "object"}, {2, NoName, "list"}, {2, UnknownList, "F", "p"}}},
      {R"(<const name="c" type="X"/><const name="X"/>)", {{2, UnknownType, "X", "c"}}},
      {"<method name=\"F\">?\n<return type=\"X\"/></method>", {{3, UnknownType, "X", "F"}}},
      // A list is offered for every parameter whose list holds its name.
      {R"(<method name="F">?<param name="p" list="XL"/><oparam name="q" list="l"/></method>)",
       {{2, UnknownList, "l", "q"}}},
      {R"(<method name="F">?<oparam name="r" type="bool"/></method>)",
       {{2, UnknownType, "bool", "r"}, {2, UnknownList, "bool", "r"}}},
      {"<object name=\"o\">?<data name=\"D\">?</data>\n<method name=\"d\">?</method></object>",
       {{2, Duplicate, "o", {}, 1}, {3, Duplicate, "d", {}, 2}}},
      {R"(<list name="L"><listconst name="c"/></list>)", {{2, Duplicate, "c", {}, 1}}},
      {R"(<method name="F">?<param name="p"/><oparam name="P"/></method>)",
       {{2, Duplicate, "P", {}, 2}}},
      {"<const name=\"U\" type=\"T\"/>\n<type name=\"U\">x</type>", {{3, Hidden, "U", {}, 2}}},
      {R"(<method name="T">?</method><const name="T" type="O"/><type name="D">x</type>)", {}},
      {R"(<type name="bool">x</type><method name="F" type="bool">?</method>)", {}},
      {"<type name=\"l'U\"> </type>\n<method name=\"F\"><comment></comment></method>",
       {{2, NoHelp, "l'U"}, {3, NoHelp, "F"}}},
      {"<object name=\"E\">?</object>\n<const name=\"c\" type=\"e\"/>"
       "<method name=\"F\">?<param name=\"p\" type=\"E\"/><oparam name=\"q\" type=\"E\"/></method>",
       {{3, DeadEnd, "c", "e"}}},
      {"<object name=\"P\">?\n<method name=\"Authenticate\">?</method></object>\n"
       "<method name=\"a-b\">?</method><const name=\"c()\" type=\"T\"/>",
       {{3, Unreachable, "Authenticate"}, {4, Unreachable, "a-b"}, {4, Unreachable, "c()"}}},
      {R"(<method name="F">?<oparam name="p" def="-1"/><oparam name="q" def="-1"/></method>)",
       {{2, CuttingValue, "-1"}}},
      {R"(<method name="F">?<oparam name="p" def="it's"/><oparam name="q" def="1, 2"/></method>)",
       {{2, CuttingValue, "it's"}, {2, CuttingValue, "1, 2"}}},
      {R"(<method name="F"><param name="p"/>?<param name="q" def="-1"/></method>)", {}},
      {R"(<list name="M"><listconst name="-1"/><listconst name="(a"/></list>)",
       {{2, CuttingValue, "(a"}}},
  };
  for (const auto& row : rows) {
    std::string xml = good + "\n" + row.Xml + "</objects>";
    for (auto at = xml.find('?'); at != std::string::npos; at = xml.find('?'))
      xml.replace(at, 1, "<comment>x</comment>");
    const auto found = Checked(xml).Faults();
    EXPECT_EQ(found, row.Faults) << row.Xml;
    for (const TDatabaseFault& fault : found)
      EXPECT_NE(Describe(fault).find(fault.Name), std::string::npos) << row.Xml;
  }
  EXPECT_EQ(Checked("\n<objets/>").Faults(), (std::vector<TDatabaseFault>{{2, NoRoot, "objets"}}));
  EXPECT_NE(Describe({1, NoRoot}), "");
  EXPECT_EQ(TDatabaseCheck().Faults(), (std::vector<TDatabaseFault>{{1, NoRoot}}));
}

TEST(DatabaseCheck, CountsAndFinds) {
  const TDatabaseCheck check = Checked(
      "<objects><object name=\"O\">\n<data name=\"Nom\"/></object><type name=\"nom\"/></objects>");
  using TCounts = std::vector<std::pair<std::string, int>>;
  EXPECT_EQ(check.Counts(), (TCounts{{"data", 1}, {"object", 1}, {"objects", 1}, {"type", 1}}));
  using TPlaces = std::vector<std::pair<int, std::string>>;
  EXPECT_EQ(check.Find("NOM"), (TPlaces{{2, "object O / data Nom"}, {2, "type nom"}}));
  EXPECT_TRUE(check.Find("").empty());
}

}  // namespace
