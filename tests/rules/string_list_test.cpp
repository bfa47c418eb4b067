#include "text/string_list.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "plain_list.h"
#include "text/shared_text.h"

namespace {

using TLines = std::vector<std::string>;

TEST(StringList, RandomOperationsAgreeWithThePlainList) {
  std::mt19937 random(4711);
  // Most set the value of one of a few names, to one of a few values or to a long one.
  const std::string_view acts{"\0\1\1\2\3\3\3\3\5\5", 10};
  for (int run = 0; run < 600; ++run) {
    std::string input;
    for (int option = 0; option < 3; ++option) input += static_cast<char>(random() % 2);
    for (int step = 0; step < 40; ++step) {
      const char act = acts[random() % acts.size()];
      const std::string name = (random() % 2 != 0 ? "n" : "N") + std::to_string(random() % 3);
      const std::string value(random() % 8 == 0 ? random() % 40000 : random() % 4, '1');
      input += act;
      if (act % 2 != 0) input += name + "=" + value + ";";
      for (int i = 0; i < 3 && act % 2 == 0; ++i)
        input += static_cast<char>(random() % (8 << step % 6));
    }
    CompareWithThePlainList(TInput(input));
  }
}

TEST(StringList, CommaTextReads) {
  const std::pair<const char*, TLines> cases[] = {{"", {}},
                                                  {"\"\"", {""}},
                                                  {"\"a b", {"a b"}},
                                                  {"\"", {""}},
                                                  {"\"a\"\"", {"a\""}},
                                                  {",", {"", ""}},
                                                  {"a,", {"a", ""}},
                                                  {"a,,b", {"a", "", "b"}},
                                                  {" a , b ", {"a", "b"}},
                                                  {"a  b\tc", {"a", "b", "c"}},
                                                  {"\"a\"b", {"a", "b"}},
                                                  {"a\"b c\"", {"a\"b", "c\""}},
                                                  {"caf\xE9,\xA0", {"caf\xE9", "\xA0"}},
                                                  {"\"a\"\"b\",\"c\"\"d\"", {"a\"b", "c\"d"}}};
  for (const auto& [text, lines] : cases) {
    TStringList list({.CaseSensitive = true, .KeepDuplicates = true});
    list.Add("gone");
    list.SetCommaText(text);
    EXPECT_EQ(LinesOf(list), lines) << text;
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
  for (const int index : {-1, 1}) EXPECT_THROW(blank.At(index), std::out_of_range);
  blank.Clear();
  EXPECT_EQ(blank.Count(), 0);
  list.SetCommaText(list.At(2));
  EXPECT_EQ(LinesOf(list), (TLines{"a", "b"})) << "read from a line of its own";
}

TEST(StringList, KeysOfOneHashAreTwo) {
  const std::string keys[][2] = {{"n57707", "n294430"}, {"n512789", "n749192"}};
  for (const bool caseSensitive : {false, true}) {
    const auto& [one, other] = keys[caseSensitive];
    ASSERT_EQ(HashText(one, caseSensitive), HashText(other, caseSensitive)) << "look for others";
    TStringList list({.CaseSensitive = caseSensitive});
    EXPECT_EQ(list.Add(one), 0);
    EXPECT_EQ(list.Add(other), 1);
    EXPECT_EQ(list.IndexOf(other), 1);
    list.Delete(0);
    EXPECT_EQ(list.IndexOf(one), -1);
    EXPECT_EQ(list.IndexOf(other), 0);
  }
}

TEST(SharedText, TakesPartsOfItself) {
  TSharedText text;
  text.Set("un texte assez long pour ne pas tenir dans l'objet");
  const TSharedText copy = text;
  text.Append(std::string(60, '!'));
  text.Append(text.View().substr(0, 2));
  EXPECT_EQ(text.View(), std::string(copy.View()) + std::string(60, '!') + "un");
  text.Set(text.View().substr(105));
  EXPECT_STREQ(text.CStr(), "!!!!!un");
  text.Set("");
  EXPECT_STREQ(text.CStr(), "");
  text.Set("x");
  text.Take("");
  EXPECT_STREQ(text.CStr(), "");
}

}  // namespace
