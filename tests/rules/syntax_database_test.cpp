#include "syntax/rules/syntax_database.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "database_from_xml.h"
#include "syntax/rules/syntax_names.h"
#include "text/xml_text.h"

namespace {

constexpr std::string_view kSample = R"(<objects>
  <object name="Compte" ignored="x">
    <comment>Un compte</comment><comment>encore</comment>
    <method name="Add" type="long">
      <param name="a" type="bool">requis</param>
      <oparam name="b" type="date" list="Jours" def="1">facultatif</oparam>
      <return type="Ecriture">ce qui est fait</return><return type="autre"/>
      <comment>Ajoute</comment><comment>non</comment>
      <param name="c"><x>y<![CDATA[z]]></x><param name="trop profond">x</param></param>
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
  <object name="MsgBox"/><data name="MsgBox"/><autre name="Quoi"><method name="m"/></autre>
</objects>)";

std::string Shown(const TSyntaxMember& member) {
  std::string text = member.Name + ":" + member.ValueType() + "(";
  for (const TSyntaxParam& param : member.Params)
    text += param.Name + (param.Required ? ":" : "?:") + param.Type + "," + param.List + "," +
            param.Default + "," + param.Help + ";";
  return text + ")" + member.Comment + "|" + (member.Return ? member.Return->Help : "no return");
}

TEST(SyntaxDatabase, CopiesWhatTheDocumentSays) {
  const TSyntaxDatabase database = DatabaseFromXml(kSample);
  ASSERT_EQ(database.Elements().size(), 9u);
  const TSyntaxElement& account = *database.FindElement("Compte");
  EXPECT_EQ(account.Comment, "Un compte");
  EXPECT_FALSE(account.Text);
  EXPECT_EQ(account.Members.size(), 3u);
  EXPECT_EQ(
      Shown(*TSyntaxDatabase::FindMember(account, "Add")),
      "Add:Ecriture(a:bool,,,requis;b?:date,Jours,1,facultatif;c:,,,;)Ajoute|ce qui est fait");
  EXPECT_EQ(Shown(*TSyntaxDatabase::FindMember(account, "Solde")),
            "Solde:currency()Le solde|no return");
  for (const char* name : {"add", "Ferme", ""})
    EXPECT_FALSE(TSyntaxDatabase::FindMember(account, name)) << name;
  EXPECT_TRUE(database.FindElement("Quoi")->Kind == TSyntaxKind::Other);
  EXPECT_TRUE(database.FindElement("Quoi")->Members.empty());
  const TSyntaxElement& days = *database.FindElement("Jours");
  EXPECT_EQ(days.Flag + days.Type, "adddate");
  EXPECT_EQ(days.Comments, (std::vector<std::string>{"un", "", "trois"}));
  std::string constants;
  for (const auto& constant : days.Constants)
    constants += (constant.Listed ? "+" : "-") + constant.Name + constant.Help + ";";
  EXPECT_EQ(constants, "-Dit;+Lundile premier;-Mardi;");
}

TEST(SyntaxDatabase, LookUpsTakeTheFirstExactName) {
  const TSyntaxDatabase database = DatabaseFromXml(kSample);
  EXPECT_EQ(database.FindElement("MsgBox"), &database.Elements()[4]);
  EXPECT_EQ(database.FindFunction("MsgBox"), &*database.Elements()[4].Function);
  EXPECT_EQ(database.FindFunction("MsgBox")->ValueType(), "result");
  EXPECT_EQ(database.FindFunction("MsgBox")->Comment, "Affiche");
  EXPECT_EQ(database.FindFunction("MsgBox")->Params.at(0).Help, "");
  for (const char* name : {"msgbox", "MsgBo", "MsgBoxx", ""})
    EXPECT_FALSE(database.FindElement(name)) << name;
  EXPECT_FALSE(database.FindFunction("Compte"));
}

