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
  const std::string_view signs = ";;;;==,\" nN1\xE9\xC9";
  for (int run = 0; run < 200; ++run) {
    std::string input;
    for (int i = 0; i < 300; ++i) {
      input += random() % 2 != 0 ? signs[random() % signs.size()] : static_cast<char>(random());
      if (random() % 200 == 0) input.append(random() % 40000, 'v');
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
