#include "syntax/rules/syntax_database.h"

#include <gtest/gtest.h>

#include "database_from_xml.h"
#include "syntax/rules/syntax_names.h"
#include "text/xml_prolog.h"

namespace {

constexpr std::string_view kSample = R"(<objects>
  <object name="Compte" ignored="x">
    <comment>Un compte</comment><comment>encore</comment>
    <method name="Add" type="long">
      <param name="a" type="bool">requis</param>
      <oparam name="b" type="date" list="Jours" def="1">facultatif</oparam>
      <return type="Ecriture">ce qui est fait</return><return type="autre"/>
      <comment>Ajoute</comment><comment>non</comment>
      <param name="c"><param name="trop profond">x</param></param>
    </method>
    <data name="Solde" type="currency"><comment>Le solde</comment></data>
    <event name="Ferme"><param name="p"/></event>
    <method type="sans nom"><param name="q"/></method>
  </object>
  <type name="long">Un entier</type>
  <const name="Budget" type="Compte">texte</const>
  <const name="Nu" type="Compte"/>
  <method name="MsgBox" type="long"><comment>Affiche</comment>
    <param name="prompt"><comment>pas ici</comment></param>
    <return type="result">le bouton</return></method>
  <list name="Jours" flag="add" type="date">
    <comment>un</comment><comment/><comment name="Dit">trois</comment>
    <listconst name="Lundi">le premier</listconst><autre name="Mardi">x</autre><listconst/>
  </list>
  <object name="MsgBox"/><data name="MsgBox"/>
</objects>)";

TEST(SyntaxDatabase, CopiesWhatTheDocumentSays) {
  const TSyntaxDatabase database = DatabaseFromXml(kSample);
  ASSERT_EQ(database.Elements.size(), 8u);

  const TSyntaxElement* account = database.FindElement("Compte");
  ASSERT_TRUE(account);
  EXPECT_EQ(account->Comment, "Un compte");
  EXPECT_FALSE(account->Text);
  ASSERT_EQ(account->Members.size(), 3u);
  const TSyntaxMember* add = TSyntaxDatabase::FindMember(*account, "Add");
  ASSERT_TRUE(add);
  EXPECT_EQ(add->Comment, "Ajoute");
  EXPECT_EQ(add->ValueType(), "Ecriture");
  EXPECT_EQ(add->Return->Help, "ce qui est fait");
  ASSERT_EQ(add->Params.size(), 3u);
  EXPECT_TRUE(add->Params[0].Required);
  EXPECT_EQ(add->Params[0].Help, "requis");
  EXPECT_FALSE(add->Params[1].Required);
  EXPECT_EQ(add->Params[1].Type + add->Params[1].List + add->Params[1].Default, "dateJours1");
  EXPECT_EQ(add->Params[2].Name + add->Params[2].Help, "c");
  EXPECT_EQ(TSyntaxDatabase::FindMember(*account, "Solde")->ValueType(), "currency");
  for (const char* name : {"add", "Ferme", ""})
    EXPECT_FALSE(TSyntaxDatabase::FindMember(*account, name)) << name;

  const TSyntaxElement* days = database.FindElement("Jours");
  ASSERT_TRUE(days);
  EXPECT_EQ(days->Flag + days->Type, "adddate");
  EXPECT_EQ(days->Comments, (std::vector<std::string>{"un", "", "trois"}));
  ASSERT_EQ(days->Constants.size(), 3u);
  EXPECT_FALSE(days->Constants[0].Listed);
  EXPECT_TRUE(days->Constants[1].Listed);
  EXPECT_EQ(days->Constants[1].Help, "le premier");
  EXPECT_FALSE(days->Constants[2].Listed);
}

TEST(SyntaxDatabase, LookUpsTakeTheFirstExactName) {
  TSyntaxDatabase database = DatabaseFromXml(kSample);
  EXPECT_EQ(database.FindElement("MsgBox"), &database.Elements[4]);
  EXPECT_EQ(database.FindFunction("MsgBox"), &*database.Elements[4].Function);
  EXPECT_EQ(database.FindFunction("MsgBox")->ValueType(), "result");
  EXPECT_EQ(database.FindFunction("MsgBox")->Comment, "Affiche");
  EXPECT_EQ(database.FindFunction("MsgBox")->Params.at(0).Help, "");
  for (const char* name : {"msgbox", "MsgBo", "MsgBoxx", ""})
    EXPECT_FALSE(database.FindElement(name)) << name;
  EXPECT_FALSE(database.FindFunction("Compte"));

  // Elements that came after the names were ordered are found too.
  database.Elements.emplace_back().Name = "Neuf";
  EXPECT_EQ(database.FindElement("Neuf"), &database.Elements.back());
  EXPECT_EQ(database.FindElement("MsgBox"), &database.Elements[4]);
}

