#include "syntax/rules/syntax_database.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "database_from_xml.h"
#include "syntax/rules/syntax_names.h"
#include "text/xml_text.h"

namespace {

constexpr std::string_view kSample = R"(<objects>
  <object name="Compte" ignored="x">
    <autre>non</autre><comment>Un compte</comment><comment>encore</comment>
    <method name="Add" type="long">
      <param name="a" type="bool">requis</param>
      <oparam name="b" type="date" list="Jours" def="1">facultatif</oparam>
      <return type="Ecriture">ce qui est fait</return><return type="autre"/>
      <comment>Ajoute</comment><comment>non</comment>
      <param name="c"><x>y<![CDATA[z]]></x><param name="trop profond">x</param></param>
    </method><method type="sans nom"><param name="q"/></method>
    <data name="Solde" type="currency"><comment>Le solde</comment></data>
    <type name="Ferme"><param name="p"/></type>
  </object>
  <type name="long">Un entier</type>
  <const name="Budget" type="Compte">texte</const>
  <const name="Nu" type="Compte"/>
  <method name="MsgBox" type="long"><comment>Affiche</comment>
    <param name="prompt"><comment>pas ici</comment></param>
    <return type="result">le bouton</return></method>
  <list name="Jours" flag="add" type="date">
    <comment>un</comment>perdu<comment/><comment name="Dit">trois</comment>
    <listconst name="Lundi">le premier</listconst><autre name="Mardi">x</autre><listconst/>
  </list><method/>
  <object name="MsgBox"/><data name="Jours" type="date"/><autre name="Quoi"><method name="m"/></autre>
</objects>)";

std::string Shown(const TSyntaxMember& member) {
  std::string text = member.Name + ":" + member.ValueType() + "(";
  for (const TSyntaxParam& param : member.Params)
    text += param.Name + (param.Required ? ":" : "?:") + param.Type + "," + param.List + "," +
            param.Default + "," + param.Help + ";";
  return text + ")" + member.Comment + "|" + (member.Return ? member.Return->Help : "no return");
}

TEST(SyntaxDatabase, CopiesWhatTheDocumentSaysAndFindsIt) {
  const TSyntaxDatabase database = DatabaseFromXml(kSample);
  ASSERT_EQ(database.Elements().size(), 10u);
  const TSyntaxElement& account = *database.FindElement("Compte");
  EXPECT_EQ(account.Comment, "Un compte");
  EXPECT_FALSE(account.Text);
  EXPECT_EQ(account.Members.size(), 3u);
  const auto member = [&](const char* name) { return TSyntaxDatabase::FindMember(account, name); };
  EXPECT_EQ(
      Shown(*member("Add")),
      "Add:Ecriture(a:bool,,,requis;b?:date,Jours,1,facultatif;c:,,,;)Ajoute|ce qui est fait");
  EXPECT_EQ(Shown(*member("Solde")), "Solde:currency()Le solde|no return");
  for (const char* name : {"add", "Ferme", ""}) EXPECT_FALSE(member(name)) << name;
  const TSyntaxElement& other = *database.FindElement("Quoi");
  EXPECT_TRUE(other.Kind == TSyntaxKind::Other && other.Members.empty() && other.Constants.empty());
  const TSyntaxElement& days = *database.FindElement("Jours");
  EXPECT_EQ(days.Flag + days.Type, "adddate");
  EXPECT_EQ(days.Comments, (std::vector<std::string>{"un", "", "trois"}));
  std::string constants;
  for (const auto& constant : days.Constants)
    constants += (constant.Listed ? "+" : "-") + constant.Name + constant.Help + ";";
  EXPECT_EQ(constants, "-Dit;+Lundile premier;-Mardi;");
  // Looked up is the first of exactly that name.
  EXPECT_EQ(database.FindElement("MsgBox"), &database.Elements()[4]);
  EXPECT_EQ(database.FindFunction("MsgBox"), &*database.Elements()[4].Function);
  EXPECT_EQ(Shown(*database.FindFunction("MsgBox")), "MsgBox:result(prompt:,,,;)Affiche|le bouton");
  for (const char* name : {"msgbox", "MsgBoxx"}) EXPECT_FALSE(database.FindElement(name));
  EXPECT_EQ(Shown(*database.FindFunction("Jours")), "Jours:date()|no return");
  EXPECT_FALSE(database.FindFunction("Compte"));
}

