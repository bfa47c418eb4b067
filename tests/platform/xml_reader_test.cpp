#include "platform/xml_reader.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "platform/code_page.h"
#include "platform/executable_search.h"
#include "syntax/xml_document.h"
#include "temporary_folder.h"
#include "user/say.h"

namespace {

namespace fs = std::filesystem;

/// Writes the nodes down as text.
struct TLogSink : TXmlSink {
  void StartElement(std::string_view name, std::span<const TAttribute> attributes) override {
    Log += Say('<', name);
    for (const auto& [key, value] : attributes) Log += Say(' ', key, '=', value);
    Log += '>';
  }
  void EndElement() override { Log += "</>"; }
  void Characters(std::string_view text) override { Log += Say('{', text, '}'); }
  void CDataSection(std::string_view text) override { Log += Say('[', text, ']'); }
  void OtherNode() override { Log += '!'; }

  std::string Log;
};

std::string Repeat(std::string_view text, int times) {
  std::string result;
  while (times-- > 0) result += text;
  return result;
}

TEST(CodePage, EveryCharacterComesBack) {
  std::string all;
  for (int c = 0; c < 256; ++c) all += static_cast<char>(c);
  EXPECT_EQ(ToAnsi(ToWide(all)), all);
  EXPECT_EQ(ToAnsi(L"\u00E9\u4E2D"), "\xE9?");
}

// What encodings and document types mean is settled before the system's reader gets the text.
TEST(XmlReader, ReadsTheWellFormedWholeAndRefusesTheRest) {
  using namespace std::string_literals;
  using enum TXmlReading;
  const TTemporaryFolder folder;
  folder.Write("secret.txt", "SECRET");
  const std::string deep = Repeat("<a>", 200), wide(200, 'x');
  const std::pair<std::string, std::string> read[] = {
      {"\xFF\xFE<\0o\0>\0\xE9\0\xAC\x20<\0/\0o\0>\0"s, "<o>{\xE9\x80}</>"},
      {"\xFE\xFF\0<\0o\0>\0\xE9\x20\xAC\0<\0/\0o\0>"s, "<o>{\xE9\x80}</>"},
      {"<?xml version='1.0' encoding='ISO-8859-1'?>\r\n<o n=\"\xE9&#x20AC;&amp;\" t='a'>\xE9</o>",
       "<o n=\xE9\x80& t=a>{\xE9}</>"},
      {"<?xml version='1.0' encoding='UTF-8'?><o>\xC3\xA9</o>", "<o>{\xE9}</>"},
      {"<?xml version='1.0' encoding='windows-1252'?><a>\x92</a>", "<a>{\x92}</>"},
      {"<!DOCTYPE o [<!ELEMENT o ANY>]>\n<o b='1'/>", "<o b=1></>"},
      {"<a>x\r\n<!-- c -->y<![CDATA[<z>]]><b/> <c d=' 1\n2'/></a>",
       "<a>{x\n}!{y}[<z>]<b></>{ }<c d= 1 2></></>"},
      {"<a>\r\n <b>&#32;</b>1&lt;2&#x20AC; &#233;</a>", "<a>{\n }<b>{ }</>{1<2\x80 \xE9}</>"},
      {deep + Repeat("<b c='d'>" + wide + "</b>", 20'000) + Repeat("</a>", 200),
       deep + Repeat("<b c=d>{" + wide + "}</>", 20'000) + Repeat("</>", 200)}};
  for (const auto& [bytes, log] : read) {
    TLogSink sink;
    EXPECT_EQ(ReadXmlFile(folder.Write("h.xml", bytes), sink), Done) << bytes.substr(0, 80);
    EXPECT_TRUE(sink.Log == log) << sink.Log.substr(0, 80);
  }
  TLogSink sink;
  const std::string endless = Repeat("<o>", 100'000),
                    fetched = "<!DOCTYPE o SYSTEM \"http://127.0.0.1:9/x.dtd\"><o>&e;</o>";
  const std::string broken[] = {
      "",           "<o><li",      "<o></p>",      "<o/><o/>",      "<o/>x", "<o a='1' a='2'/>",
      "<o>\0</o>"s, "<o>&#0;</o>", "<o a='&e;'/>", "<o a='\xE9'/>", endless, fetched};
  for (const auto& bytes : broken)
    EXPECT_EQ(ReadXmlFile(folder.Write("h.xml", bytes), sink), Broken) << bytes.substr(0, 80);
  folder.Write("h.xml", "<!DOCTYPE o [<!ENTITY e SYSTEM \"secret.txt\">]><o>&e;</o>");
  EXPECT_EQ(ReadXmlFile(folder.File("h.xml"), sink), Refused);
  EXPECT_EQ(sink.Log.find("SECRET"), std::string::npos);
  for (const std::string& path : {folder.File("none.xml"), folder.Path.string(), "?:\\*"s})
    EXPECT_EQ(ReadXmlFile(path, sink), NoFile) << path;
}

/// What a document says of itself when opened: the names of its types.
std::string TypesIn(TXMLDocument& document) {
  const TOpenDocument open(document);
  std::string names;
  for (const TSyntaxElement& element : document.Database()->Elements()) names += element.Name + ",";
  return names;
}

TEST(XMLDocument, ReadsWhenOpenedAndOnlyWhatChanged) {
  const TTemporaryFolder folder;
  const std::string path = folder.File("d.xml"), old = folder.File("old.xml");
  const auto write = [&](const char* name) {
    folder.Write("d.xml", Say("<objects><type name=\"", name, "\"/></objects>"));
  };
  TXMLDocument first, second, third;
  EXPECT_EQ(TypesIn(first), "");
  first.SetFileName(path);
  second.SetFileName(path);
  third.SetFileName(old);
  write("a");
  {
    const TOpenDocument open(first), other(second);
    const auto before = first.Database();
    EXPECT_EQ(second.Database(), before);
    write("while it is open");
    const TOpenDocument inner(first);
    EXPECT_EQ(first.Database(), before);
  }
  EXPECT_TRUE(first.Database()->Empty());
  EXPECT_EQ(TypesIn(first), "while it is open,");

  // The same size at another time.
  write("bb");
  EXPECT_EQ(TypesIn(first), "bb,");
  fs::copy_file(path, old);
  // What is not read just then is not remembered; what is no database is.
  const HANDLE held =
      CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_EQ(TypesIn(second), "bb,");
  EXPECT_EQ(TypesIn(third), "bb,");
  EXPECT_TRUE(TypesIn(first).empty() && !first.Known());
  CloseHandle(held);
  EXPECT_TRUE(TypesIn(first) == "bb," && first.Known());
  folder.Write("d.xml", "<objects><type name=\"ddd\"/>");
  EXPECT_TRUE(TypesIn(first).empty() && first.Known());
  first.SetFileName(folder.Path.string());
  EXPECT_EQ(TypesIn(first), "");
}

TEST(ExecutableSearch, FindsTheFileBesideTheExecutable) {
  const TTemporaryFolder folder;
  const auto find = [] { return FileBesideExecutable("ZEFTEST.EXE", "BESIDE.XML"); };
  EXPECT_EQ(find(), "");
  const fs::path back = fs::current_path();
  folder.Write("ZEFTEST.EXE", "x");
  fs::current_path(folder.Path);
  EXPECT_TRUE(fs::equivalent(fs::path(find()).parent_path(), folder.Path)) << find();
  EXPECT_TRUE(find().ends_with("\\BESIDE.XML")) << find();
  fs::current_path(back);
  EXPECT_EQ(find(), "");
}

}  // namespace