TEST(SyntaxDatabase, TextIsTheOnlyChild) {
  const struct {
    const char* Content;
    const char* Text;  ///< null when the content is not text
  } cases[] = {
      {"a b", "a b"},           {" \n<![CDATA[x]]>\t", "x"}, {"<![CDATA[]]>", ""},
      {" \r\n\t", nullptr},     {"a<![CDATA[b]]>", nullptr}, {"<b/>a", nullptr},
      {"<!-- c -->a", nullptr}, {"<b>a</b>", nullptr},
  };
  for (const auto& c : cases) {
    const std::string content = c.Content;
    const TSyntaxDatabase database =
        DatabaseFromXml("<objects><const name=\"c\">" + content +
                        "</const><list name=\"l\"><listconst name=\"k\">" + content +
                        "</listconst></list></objects>");
    const auto& text = database.Elements.at(0).Text;
    EXPECT_EQ(text.has_value(), c.Text != nullptr) << content;
    EXPECT_EQ(text.value_or(""), c.Text ? c.Text : "") << content;
    EXPECT_EQ(database.Elements.at(1).Constants.at(0).Help, c.Text ? c.Text : "") << content;
  }
}

TEST(SyntaxDatabase, OnlyTheRootOfThatNameCounts) {
  for (const char* xml : {"", "text", "<Objects><type name=\"a\"/></Objects>",
                          "<x><objects><type name=\"a\"/></objects></x>", "<objects/>",
                          "<objects>text<!-- c --></objects>", "</a></b>"})
    EXPECT_TRUE(DatabaseFromXml(xml).Empty()) << xml;
}

TEST(SyntaxDatabase, DepthIsNoRisk) {
  std::string xml = "<objects>";
  for (int i = 0; i < 200'000; ++i) xml += "<object name=\"a\">";
  for (int i = 0; i < 200'000; ++i) xml += "</object>";
  const TSyntaxDatabase database = DatabaseFromXml(xml + "<type name=\"after\"/></objects>");
  ASSERT_EQ(database.Elements.size(), 2u);
  EXPECT_TRUE(database.FindElement("after"));
}

TEST(SyntaxNames, TellWordsOfTheDatabase) {
  TSyntaxNames names;
  const TSyntaxDatabase database = DatabaseFromXml(kSample);
  // Built twice: what was there before does not stay.
  names.BuildWords(DatabaseFromXml("<objects><method name=\"Vieux\"/></objects>"));
  names.BuildWords(database);
  const struct {
    const char* Word;
    bool Method, Function, Constant;
  } cases[] = {
      {".Add", true, false, false},   {".aDD", true, false, false},
      {"Add", false, false, false},   {".Ferme", true, false, false},
      {".Solde", true, false, false}, {".", false, false, false},
      {"MSGBOX", true, true, false},  {"msgbox", true, true, false},
      {"MsgBo", false, false, false}, {"budget", true, false, false},
      {"Nu", false, false, false},    {"Compte", false, false, false},
      {"LUNDI", false, false, true},  {"Mardi", false, false, true},
      {"dit", false, false, true},    {"Vieux", false, false, false},
      {"", false, false, false},      {".comment", false, false, false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(names.IsMethod(c.Word), c.Method) << c.Word;
    EXPECT_EQ(names.IsFunction(c.Word), c.Function) << c.Word;
    EXPECT_EQ(names.IsConstant(c.Word), c.Constant) << c.Word;
  }
}

TEST(SyntaxNames, TypesAndPredefinedObjects) {
  TSyntaxNames names;
  const TSyntaxDatabase database = DatabaseFromXml(
      R"(<objects><type name="b"/><object name="A"/><type name="B"/><object/><list name="l"/>
      <const name="x" type="A"/><const name="x" type="A"/><const name="y"/><const/></objects>)");
  for (int turn = 0; turn < 2; ++turn) {
    names.BuildTypes(database);
    EXPECT_EQ(names.Types.CommaText(), "A,b");
    EXPECT_EQ(names.Predefined.Value("X"), "A");
    EXPECT_EQ(names.Predefined.Count(), 3);
  }
}

TEST(NameSet, HoldsManyNamesWhateverTheirCase) {
  TNameSet set;
  EXPECT_FALSE(set.Contains("a"));
  for (const char* name : {"NOM\xC9", "nom\xE9"})
    for (int i = 0; i < 5000; ++i) set.Add(name + std::to_string(i));
  EXPECT_EQ(set.Count(), 5000u);
  for (int i = 0; i < 5000; ++i) {
    EXPECT_TRUE(set.Contains("Nom\xE9" + std::to_string(i)));
    EXPECT_FALSE(set.Contains("Nom" + std::to_string(i)));
  }
}

TEST(XmlProlog, TellsDocumentTypes) {
  using namespace std::string_view_literals;
  const struct {
    std::string_view Bytes;
    bool May;
  } cases[] = {
      {"", false},
      {"<objects/>", false},
      {"\xEF\xBB\xBF<?xml version=\"1.0\"?>\r\n<!-- <!DOCTYPE x> --><?a ?>\t<objects>", false},
      {"<!DOCTYPE o>", true},
      {"<?xml version=\"1.0\"?> <!-- - -- -->\n<!DOCTYPE o [", true},
      {"\xFF\xFE<\0?\0x\0?\0>\0<\0!\0D\0O\0"sv, true},
      {"\xFE\xFF\0<\0?\0x\0?\0>\0<\0o\0>"sv, false},
      {"\0<\0!\0D"sv, true},
      {"<?xml encoding=\"UTF-7\"?>+ADwAIQ-DOCTYPE o>", true},
      {"\x4C\x5A\xC4\xD6", true},
      {"<objects><![CDATA[<!DOCTYPE]]></objects>", false},
      {"<!-- no end", false},
  };
  for (const auto& c : cases) EXPECT_EQ(MayHaveDocumentType(c.Bytes), c.May) << c.Bytes;
}

}  // namespace
