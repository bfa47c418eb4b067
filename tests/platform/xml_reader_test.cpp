#include "platform/xml_reader.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>

#include "platform/code_page.h"
#include "platform/executable_search.h"
#include "syntax/xml_document.h"
#include "temporary_folder.h"

namespace {

/// Writes the nodes down as text.
class TLogSink : public TXmlSink {
 public:
  void StartElement(std::string_view name, std::span<const TAttribute> attributes) override {
    Log.append("<").append(name);
    for (const auto& [key, value] : attributes)
      Log.append(" ").append(key).append("=").append(value);
    Log.append(">");
  }
  void EndElement() override { Log.append("</>"); }
  void Characters(std::string_view text) override { Log.append("{").append(text).append("}"); }
  void CDataSection(std::string_view text) override { Log.append("[").append(text).append("]"); }
  void OtherNode() override { Log.append("!"); }

  std::string Log;
};

std::string Repeat(std::string_view text, int times) {
  std::string result;
  while (times-- > 0) result += text;
  return result;
}

std::string Utf16(std::string_view text, bool bigEndian) {
  std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
  for (const wchar_t c : ToWide(text)) {
    const char low = static_cast<char>(c), high = static_cast<char>(c >> 8);
    bytes += bigEndian ? high : low;
    bytes += bigEndian ? low : high;
  }
  return bytes;
}

TEST(CodePage, EveryCharacterComesBack) {
  std::string all;
  for (int c = 1; c < 256; ++c) all += static_cast<char>(c);
  EXPECT_EQ(ToAnsi(ToWide(all)), all);
  EXPECT_EQ(ToAnsi(ToWide(std::string_view("a\0b", 3))), std::string("a\0b", 3));
  EXPECT_EQ(ToAnsi(L"\u00E9\u4E2D"), "\xE9?");
}

// What encodings and document types mean is settled before the system's reader gets the text.
TEST(XmlReader, ReadsEveryEncodingAndEndsOddAndHostileFilesInAnOutcome) {
  const TTemporaryFolder folder;
  folder.Write("secret.txt", "SECRET");
  const auto broken = TXmlReading::Broken, refused = TXmlReading::Refused, done = TXmlReading::Done;
  const std::string euro = "<o n=\"\xE9&#x20AC;&amp;\" t='a'>p\xE9 &lt; &#233;</o>";
  const std::string latin = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\r\n";
  const char* const read = "<o n=\xE9\x80& t=a>{p\xE9 < \xE9}</>";
  const struct {
    std::string Bytes;
    TXmlReading Outcome;
    const char* Log = "";
  } cases[] = {
      {Utf16(euro, false), done, read},
      {Utf16(euro, true), done, read},
      {latin + euro, done, read},
      {"<?xml version=\"1.0\" encoding=\"UTF-8\"?><o>\xC3\xA9\xE2\x82\xAC</o>", done,
       "<o>{\xE9\x80}</>"},
      {"<?xml version=\"1.0\" encoding=\"windows-1252\"?><a>\x80\x92</a>", done,
       "<a>{\x80\x92}</>"},
      {"", broken},
      {"<o><li", broken},
      {"<o></p>", broken},
      {"<o/><o/>", broken},
      {"<o/>x", broken},
      {"<o a=\"1\" a=\"2\"/>", broken},
      {"<o a=\"\xE9\"/>", broken},
      {std::string("<o>\0</o>", 8), broken},
      {"<o>&#0;</o>", broken},
      {"<o a='&e;'/>", broken},
      {Repeat("<o>", 100'000), broken},
      {"<!DOCTYPE o [<!ENTITY e SYSTEM \"secret.txt\">]><o>&e;</o>", refused},
      {"<!DOCTYPE o SYSTEM \"http://127.0.0.1:9/x.dtd\"><o>&e;</o>", broken},
      {"<!DOCTYPE o [<!ELEMENT o ANY>]>\n<o b='1'/>", done, "<o b=1></>"},
      {"<a>x\r\n<!-- c -->y<![CDATA[<z>]]><b/> <c d=' 1\n2'/></a>", done,
       "<a>{x\n}!{y}[<z>]<b></>{ }<c d= 1 2></></>"},
      {"<a>\r\n <b>&#32;</b>1&lt;2&#x20AC;3</a>", done,
       "<a>{\n }<b>{ }</>{1<2\x80"
       "3}</>"},
  };
  for (const auto& c : cases) {
    TLogSink sink;
    EXPECT_EQ(ReadXmlFile(folder.Write("h.xml", c.Bytes), sink), c.Outcome)
        << c.Bytes.substr(0, 80);
    EXPECT_TRUE(c.Outcome != done || sink.Log == c.Log) << sink.Log;
    EXPECT_EQ(sink.Log.find("SECRET"), std::string::npos);
  }
  TLogSink sink;
  for (const std::string& path :
       {folder.File("none.xml"), folder.Path().string(), std::string("?:\\*")})
    EXPECT_EQ(ReadXmlFile(path, sink), TXmlReading::NoFile) << path;
}

TEST(XmlReader, LargeFilesAreReadWhole) {
  const TTemporaryFolder folder;
  const std::string body = Repeat("<a>", 200) + Repeat("</a>", 200) +
                           Repeat("<b c='d'>" + std::string(200, 'x') + "</b>", 20'000);
  TLogSink sink;
  EXPECT_EQ(ReadXmlFile(folder.Write("l.xml", "<o>" + body + "</o>"), sink), TXmlReading::Done);
  EXPECT_EQ(sink.Log.size(), 3 + 200 * 6 + 20'000 * (7 + 202 + 3) + 3);
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
  const auto write = [&folder](const std::string& name) {
    return folder.Write("d.xml", "<objects><type name=\"" + name + "\"/></objects>");
  };
  TXMLDocument first, second;
  EXPECT_EQ(TypesIn(first), "");
  const std::string path = write("a");
  first.SetFileName(path);
  second.SetFileName(path);
  std::shared_ptr<const TSyntaxDatabase> before;
  {
    const TOpenDocument open(first), other(second);
    before = first.Database();
    EXPECT_EQ(second.Database(), before);
    write("while it is open");
    const TOpenDocument inner(first);
    EXPECT_EQ(first.Database(), before);
  }
  EXPECT_TRUE(first.Database()->Empty());
  EXPECT_EQ(TypesIn(first), "while it is open,");

  // The same size at another time, then in another file of the same size and time.
  write("bb");
  EXPECT_EQ(TypesIn(first), "bb,");
  const auto time = std::filesystem::last_write_time(path);
  for (const bool inPlace : {false, true}) {
    if (!inPlace) std::filesystem::rename(path, folder.File("old.xml"));
    write(inPlace ? "dd" : "cc");
    std::filesystem::last_write_time(path, time);
    EXPECT_EQ(TypesIn(first), inPlace ? "dd," : "cc,");
  }

  // What is not read just then is not remembered; what is no database is.
  const HANDLE held =
      CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_EQ(TypesIn(second), "dd,");
  std::filesystem::last_write_time(folder.File("old.xml"), time);
  TXMLDocument third;
  third.SetFileName(folder.File("old.xml"));
  EXPECT_EQ(TypesIn(third), "bb,");
  EXPECT_EQ(TypesIn(first), "");
  EXPECT_FALSE(first.Known());
  CloseHandle(held);
  EXPECT_EQ(TypesIn(first), "dd,");
  EXPECT_TRUE(first.Known());
  folder.Write("d.xml", "<objects><type name=\"ddd\"/>");
  EXPECT_EQ(TypesIn(first), "");
  EXPECT_TRUE(first.Known());
  std::filesystem::remove(path);
  EXPECT_EQ(TypesIn(first), "");
  first.SetFileName(folder.Path().string());
  EXPECT_EQ(TypesIn(first), "");
}

TEST(ExecutableSearch, FindsTheFileBesideTheExecutable) {
  const TTemporaryFolder folder;
  const auto back = std::filesystem::current_path();
  const auto find = [] { return FileBesideExecutable("ZEFTEST.EXE", "BESIDE.XML"); };
  EXPECT_EQ(find(), "");

  folder.Write("ZEFTEST.EXE", "x");
  std::filesystem::current_path(folder.Path());
  EXPECT_TRUE(
      std::filesystem::equivalent(std::filesystem::path(find()).parent_path(), folder.Path()));
  EXPECT_TRUE(find().ends_with("\\BESIDE.XML")) << find();
  std::filesystem::current_path(back);

  // On the PATH, at the greatest length that fits and one more.
  for (const std::size_t length : {259u, 260u}) {
    const std::string name = "\\ZEFTEST.EXE";
    std::string path = folder.Path().string();
    while (length - name.size() - path.size() > 101) path += "\\" + std::string(100, 'd');
    const std::size_t rest = length - name.size() - path.size();
    if (rest > 1) path += "\\" + std::string(rest - 1, 'e');
    std::filesystem::create_directories("\\\\?\\" + path);
    std::ofstream("\\\\?\\" + path + name) << "x";
    ASSERT_TRUE(std::filesystem::exists("\\\\?\\" + path + name));
    const std::string old = std::getenv("PATH");
    SetEnvironmentVariableA("PATH", path.c_str());
    EXPECT_EQ(find(), length == 259 ? path + "\\BESIDE.XML" : "") << path;
    SetEnvironmentVariableA("PATH", old.c_str());
  }
}

}  // namespace
