#pragma once

#include <memory>
#include <string>

#include "syntax/rules/syntax_database.h"

/// The syntax database's file, read while active. All documents of the process share the last model
/// read, and a file that did not change since is not read again. For one thread.
class TXMLDocument {
 public:
  TXMLDocument();

  /// ANSI path; the empty one names no file. Heard at the next activation.
  void SetFileName(std::string fileName) { FFileName = std::move(fileName); }
  const std::string& FileName() const { return FFileName; }

  /// Activating looks whether the file changed and reads it if so, each time it is asked for. Does
  /// not fail: a file that cannot be read is an empty database.
  void SetActive(bool active);
  bool Active() const { return FActive; }

  /// The model; an empty one while not active. Never null.
  const std::shared_ptr<const TSyntaxDatabase>& Database() const { return FDatabase; }

 private:
  std::string FFileName;
  bool FActive = false;
  std::shared_ptr<const TSyntaxDatabase> FDatabase;
};
