#include "text/string_list.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "text/collation.h"
#include "text/shared_text.h"

namespace {

using TLines = std::vector<std::string>;

TLines LinesOf(const TStringList& list) {
  TLines lines;
  for (int i = 0; i < list.Count(); ++i) lines.emplace_back(list.At(i));
  return lines;
}

/// What a list does, said as simply as can be.
class TModel {
 public:
  explicit TModel(TStringList::TOptions options) : FOptions(options) {}

  const TLines& Lines() const { return FLines; }

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

  const TStringList::TOptions FOptions;
  TLines FLines;
  std::vector<int> FSerials;  ///< of the lines, each given once
  int FLastSerial = 0;
  std::map<std::string, int> FSet;  ///< lines set last, where they are not the first of their name
};

struct TListCase {
  TStringList::TOptions Options;
  int Names;        ///< how many names and values lines are made of: few make many duplicates
  int DeleteShare;  ///< in percent of all operations
};

class StringListModel : public testing::TestWithParam<TListCase> {};

TEST_P(StringListModel, RandomOperationsAgreeWithTheModel) {
  const TListCase& c = GetParam();
  std::mt19937 random(4711);
  const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
  const auto name = [&] {
    const int number = below(c.Names);
    return (below(2) != 0 ? "caf\xE9" : "CAF\xC9") + std::to_string(number);
  };
  const auto value = [&] { return below(2) != 0 ? std::to_string(below(c.Names)) : "x"; };
  const auto line = [&] { return below(10) == 0 ? name() : name() + "=" + value(); };

  TStringList list(c.Options);
  TModel model(c.Options);
  for (int step = 0; step < 4000; ++step) {
    const int dice = below(100);
    const int count = static_cast<int>(model.Lines().size());
    if (dice < c.DeleteShare) {
      if (count == 0) continue;
      const int index = below(count);
      list.Delete(index);
      model.Delete(index);
    } else if (dice < 75) {
      const std::string text = line();
      ASSERT_EQ(list.Add(text), model.Add(text)) << text;
    } else {
      const std::string key = name();
      const std::string text = below(8) == 0 ? "" : value();
      list.SetValue(key, text);
      model.SetValue(key, text);
    }
    const std::string sought = line();
    ASSERT_EQ(list.IndexOf(sought), model.IndexOf(sought)) << sought;
    const std::string key = name();
    const int at = model.IndexOfName(key);
    ASSERT_EQ(list.IndexOfName(key), at) << key;
    const std::string expected = at < 0 ? "" : model.Lines()[static_cast<std::size_t>(at)];
    ASSERT_EQ(list.Value(key), expected.substr(expected.find('=') + 1)) << key;
    if (step % 500 == 499) {
      ASSERT_EQ(LinesOf(list), model.Lines());
    }
  }
  // Enough lines at some time to need several chunks, and back to none.
  while (list.Count() > 0) {
    const int index = below(list.Count());
    list.Delete(index);
    model.Delete(index);
    if (list.Count() % 97 == 0) {
      ASSERT_EQ(LinesOf(list), model.Lines());
    }
  }
  EXPECT_EQ(list.IndexOf(line()), -1);
}

std::vector<TListCase> AllOptions() {
  std::vector<TListCase> cases;
  for (int bits = 0; bits < 8; ++bits) {
    const TStringList::TOptions options{
        .Sorted = (bits & 1) != 0, .CaseSensitive = (bits & 2) != 0, .KeepDuplicates = bits >= 4};
    cases.push_back({options, 1000, 15});
    cases.push_back({options, 5, 30});
  }
  return cases;
}

INSTANTIATE_TEST_SUITE_P(AllOptions, StringListModel, testing::ValuesIn(AllOptions()));

TEST(StringList, CommaTextReads) {
  const struct {
    const char* Text;
    TLines Lines;
  } cases[] = {
      {"", {}},
      {"\"\"", {""}},
      {"a  b\tc", {"a", "b", "c"}},
      {" a , b ", {"a", "b"}},
      {"a,", {"a", ""}},
      {"a,,b", {"a", "", "b"}},
      {",", {"", ""}},
      {"\"a b", {"a b"}},
      {"\"a\"\"", {"a\""}},
      {"\"", {""}},
      {"\"a\"b", {"a", "b"}},
      {"a\"b c\"", {"a\"b", "c\""}},
      {"caf\xE9,\xA0", {"caf\xE9", "\xA0"}},
  };
  for (const auto& c : cases) {
    TStringList list({.CaseSensitive = true, .KeepDuplicates = true});
    list.Add("gone");
    list.SetCommaText(c.Text);
    EXPECT_EQ(LinesOf(list), c.Lines) << c.Text;
  }
}

TEST(StringList, CommaTextQuotesOnlyWhatNeedsIt) {
  TStringList list({.KeepDuplicates = true});
  for (const char* line : {"", "n=v", "a,b", "say \"x\"", "tab\there", "\xE9t\xE9", ""})
    list.Add(line);
  EXPECT_EQ(list.CommaText(), ",n=v,\"a,b\",\"say \"\"x\"\"\",\"tab\there\",\xE9t\xE9,");
  TStringList blank({});
  blank.Add("");
  EXPECT_EQ(blank.CommaText(), "\"\"");
  list.SetCommaText(list.At(2));
  EXPECT_EQ(LinesOf(list), (TLines{"a", "b"})) << "read from a line of its own";
}

TEST(StringList, CommaTextOfAnyLinesReadsBackTheSame) {
  std::mt19937 random(99);
  const std::string alphabet = "a=\", \t\x01\xE9\x7F\xA0";
  for (int round = 0; round < 3000; ++round) {
    TStringList list({.CaseSensitive = true, .KeepDuplicates = true});
    for (auto lines = random() % 6; lines != 0; --lines) {
      std::string line;
      for (auto length = random() % 5; length != 0; --length)
        line += random() % 4 == 0 ? static_cast<char>(1 + random() % 255)
                                  : alphabet[random() % alphabet.size()];
      list.Add(line);
    }
    TStringList back(list.Options());
    back.SetCommaText(list.CommaText());
    ASSERT_EQ(LinesOf(back), LinesOf(list)) << list.CommaText();
  }
}

TEST(StringList, LongLinesAndChangedOnesKeepTheirText) {
  TStringList list({});
  TModel model({});
  std::mt19937 random(5);
  // Values that grow and shrink leave dead text behind, enough of it to be cleaned up many times.
  for (int step = 0; step < 3000; ++step) {
    const std::string name = "n" + std::to_string(random() % 40);
    const std::string value(random() % 20 == 0 ? 40000 : random() % 3000, 'v');
    list.SetValue(name, value);
    model.SetValue(name, value);
  }
  EXPECT_EQ(LinesOf(list), model.Lines());
}

TEST(SharedText, TakesPartsOfItself) {
  TSharedText text;
  text.Set("un texte assez long pour ne pas tenir dans l'objet");
  const TSharedText copy = text;
  text.Append(text.View().substr(0, 2));
  EXPECT_EQ(text.View(), std::string(copy.View()) + "un");
  text.Set(text.View().substr(45));
  EXPECT_STREQ(text.CStr(), "objetun");
}

}  // namespace