TEST(SyntaxDatabase, TextIsTheOnlyChild) {
  const struct {
    std::string Content;
    std::optional<std::string> Text = std::nullopt;
  } cases[] = {
      {"a b", "a b"},
      {" \n<![CDATA[x]]>\t", "x"},
      {"<![CDATA[]]>", ""},
      {" \r\n\t"},
      {"a<![CDATA[b]]>"},
      {"a<!-- c -->b"},
      {"<b/>a"},
      {"<!-- c -->a"},
      {"<b>a</b>"},
      // What the file indents is not indented in the help; what a text indents more, is.
      {"\n    a\n      b\n\n    c\n  ", "a\r\n  b\r\n\r\nc\r\n"},
      {"  a\n\t\tb\n\t c\n", "a\r\n\tb\r\n c\r\n"},
      {"\n\n \ta", "a"},
  };
  for (const auto& [content, text] : cases) {
    const TSyntaxDatabase database =
        DatabaseFromXml("<objects><const name=\"c\">" + content +
                        "</const><list name=\"l\"><listconst name=\"k\">" + content +
                        "</listconst></list></objects>");
    EXPECT_EQ(database.Elements().at(0).Text, text) << content;
    EXPECT_EQ(database.Elements().at(1).Constants.at(0).Help, text.value_or("")) << content;
  }
}

TEST(SyntaxDatabase, OnlyTheRootOfThatNameCounts) {
  for (const char* xml : {"", "text", "<Objects><type name=\"a\"/></Objects>",
                          "<x><objects><type name=\"a\"/></objects></x>", "<objects/>",
                          "<objects>text<!-- c --></objects>", "<objects/><type name=\"a\"/>"})
    EXPECT_TRUE(DatabaseFromXml(xml).Empty()) << xml;
}

TEST(SyntaxDatabase, DepthIsNoRisk) {
  std::string xml = "</none><objects>";
  for (int i = 0; i < 200'000; ++i) xml += "<object name=\"a\">";
  for (int i = 0; i < 200'000; ++i) xml += "</object>";
  const TSyntaxDatabase database = DatabaseFromXml(xml + "<type name=\"after\"/></objects>");
  EXPECT_TRUE(database.Elements().size() == 2 && database.FindElement("after"));
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
    const char *Word, *Is;  ///< m(ethod), f(unction), c(onstant)
  } cases[] = {{".Add", "m"}, {".aDD", "m"},    {"Add", ""},      {".Ferme", "m"}, {".Solde", "m"},
               {".", ""},     {"MSGBOX", "mf"}, {"msgbox", "mf"}, {"MsgBo", ""},   {"budget", "m"},
               {"Nu", ""},    {"Compte", ""},   {"LUNDI", "c"},   {"Mardi", "c"},  {"dit", "c"},
               {"Vieux", ""}, {"", ""},         {".comment", ""}};
  for (const auto& [word, is] : cases) {
    std::string shown = names.IsMethod(word) ? "m" : "";
    shown.append(names.IsFunction(word) ? "f" : "").append(names.IsConstant(word) ? "c" : "");
    EXPECT_EQ(shown, is) << word;
  }
}

TEST(SyntaxNames, TypesAndPredefinedObjects) {
  TSyntaxNames names;
  const TSyntaxDatabase database = DatabaseFromXml(
      R"(<objects><type name="b"/><object name="A"/><type name="B"/><object/><list name="l"/>
      <const name="x" type="A"/><const name="x" type="A"/><const name="y"/><const/></objects>)");
  names.BuildTypes(DatabaseFromXml("<objects><type name=\"Vieux\"/><const name=\"v\"/></objects>"));
  names.BuildTypes(database);
  EXPECT_EQ(names.Types.CommaText(), "A,b");
  EXPECT_EQ(names.Predefined.CommaText(), "x=A,x=A,y=");
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
      {"<?xml version='1.0' encoding='iso-8859-0'?>", 0},
      {"<?xml version='1.0' encoding='IBM850'?>", 850},
      {"<?xml encoding='big5' version='1.0'?>", 65001},  // as nobody may write it
      {"<?xml version='1.0' encoding='utf-8?>", 65001},
      {" <?xml version='1.0' encoding='big5'?>", 65001},
  };
  for (const auto& [bytes, codePage, markSize] : cases) {
    EXPECT_EQ(XmlEncodingOf(bytes).CodePage, codePage) << bytes;
    EXPECT_EQ(XmlEncodingOf(bytes).MarkSize, markSize) << bytes;
  }
}

