#pragma once

#include <map>
#include <string>

/// What the syntax database says of functions and of the members of objects.
class TScriptHelp {
 public:
  /// Nothing is known when the file cannot be read.
  explicit TScriptHelp(const std::wstring& file);

  /// How the name is called and what it does, on two lines; empty when it is unknown. A member's
  /// name has its leading dot; of members that share a name, the first in the file is meant.
  std::wstring Find(const std::wstring& name) const;

 private:
  std::map<std::wstring, std::wstring> FTexts;
};
