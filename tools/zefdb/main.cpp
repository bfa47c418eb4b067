// zefdb: for authors of the syntax database. What it finds is described in docs/syntax-database.md.
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "platform/code_page.h"
#include "platform/locale_collation.h"
#include "platform/xml_reader.h"
#include "zefdb/rules/database_check.h"

namespace {

enum TExitCode { Well = 0, Found = 1, Failed = 2 };

std::string Utf8Of(std::string_view ansi) { return ToUtf8(ToWide(ansi)); }

/// A console shows UTF-16; a file or a pipe takes UTF-8.
void Print(const std::wstring& line) {
  const HANDLE out = GetStdHandle(STD_OUTPUT_HANDLE);
  const std::wstring text = line + L"\r\n";
  DWORD mode;
  DWORD written;
  if (GetConsoleMode(out, &mode)) {
    WriteConsoleW(out, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
  } else {
    const std::string bytes = ToUtf8(text);
    WriteFile(out, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  }
}

void Print(std::string_view utf8) { Print(Utf8ToWide(utf8)); }

class TCheckSink : public TXmlSink {
 public:
  void AtLine(int line) override { FLine = line; }
  void StartElement(std::string_view name, std::span<const TAttribute> attributes) override {
    Check.StartElement(FLine, name, attributes);
  }
  void EndElement() override { Check.EndElement(); }
  void Characters(std::string_view text) override { Check.Text(text); }
  void CDataSection(std::string_view text) override { Check.Text(text); }
  void OtherNode() override {}

  int Line() const { return FLine; }
  TDatabaseCheck Check;

 private:
  int FLine = 1;
};

const char* Reason(TXmlReading reading) {
  switch (reading) {
    case TXmlReading::NoFile:
      return "le fichier ne peut pas être lu";
    case TXmlReading::Refused:
      return "une déclaration de type de document définit des entités : fichier refusé";
    case TXmlReading::NoComponent:
      return "le lecteur XML du système est absent";
    default:
      return "ce n'est pas un document XML bien formé";
  }
}

TExitCode CheckFile(const std::string& file, const TDatabaseCheck& check) {
  const auto faults = check.Faults();
  for (TDatabaseFault fault : faults) {
    fault.Name = Utf8Of(fault.Name);
    fault.Other = Utf8Of(fault.Other);
    Print(file + '(' + std::to_string(fault.Line) + "): " + Describe(fault));
  }
  if (faults.empty()) Print(file + " : aucune faute");
  return faults.empty() ? Well : Found;
}

TExitCode ShowStats(const TDatabaseCheck& check) {
  for (const auto& [element, count] : check.Counts()) {
    Print(std::to_string(count) + '\t' + Utf8Of(element));
  }
  return Well;
}

TExitCode LookUp(const std::string& file, const TDatabaseCheck& check, const std::string& word) {
  const auto places = check.Find(word);
  for (const auto& [line, what] : places) {
    Print(file + '(' + std::to_string(line) + "): " + Utf8Of(what));
  }
  if (places.empty()) Print("« " + Utf8Of(word) + " » n'est pas défini");
  return places.empty() ? Found : Well;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  const std::wstring_view command = count > 1 ? arguments[1] : L"";
  const int needed = command == L"check" || command == L"stats" ? 3 : command == L"lookup" ? 4 : 0;
  if (count != needed) {
    Print("Usage : zefdb check FICHIER | zefdb stats FICHIER | zefdb lookup FICHIER MOT");
    return Failed;
  }
  UseLocaleCollation();
  const std::string path = ToAnsi(arguments[2]);
  const std::string file = Utf8Of(path);
  TCheckSink sink;
  const TXmlReading reading = ReadXmlFile(path, sink);
  if (reading != TXmlReading::Done) {
    Print(file + '(' + std::to_string(sink.Line()) + "): " + Reason(reading));
    return Failed;
  }
  if (command == L"check") return CheckFile(file, sink.Check);
  if (command == L"stats") return ShowStats(sink.Check);
  return LookUp(file, sink.Check, ToAnsi(arguments[3]));
}