TEST(XmlText, IsMadeReadyForAnyReader) {
  const auto outcome = [](std::u16string text) { return PrepareXmlText(text); };
  const std::pair<const char16_t*, const char16_t*> ready[] = {
      {u"<a>\r\n\r\rx\r\n</a>\r", u"<a>\n\n\nx\n</a>\n"},
      {u"<a>\xD800\xDC00\xDBFF\xDFFF\xD7FF\xE000\xFFFD\t</a>",
       u"<a>\xD800\xDC00\xDBFF\xDFFF\xD7FF\xE000\xFFFD\t</a>"},
      {u"<?xml version='1.0' encoding='big5' ?><a/>", u"<?xml version='1.0' ?><a/>"},
      {u"<!DOCTYPE o><o/>", u" <o/>"},
      {u"<!--<!DOCTYPE--><?p <!?>\n<!DOCTYPE o SYSTEM \"a>[<!ENTITY\"><o/>",
       u"<!--<!DOCTYPE--><?p <!?>\n <o/>"},
      {u"<!DOCTYPE o PUBLIC 'p' 'http://x/y' [ ] ><o/>", u" <o/>"},
      {u"<!DOCTYPE o [<!--<!ENTITY--><?p ]>?><!NOTATION n SYSTEM 'x'><!ELEMENT o "
       u"(#PCDATA)><!ATTLIST o a CDATA "
       u"'%]>'>]><o/>",
       u" <o/>"},
  };
  for (const auto& [before, after] : ready) {
    std::u16string text(before);
    ASSERT_EQ(PrepareXmlText(text), TXmlText::Ready) << std::string(text.begin(), text.end());
    // Blanks in a row are one here.
    const auto both = [](char16_t a, char16_t b) { return a == u' ' && b == u' '; };
    text.erase(std::unique(text.begin(), text.end(), both), text.end());
    EXPECT_TRUE(text == after) << std::string(text.begin(), text.end());
  }
  for (const char16_t* type :
       {u"o [<!ENTITY a 'b'>]", u"o SYSTEM 'x' [ %p; ]", u"o [<!ATTLIST o %p;>]"})
    EXPECT_EQ(outcome(u"<!DOCTYPE " + std::u16string(type) + u"><o/>"), TXmlText::DefinesEntities);
  for (const std::u16string_view broken :
       {u"<!DOCTYPE o [<!OTHER>]><o/>", u"<!DOCTYPE o [ <!ELEMENT o", u"<!DOCTYPE o [] x><o/>",
        u"<!DOCTYPE o <a><o/>", u"<!DOCTYPEo><o/>", u"<!DOCTYPE<o/>", u"<!DOCTYPE o []<o/>",
        u"<!DOCTYPE o", u"<!DOCTYPE o><!DOCTYPE o><o/>",
        u"<?xml version='1.0' encoding='a?><b c='?><d/>", u"MZ", u"<!-- no end", u"<a>\x1</a>",
        u"<a>\xFFFE</a>", u"<a>\xDC00\xDC00</a>", u"<a>\xD83D</a>", u"<a>\xD83D\xE000</a>",
        u"\xD83D"})
    EXPECT_EQ(outcome(std::u16string(broken)), TXmlText::Broken)
        << std::string(broken.begin(), broken.end());
}

}  // namespace
