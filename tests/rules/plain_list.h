#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "text/collation.h"
#include "text/string_list.h"

inline std::vector<std::string> LinesOf(const TStringList& list) {
  std::vector<std::string> lines;
  for (int i = 0; i < list.Count(); ++i) lines.emplace_back(list.At(i));
  return lines;
}

/// What a list does, said as simply as can be.
class TPlainList {
 public:
  explicit TPlainList(TStringList::TOptions options) : FOptions(options) {}

  const std::vector<std::string>& Lines() const { return FLines; }

  int Add(const std::string& line) {
    if (const int at = IndexOf(line); at >= 0 && !FOptions.KeepDuplicates) return at;
    auto place = FLines.end();
    if (FOptions.Sorted) {
      place = std::find_if(FLines.begin(), FLines.end(), [&](const std::string& other) {
        return CompareText(other, line, FOptions.CaseSensitive) > 0;
      });
    }
    const auto index = place - FLines.begin();
    FLines.insert(place, line);
    FSerials.insert(FSerials.begin() + index, ++FLastSerial);
    return static_cast<int>(index);
  }
  int IndexOf(const std::string& line) const {
    return Find([&](const std::string& other) { return Same(other, line); });
  }
  int IndexOfName(const std::string& name) const {
    if (const auto set = FSet.find(Key(name)); set != FSet.end()) {
      const auto line = std::ranges::find(FSerials, set->second);
      if (line != FSerials.end()) return static_cast<int>(line - FSerials.begin());
    }
    return FirstOfName(name);
  }
  int FirstOfName(const std::string& name) const {
    return Find([&](const std::string& other) {
      const auto equals = other.find('=');
      return equals != std::string::npos && Same(other.substr(0, equals), name);
    });
  }
  void Delete(int index) {
    FLines.erase(FLines.begin() + index);
    FSerials.erase(FSerials.begin() + index);
  }
  void SetValue(const std::string& name, const std::string& value) {
    const int at = IndexOfName(name);
    if (value.empty()) {
      if (at >= 0) Delete(at);
      return;
    }
    if (at < 0) {
      Add(name + "=" + value);
      return;
    }
    std::string& old = FLines[static_cast<std::size_t>(at)];
    const std::string line = old.substr(0, old.find('=') + 1) + value;
    if (Same(old, line)) {
      old = line;
    } else if (FOptions.Sorted) {
      Delete(at);
      const int now = Add(line);
      FSet.erase(Key(name));
      if (FirstOfName(name) != now) FSet[Key(name)] = FSerials[static_cast<std::size_t>(now)];
    } else {
      const int equal = IndexOf(line);
      old = line;
      if (equal >= 0 && !FOptions.KeepDuplicates) Delete(equal);
    }
  }

 private:
  bool Same(const std::string& a, const std::string& b) const {
    return FOptions.CaseSensitive ? a == b : SameText(a, b);
  }
  template <class TCondition>
  int Find(TCondition condition) const {
    const auto found = std::find_if(FLines.begin(), FLines.end(), condition);
    return found == FLines.end() ? -1 : static_cast<int>(found - FLines.begin());
  }

  std::string Key(const std::string& name) const {
    return FOptions.CaseSensitive ? name : UpperText(name);
  }

  TStringList::TOptions FOptions;
  std::vector<std::string> FLines;
  std::vector<int> FSerials;  ///< of the lines, each given once
  int FLastSerial = 0;
  std::map<std::string, int> FSet;  ///< lines set last, where they are not the first of their name
};