TEST(SyntaxDatabase, TextIsTheOnlyChild) {
  const struct {
    const char* Content;
    const char* Text;  ///< null when the content is not text
  } cases[] = {
      {"a b", "a b"},
      {" \n<![CDATA[x]]>\t", "x"},
      {"<![CDATA[]]>", ""},
      {" \r\n\t", nullptr},
      {"a<![CDATA[b]]>", nullptr},
      {"<b/>a", nullptr},
      {"<!-- c -->a", nullptr},
      {"<b>a</b>", nullptr},
      // What the file indents is not indented in the help; what a text indents more, is.
      {"\n    a\n      b\n\n    c\n  ", "a\r\n  b\r\n\r\nc\r\n"},
      {"  a\n\t\tb\n\t c\n", "a\r\n\tb\r\n c\r\n"},
      {"\n\n \ta", "a"},
  };
  for (const auto& c : cases) {
    const std::string content = c.Content;
    const TSyntaxDatabase database =
        DatabaseFromXml("<objects><const name=\"c\">" + content +
                        "</const><list name=\"l\"><listconst name=\"k\">" + content +
                        "</listconst></list></objects>");
    const auto& text = database.Elements().at(0).Text;
    EXPECT_EQ(text.has_value(), c.Text != nullptr) << content;
    EXPECT_EQ(text.value_or(""), c.Text ? c.Text : "") << content;
    EXPECT_EQ(database.Elements().at(1).Constants.at(0).Help, c.Text ? c.Text : "") << content;
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
  ASSERT_EQ(database.Elements().size(), 2u);
  EXPECT_TRUE(database.FindElement("after"));
}

TEST(SyntaxNames, TellWordsOfTheDatabase) {
  TSyntaxNames names;
  const TSyntaxDatabase database = DatabaseFromXml(kSample);
  // Built twice: what was there before does not stay.
  names.BuildWords(
      DatabaseFromXml("<objects><method name=\"Vieux\"/><const name=\"Vieux\">x</const>"
                      "<list name=\"l\"><listconst name=\"Vieux\"/></list></objects>"));
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
  set.Add("n57707");
  EXPECT_FALSE(set.Contains("n294430")) << "a name of the same hash";
  set.Clear();
  EXPECT_FALSE(set.Contains("n57707"));
  for (const char* name : {"NOM\xC9", "nom\xE9"})
    for (int i = 0; i < 5000; ++i) set.Add(name + std::to_string(i));
  EXPECT_EQ(set.Count(), 5000u);
  for (int i = 0; i < 5000; ++i) {
    EXPECT_TRUE(set.Contains("Nom\xE9" + std::to_string(i)));
    EXPECT_FALSE(set.Contains("Nom" + std::to_string(i)));
  }
}

TEST(XmlText, TellsEncodings) {
  using namespace std::string_view_literals;
  const struct {
    std::string_view Bytes;
    unsigned CodePage;
    std::size_t MarkSize = 0;
  } cases[] = {
      {"", 65001},
      {"<a/>", 65001},
      {"\xEF\xBB\xBF<?xml version='1.0' encoding='big5'?>", 65001, 3},
      {"\xFF\xFE<\0"sv, 1200, 2},
      {"\xFE\xFF\0<"sv, 1201, 2},
      {"<\0?\0"sv, 1200},
      {"\0<\0?"sv, 1201},
      {"<?xml version=\"1.0\" encoding=\"Windows-1252\"?>", 1252},
      {"<?xml version = '1.0'\tencoding\n= 'ISO-8859-15' standalone='no'?>", 28605},
      {"<?xml version='1.0' encoding='US-ASCII'?>", 65001},
      {"<?xml version='1.0' encoding='UTF-16'?>", 0},  // these bytes are not
      {"<?xml version='1.0' encoding='nowhere-1'?>", 0},
      {"<?xml version='1.0' encoding='iso-8859-x'?>", 0},
      {"<?xml encoding='big5' version='1.0'?>", 65001},  // as nobody may write it
      {"<?xml version='1.0' encoding='utf-8?>", 65001},
      {" <?xml version='1.0' encoding='big5'?>", 65001},
  };
  for (const auto& c : cases) {
    const TXmlEncoding encoding = XmlEncodingOf(c.Bytes);
    EXPECT_EQ(encoding.CodePage, c.CodePage) << c.Bytes;
    EXPECT_EQ(encoding.MarkSize, c.MarkSize) << c.Bytes;
  }
}

TEST(XmlText, IsMadeReadyForAnyReader) {
  const auto ready = TXmlText::Ready, entities = TXmlText::DefinesEntities,
             broken = TXmlText::Broken;
  const struct {
    std::u16string_view Before;
    TXmlText Outcome;
    std::u16string_view After;  ///< blanks in a row are one here
  } cases[] = {
      {u"<a>\r\n\r\rx\n</a>", ready, u"<a>\n\n\nx\n</a>"},
      {u"<?xml version='1.0' encoding='big5' ?><a/>", ready, u"<?xml version='1.0' ?><a/>"},
      {u"<!DOCTYPE o><o/>", ready, u" <o/>"},
      {u"<!--<!DOCTYPE--><?p <!?>\n<!DOCTYPE o SYSTEM \"a>[<!ENTITY\"><o/>", ready,
       u"<!--<!DOCTYPE--><?p <!?>\n <o/>"},
      {u"<!DOCTYPE o PUBLIC 'p' 'http://x/y' [ ] ><o/>", ready, u" <o/>"},
      {u"<!DOCTYPE o [<!--<!ENTITY--><?p ]>?><!ELEMENT o (#PCDATA)><!ATTLIST o a CDATA "
       u"'%]>'>]><o/>",
       ready, u" <o/>"},
      {u"<!DOCTYPE o [<!ENTITY a 'b'>]><o/>", entities, {}},
      {u"<!DOCTYPE o SYSTEM 'x' [ %p; ]><o/>", entities, {}},
      {u"<!DOCTYPE o [<!ATTLIST o %p;>]><o/>", entities, {}},
      {u"<!DOCTYPE o [<!OTHER>]><o/>", broken, {}},
      {u"<!DOCTYPE o [ <o/>", broken, {}},
      {u"<!DOCTYPE o [] x><o/>", broken, {}},
      {u"<!DOCTYPE o <o/>", broken, {}},
      {u"<!DOCTYPEo><o/>", broken, {}},
      {u"<!DOCTYPE o", broken, {}},
      {u"<!DOCTYPE o><!DOCTYPE o><o/>", broken, {}},
      {u"MZ", broken, {}},
      {u"<!-- no end", broken, {}},
      {u"<a>\x1</a>", broken, {}},
      {u"<a>\xFFFE</a>", broken, {}},
      {u"<a>\xDC00</a>", broken, {}},
      {u"<a>\xD83D</a>", broken, {}},
      {u"\xD83D", broken, {}},
      {u"<a>\xD83D\xDE00</a>", ready, u"<a>\xD83D\xDE00</a>"},
  };
  for (const auto& c : cases) {
    std::u16string text(c.Before);
    SCOPED_TRACE(std::string(text.begin(), text.end()));
    ASSERT_EQ(PrepareXmlText(text), c.Outcome);
    if (c.Outcome != ready) continue;
    const auto both = [](char16_t a, char16_t b) { return a == u' ' && b == u' '; };
    text.erase(std::unique(text.begin(), text.end(), both), text.end());
    EXPECT_TRUE(text == c.After);
  }
}

}  // namespace
