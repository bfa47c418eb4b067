#include "platform/xml_reader.h"

#include <gtest/gtest.h>
#include <objbase.h>
#include <windows.h>

#include <cstdlib>
#include <stdexcept>
#include <thread>

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

class TCountSink : public TXmlSink {
 public:
  void StartElement(std::string_view, std::span<const TAttribute>) override { ++Elements; }
  void EndElement() override {}
  void Characters(std::string_view text) override { Text += text.size(); }
  void CDataSection(std::string_view text) override { Text += text.size(); }
  void OtherNode() override {}

  std::size_t Elements = 0, Text = 0;
};

std::string Repeat(std::string_view text, int times) {
  std::string result;
  result.reserve(text.size() * static_cast<std::size_t>(times));
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

std::string Utf8(std::string_view text) {
  const std::wstring wide = ToWide(text);
  std::string bytes(wide.size() * 3, '\0');
  bytes.resize(static_cast<std::size_t>(
      WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), bytes.data(),
                          static_cast<int>(bytes.size()), nullptr, nullptr)));
  return bytes;
}

TEST(CodePage, EveryCharacterComesBack) {
  std::string all;
  for (int c = 1; c < 256; ++c) all += static_cast<char>(c);
  EXPECT_EQ(ToAnsi(ToWide(all)), all);
  EXPECT_EQ(ToAnsi(ToWide(std::string_view("a\0b", 3))), std::string("a\0b", 3));
  EXPECT_EQ(ToWide("\xE9\x80"), L"\u00E9\u20AC");
  std::string text = "a";
  AppendAnsi(text, L"\u00E9");
  AppendAnsi(text, L"");
  AppendAnsi(text, L"\u4E2D");
  EXPECT_EQ(text, "a\xE9?");
}

TEST(XmlReader, EveryEncodingReadsTheSame) {
  const TTemporaryFolder folder;
  // e acute and euro; the euro is written as a reference where the encoding lacks it.
  const std::string body =
      "<objects><const name=\"\xE9&#x20AC;&amp;\" t='a'>p\xE9 &lt; &#233;</const></objects>";
  const std::string expected = "<objects><const name=\xE9\x80& t=a>{p\xE9 < \xE9}</></>";
  const auto declared = [](std::string_view encoding, std::string_view text) {
    return "<?xml version=\"1.0\" encoding=\"" + std::string(encoding) + "\"?>\r\n" +
           std::string(text);
  };
  const std::pair<const char*, std::string> files[] = {
      {"UTF-8", Utf8(declared("UTF-8", body))},
      {"UTF-8 undeclared", Utf8(body)},
      {"UTF-8 marked", "\xEF\xBB\xBF" + Utf8(declared("UTF-8", body))},
      {"UTF-16 little", Utf16(declared("UTF-16", body), false)},
      {"UTF-16 big", Utf16(declared("UTF-16", body), true)},
      {"ISO-8859-1", declared("ISO-8859-1", body)},
      {"windows-1252", declared("windows-1252", body)},
  };
  for (const auto& [name, bytes] : files) {
    TLogSink sink;
    EXPECT_EQ(ReadXmlFile(folder.Write("e.xml", bytes), sink), TXmlReading::Done) << name;
    EXPECT_EQ(sink.Log, expected) << name;
  }
  TLogSink sink;
  folder.Write("e.xml", declared("windows-1252", "<a>\x80\x92</a>"));
  EXPECT_EQ(ReadXmlFile(folder.File("e.xml"), sink), TXmlReading::Done);
  EXPECT_EQ(sink.Log, "<a>{\x80\x92}</>");
}

TEST(XmlReader, TellsTextsApart) {
  const TTemporaryFolder folder;
  TLogSink sink;
  folder.Write("t.xml",
               "<!-- <!DOCTYPE --><a>x<!-- c -->y<![CDATA[<z>]]><b/> <p:c xmlns:p='u'/></a>");
  EXPECT_EQ(ReadXmlFile(folder.File("t.xml"), sink), TXmlReading::Done);
  EXPECT_EQ(sink.Log, "!<a>{x}!{y}[<z>]<b></>{ }<p:c xmlns:p=u></></>");
}

