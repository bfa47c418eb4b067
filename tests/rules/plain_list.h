#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "input.h"
#include "text/collation.h"
#include "text/comma_text.h"
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
    const auto index = std::ranges::count_if(FLines, [&](const std::string& other) {
      return !FOptions.Sorted || CompareText(other, line, FOptions.CaseSensitive) <= 0;
    });
    FLines.insert(FLines.begin() + index, line);
    FSetLast.insert(FSetLast.begin() + index, false);
    return static_cast<int>(index);
  }
  int IndexOf(const std::string& line) const {
    return Find([&](const std::string& other) { return Same(other, line); });
  }
  int IndexOfName(const std::string& name) const {
    for (std::size_t i = 0; i < FLines.size(); ++i)
      if (FSetLast[i] && HasName(FLines[i], name)) return static_cast<int>(i);
    return Find([&](const std::string& line) { return HasName(line, name); });
  }
  void Delete(int index) {
    FLines.erase(FLines.begin() + index);
    FSetLast.erase(FSetLast.begin() + index);
  }
  void SetValue(const std::string& name, const std::string& value) {
    const int at = IndexOfName(name);
    if (value.empty()) return at < 0 ? void() : Delete(at);
    if (at < 0) return void(Add(name + "=" + value));
    std::string& old = FLines[static_cast<std::size_t>(at)];
    const std::string line = old.substr(0, old.find('=') + 1) + value;
    if (Same(old, line)) {
      old = line;
    } else if (FOptions.Sorted) {
      Delete(at);
      const int now = Add(line);
      for (std::size_t i = 0; i < FLines.size(); ++i)
        if (HasName(FLines[i], name)) FSetLast[i] = false;
      FSetLast[static_cast<std::size_t>(now)] = IndexOfName(name) != now;
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
  bool HasName(const std::string& line, const std::string& name) const {
    const auto equals = line.find('=');
    return equals != std::string::npos && Same(line.substr(0, equals), name);
  }
  template <class TCondition>
  int Find(TCondition condition) const {
    const auto found = std::find_if(FLines.begin(), FLines.end(), condition);
    return found == FLines.end() ? -1 : static_cast<int>(found - FLines.begin());
  }

  TStringList::TOptions FOptions;
  std::vector<std::string> FLines;
  std::vector<bool> FSetLast;  ///< stands for its name, though it is not the first that has it
};

inline void ActOnBoth(TStringList& list, TPlainList& plain, TInput& input) {
  const int count = list.Count();
  const auto add = [&](const std::string& line) { Check(list.Add(line) == plain.Add(line)); };
  const std::function<void()> acts[] = {
      [&] {  // many lines at once, with names and values that meet
        const int names = 1 + input.Byte(), values = 1 + input.Below(8);
        for (int i = count > 300 ? 0 : 2 * input.Byte(); i > 0; --i)
          add("n" + std::to_string(i % names) + "=1" +
              std::string(static_cast<std::size_t>(100 * (i % values)), 'v'));
      },
      [&] { add(input.Text(';')); },
      [&] {
        for (int times = input.Byte(), at = input.Byte(); times > 0 && at < list.Count(); --times)
          list.Delete(at), plain.Delete(at);
      },
      [&] {
        const std::string name = input.Text('='), value = input.Text(';');
        list.SetValue(name, value), plain.SetValue(name, value);
      },
      [&] {
        const std::string text = input.Text(';');
        list.SetCommaText(text);
        plain = TPlainList(list.Options());
        TCommaReader reader(text);
        while (const auto line = reader.Next()) plain.Add(std::string(*line));
      },
      [&] {
        const std::string line(count ? list.At(input.Below(count)) : "");
        const std::string name = line.substr(0, line.find('='));
        for (const std::string& sought : {line, name, name + "1"}) {
          const int at = plain.IndexOfName(sought);
          const std::string named = at < 0 ? "" : plain.Lines()[static_cast<std::size_t>(at)];
          Check(list.IndexOf(sought) == plain.IndexOf(sought) && list.IndexOfName(sought) == at);
          Check(list.Value(sought) == named.substr(named.find('=') + 1));
        }
      },
  };
  acts[input.Below(6)]();
}

/// A list and the plain one, under any row of operations.
inline void CompareWithThePlainList(TInput input) {
  const TStringList::TOptions options{
      .Sorted = input.Bit(), .CaseSensitive = input.Bit(), .KeepDuplicates = input.Bit()};
  TStringList list(options);
  TPlainList plain(options);
  for (int steps = 0; !input.Empty() && steps < 40; ++steps) ActOnBoth(list, plain, input);
  Check(LinesOf(list) == plain.Lines());
  TStringList again({.KeepDuplicates = true});
  again.SetCommaText(list.CommaText());
  Check(LinesOf(again) == plain.Lines());
}
