#include "text/collation.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

TEST(Collation, UpperCaseOfWindows1252) {
  const struct {
    const char* Lower;
    const char* Upper;
  } cases[] = {
      {"azAZ09_@`{", "AZAZ09_@`{"},
      {"\xE0\xE9\xEE\xF5\xFC\xFE", "\xC0\xC9\xCE\xD5\xDC\xDE"},
      {"\x9A\x9C\x9E\xFF", "\x8A\x8C\x8E\x9F"},
      {"\xF7\xD7", "\xF7\xD7"},                          // division, multiplication
      {"\xDF\xB5\x83\xAA\xBA", "\xDF\xB5\x83\xAA\xBA"},  // no capital in the code page
  };
  for (const auto& c : cases) {
    EXPECT_EQ(UpperText(c.Lower), c.Upper);
    EXPECT_TRUE(SameText(c.Lower, c.Upper));
    EXPECT_EQ(HashText(c.Lower, false), HashText(c.Upper, false));
    EXPECT_EQ(CompareText(c.Lower, c.Upper, false), 0);
  }
  EXPECT_FALSE(SameText("\xF7", "\xD7"));
  EXPECT_FALSE(SameText("ab", "abc"));
  EXPECT_FALSE(SameText("e", "\xE9"));
}

TEST(Collation, OrderIsByUnsignedBytesWithoutALocale) {
  // An upper-cased letter stands before the underscore.
  const std::vector<const char*> orders[] = {{"", "a", "ab", "Z", "_", "\xE9"},
                                             {"", "Z", "_", "a", "ab", "\xE9"}};
  for (const bool caseSensitive : {false, true}) {
    const auto& order = orders[caseSensitive];
    for (std::size_t i = 1; i < order.size(); ++i) {
      EXPECT_LT(CompareText(order[i - 1], order[i], caseSensitive), 0) << order[i];
      EXPECT_GT(CompareText(order[i], order[i - 1], caseSensitive), 0) << order[i];
    }
  }
}

class LocaleCollation : public testing::Test {
 protected:
  LocaleCollation() : FBefore(UserCollation()) {
    TCollation rules = FBefore;
    // Hyphens count for nothing, as in word sorting.
    rules.LocaleOrder = [](std::string_view a, std::string_view b) {
      std::string left(a), right(b);
      std::erase(left, '-');
      std::erase(right, '-');
      return left.compare(right);
    };
    SetUserCollation(rules);
  }
  ~LocaleCollation() override { SetUserCollation(FBefore); }

 private:
  const TCollation FBefore;
};

TEST_F(LocaleCollation, LocaleDecidesAndBytesSettleWhatItCannot) {
  EXPECT_LT(CompareText("b-a", "bb", false), 0);
  EXPECT_GT(CompareText("B-C", "ba", false), 0) << "the locale is asked about upper-cased texts";
  EXPECT_NE(CompareText("co-op", "coop", false), 0) << "not the same text, so never equal in order";
  EXPECT_EQ(CompareText("co-op", "coop", false) < 0, CompareText("coop", "co-op", false) > 0);
  EXPECT_EQ(CompareText("Co-op", "co-Op", false), 0);
  const std::string longText(1000, 'x');
  EXPECT_LT(CompareText(longText + "-a", longText + "b", false), 0);
}

}  // namespace
