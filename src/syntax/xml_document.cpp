#include "syntax/xml_document.h"

#include <exception>
#include <optional>
#include <utility>

#include "platform/debug_report.h"
#include "platform/file_stamp.h"
#include "platform/kept.h"
#include "platform/xml_reader.h"

namespace {

using TDatabasePtr = std::shared_ptr<const TSyntaxDatabase>;

/// The last database read, with what its file looked like before.
struct TLastRead {
  std::string FileName;
  std::optional<TFileStamp> Stamp;
  TDatabasePtr Database;
};

struct TDatabases {
  TDatabasePtr Empty = std::make_shared<const TSyntaxDatabase>();
  TLastRead Last;
};

const TDatabasePtr& EmptyDatabase() { return Kept<TDatabases>().Empty; }

class TDatabaseSink : public TXmlSink {
 public:
  void StartElement(std::string_view name, std::span<const TAttribute> attributes) override {
    FBuilder.StartElement(name, attributes);
  }
  void EndElement() override { FBuilder.EndElement(); }
  void Characters(std::string_view text) override { FBuilder.Characters(text); }
  void CDataSection(std::string_view text) override { FBuilder.CDataSection(text); }
  void OtherNode() override { FBuilder.OtherNode(); }

  TSyntaxDatabase Finish() { return FBuilder.Finish(); }

 private:
  TSyntaxDatabaseBuilder FBuilder;
};

struct TReading {
  TDatabasePtr Database = EmptyDatabase();
  bool Known = true;                ///< it is what the file says
  const char* Complaint = nullptr;  ///< why there is no database, if so
};

TReading ReadDatabase(const std::string& fileName) try {
  TDatabaseSink sink;
  switch (ReadXmlFile(fileName, sink)) {
    case TXmlReading::Done:
      return {std::make_shared<const TSyntaxDatabase>(sink.Finish())};
    case TXmlReading::Refused:
      return {.Complaint = "refused because it defines entities"};
    case TXmlReading::Broken:
      return {.Complaint = "not well-formed"};
    case TXmlReading::NoFile:
      return {.Known = false, .Complaint = "there, but cannot be read"};
    case TXmlReading::NoComponent:
      break;
  }
  return {.Known = false, .Complaint = "there, but the system's XML reader is not"};
} catch (const std::exception&) {
  return {.Known = false, .Complaint = "too large for the memory there is"};
}

TReading OpenDatabase(const std::string& fileName) {
  TLastRead& last = Kept<TDatabases>().Last;
  if (fileName.empty()) return {.Complaint = "not to be found: there is no file ZEF.EXE"};
  const std::optional<TFileStamp> stamp = FileStamp(fileName);
  if (!stamp) return {.Complaint = "not there"};
  if (last.Database && last.FileName == fileName && last.Stamp == stamp) return {last.Database};
  // The old model goes first, so that two large ones need not fit side by side.
  last = {};
  TReading reading = ReadDatabase(fileName);
  if (reading.Known) last = {fileName, stamp, reading.Database};
  return reading;
}

/// Once, until there is something else to tell: each word that the host colours opens the document.
void Tell(const std::string& fileName, const char* complaint, const std::source_location& place) {
  static const char* told = nullptr;
  if (std::exchange(told, complaint) == complaint || !complaint) return;
  const std::string named = fileName.empty() ? fileName : " " + fileName;
  DebugReport("the syntax database" + named + " is " + complaint, place);
}

}  // namespace

TXMLDocument::TXMLDocument() : FDatabase(EmptyDatabase()) {}

void TXMLDocument::Open(const std::source_location& place) {
  if (FOpenings == 0) {
    const TReading reading = OpenDatabase(FFileName);
    Tell(FFileName, reading.Complaint, place);
    FDatabase = reading.Database;
    FKnown = reading.Known;
  }
  ++FOpenings;
}

void TXMLDocument::Close() {
  if (--FOpenings == 0) FDatabase = EmptyDatabase();
}
