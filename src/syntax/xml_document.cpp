#include "syntax/xml_document.h"

#include <exception>
#include <optional>
#include <utility>

#include "platform/file_stamp.h"
#include "platform/xml_reader.h"

namespace {

using TDatabasePtr = std::shared_ptr<const TSyntaxDatabase>;

const TDatabasePtr& EmptyDatabase() {
  static const TDatabasePtr empty = std::make_shared<const TSyntaxDatabase>();
  return empty;
}

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

TDatabasePtr ReadDatabase(const std::string& fileName) try {
  TDatabaseSink sink;
  if (ReadXmlFile(fileName, sink) != TXmlReading::Done) return EmptyDatabase();
  return std::make_shared<const TSyntaxDatabase>(sink.Finish());
} catch (const std::exception&) {
  // A file too large for the memory at hand is as good as a broken one.
  return EmptyDatabase();
}

/// The last database read, with what its file looked like before.
struct TLastRead {
  std::string FileName;
  std::optional<TFileStamp> Stamp;
  TDatabasePtr Database;
};

TDatabasePtr OpenDatabase(const std::string& fileName) {
  static TLastRead last;
  const std::optional<TFileStamp> stamp = fileName.empty() ? std::nullopt : FileStamp(fileName);
  if (!stamp) return EmptyDatabase();
  if (last.Database && last.FileName == fileName && last.Stamp == stamp) return last.Database;
  // The old model goes first, so that two large ones need not fit side by side.
  last = {};
  last = {fileName, stamp, ReadDatabase(fileName)};
  return last.Database;
}

}  // namespace

TXMLDocument::TXMLDocument() : FDatabase(EmptyDatabase()) {}

void TXMLDocument::SetActive(bool active) {
  FActive = active;
  FDatabase = active ? OpenDatabase(FFileName) : EmptyDatabase();
}
