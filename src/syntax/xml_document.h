#pragma once

#include <memory>
#include <source_location>
#include <string>

#include "syntax/rules/syntax_database.h"

/// The syntax database's file, read while it is open. All documents of the process share the last
/// model read, and a file that is still the same is not read again. For one thread.
class TXMLDocument {
 public:
  TXMLDocument();

  /// ANSI path; the empty one names no file. Heard at the next opening.
  void SetFileName(std::string fileName) { FFileName = std::move(fileName); }

  /// The model; an empty one while not open. Never null.
  const std::shared_ptr<const TSyntaxDatabase>& Database() const { return FDatabase; }

  /// Whether the last opening told what the file says: false when there is a file but no reading
  /// it just then, because another program holds it or memory is short.
  bool Known() const { return FKnown; }

 private:
  friend class TOpenDocument;
  void Open(const std::source_location& place);
  void Close();

  std::string FFileName;
  std::shared_ptr<const TSyntaxDatabase> FDatabase;
  bool FKnown = true;
  int FOpenings = 0;
};

/// The document is open for as long as this lives. The outermost of several looks whether the file
/// changed and reads it if so. Does not fail: a file that cannot be read is an empty database, of
/// which the debugger is told.
class TOpenDocument {
 public:
  explicit TOpenDocument(TXMLDocument& document,
                         const std::source_location& place = std::source_location::current())
      : FDocument(document) {
    FDocument.Open(place);
  }
  TOpenDocument(const TOpenDocument&) = delete;
  TOpenDocument& operator=(const TOpenDocument&) = delete;
  ~TOpenDocument() { FDocument.Close(); }

 private:
  TXMLDocument& FDocument;
};