TEST(XmlReader, HostileFilesEndInAnOutcome) {
  const TTemporaryFolder folder;
  folder.Write("secret.txt", "SECRET");
  std::string bomb = "<!DOCTYPE o [<!ENTITY e0 \"lol\">";
  for (int i = 1; i < 12; ++i)
    bomb += "<!ENTITY e" + std::to_string(i) + " \"" +
            Repeat("&e" + std::to_string(i - 1) + ";", 10) + "\">";
  const std::string use = "]><objects><const name=\"a\">&e11;</const></objects>";
  const std::pair<TXmlReading, std::string> cases[] = {
      {TXmlReading::Broken, ""},
      {TXmlReading::Broken, "  \r\n"},
      {TXmlReading::Broken, "<objects><const name=\"a\">x</const><li"},
      {TXmlReading::Broken, "<objects></object>"},
      {TXmlReading::Broken, "<objects/><objects/>"},
      {TXmlReading::Broken, "<objects><const name=\"a\" name=\"b\"/></objects>"},
      {TXmlReading::Broken, "<objects><const name=\"\xE9\"/></objects>"},
      {TXmlReading::Broken, std::string("<objects>\0</objects>", 20)},
      {TXmlReading::Broken, "<?xml version=\"1.0\" encoding=\"nowhere-1\"?><objects/>"},
      {TXmlReading::Broken, "<objects>&e;</objects>"},
      {TXmlReading::Broken, Repeat("<objects>", 100'000)},
      {TXmlReading::Refused, bomb + use},
      {TXmlReading::Refused, Utf16(bomb + use, false)},
      {TXmlReading::Refused, "MZ\x90"},
      {TXmlReading::Refused,
       "<!DOCTYPE o [<!ENTITY e SYSTEM \"secret.txt\">]><objects>&e;</objects>"},
      {TXmlReading::Refused, "<!DOCTYPE o SYSTEM \"http://127.0.0.1:9/x.dtd\"><objects/>"},
      {TXmlReading::Refused, "<!DOCTYPE o [<!ATTLIST a x CDATA \"" + Repeat("x", 1'000'000) +
                                 "\">]><objects>" + Repeat("<a/>", 100'000) + "</objects>"},
  };
  for (const auto& [outcome, bytes] : cases) {
    TLogSink sink;
    EXPECT_EQ(ReadXmlFile(folder.Write("h.xml", bytes), sink), outcome) << bytes.substr(0, 80);
    EXPECT_EQ(sink.Log.find("SECRET"), std::string::npos);
  }
  TLogSink sink;
  for (const std::string& path : {folder.File("none.xml"), folder.Path().string(), std::string(),
                                  std::string("?:\\*"), std::string(5000, 'x')})
    EXPECT_EQ(ReadXmlFile(path, sink), TXmlReading::NoFile) << path;
  EXPECT_EQ(sink.Log, "");
}

TEST(XmlReader, LargeFilesAreReadWhole) {
  const TTemporaryFolder folder;
  const std::string deep =
      "<objects>" + Repeat("<a>", 100'000) + Repeat("</a>", 100'000) + "</objects>";
  TCountSink nested;
  const TXmlReading reading = ReadXmlFile(folder.Write("deep.xml", deep), nested);
  // A component may have a limit of depth; it may not read half.
  if (reading == TXmlReading::Done)
    EXPECT_EQ(nested.Elements, 100'001u);
  else
    EXPECT_EQ(reading, TXmlReading::Broken);

  TCountSink wide;
  const std::string line =
      "<const name=\"abcdefgh\" type=\"t\">" + Repeat("0123456789", 20) + "</const>";
  folder.Write("wide.xml", "<objects>" + Repeat(line, 200'000) + "</objects>");
  EXPECT_EQ(ReadXmlFile(folder.File("wide.xml"), wide), TXmlReading::Done);
  EXPECT_EQ(wide.Elements, 200'001u);
  EXPECT_EQ(wide.Text, 40'000'000u);
}

TEST(XmlReader, WhatTheSinkThrowsComesOut) {
  struct TThrowingSink : TLogSink {
    void EndElement() override { throw std::runtime_error("full"); }
  } sink;
  const TTemporaryFolder folder;
  EXPECT_THROW(ReadXmlFile(folder.Write("x.xml", "<a><b/><c/></a>"), sink), std::runtime_error);
  EXPECT_EQ(sink.Log, "<a><b>");
}

TEST(XmlReader, ServesThreadsOfEitherModelAndLeavesThemAsTheyWere) {
  const TTemporaryFolder folder;
  const std::string path = folder.Write("x.xml", "<a/>");
  for (const DWORD model : {COINIT_MULTITHREADED, COINIT_APARTMENTTHREADED}) {
    TXmlReading reading = TXmlReading::NoComponent;
    HRESULT after = E_FAIL;
    std::thread([&] {
      CoInitializeEx(nullptr, model);
      TLogSink sink;
      reading = ReadXmlFile(path, sink);
      after = CoInitializeEx(nullptr, model);
      CoUninitialize();
      CoUninitialize();
    }).join();
    EXPECT_EQ(reading, TXmlReading::Done);
    EXPECT_EQ(after, S_FALSE);
  }
}

TEST(XMLDocument, ReadsWhenActivatedAndOnlyWhatChanged) {
  const TTemporaryFolder folder;
  const std::string path = folder.Write("d.xml", "<objects><type name=\"a\"/></objects>");
  TXMLDocument first, second;
  first.SetActive(true);
  EXPECT_TRUE(first.Active());
  EXPECT_TRUE(first.Database()->Empty());

  first.SetFileName(path);
  second.SetFileName(path);
  first.SetActive(true);
  second.SetActive(true);
  ASSERT_TRUE(first.Database()->FindElement("a"));
  EXPECT_EQ(first.Database(), second.Database());
  const std::shared_ptr<const TSyntaxDatabase> before = first.Database();
  first.SetActive(false);
  EXPECT_TRUE(first.Database()->Empty());
  first.SetActive(true);
  EXPECT_EQ(first.Database(), before);

  // Another size, then the same size at another time.
  folder.Write("d.xml", "<objects><type name=\"bb\"/></objects>");
  first.SetActive(true);
  EXPECT_TRUE(first.Database()->FindElement("bb"));
  const auto time = std::filesystem::last_write_time(path);
  folder.Write("d.xml", "<objects><type name=\"cc\"/></objects>");
  std::filesystem::last_write_time(path, time + std::chrono::seconds(2));
  first.SetActive(true);
  EXPECT_TRUE(first.Database()->FindElement("cc"));
  EXPECT_TRUE(second.Database()->FindElement("a"));

  folder.Write("d.xml", "<objects><type name=\"ddd\"/>");
  first.SetActive(true);
  EXPECT_TRUE(first.Database()->Empty());
  std::filesystem::remove(path);
  first.SetActive(true);
  EXPECT_TRUE(first.Database()->Empty());
  first.SetFileName(folder.Path().string());
  first.SetActive(true);
  EXPECT_TRUE(first.Database()->Empty());
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
