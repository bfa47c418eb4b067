#include "text/collation.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

void ExpectSame(const char* text, const char* upper) {
  EXPECT_EQ(UpperText(text), upper);
  EXPECT_TRUE(SameText(text, upper)) << text;
  EXPECT_EQ(HashText(text, false), HashText(upper, false)) << text;
  EXPECT_EQ(CompareText(text, upper, false), 0) << text;
}

TEST(Collation, UpperCaseOfWindows1252) {
  const std::pair<const char*, const char*> cases[] = {
      {"azAZ09_@`{", "AZAZ09_@`{"},
      {"\xE0\xE9\xEE\xF5\xFC\xFE", "\xC0\xC9\xCE\xD5\xDC\xDE"},
      {"\x9A\x9C\x9E\xFF", "\x8A\x8C\x8E\x9F"},
      {"\xF7\xD7", "\xF7\xD7"},                          // division, multiplication
      {"\xDF\xB5\x83\xAA\xBA", "\xDF\xB5\x83\xAA\xBA"},  // no capital in the code page
  };
  for (const auto& [lower, upper] : cases) ExpectSame(lower, upper);
  EXPECT_FALSE(SameText("\xF7", "\xD7") || SameText("ab", "abc") || SameText("e", "\xE9"));
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

/// Other rules as long as a test runs.
struct OtherRules : testing::Test {
  ~OtherRules() override { SetUserCollation(Before); }
  const TCollation Before = UserCollation();
};

TEST_F(OtherRules, LocaleDecidesAndBytesSettleWhatItCannot) {
  TCollation rules = UserCollation();
  // Hyphens count for nothing, as in word sorting.
  rules.LocaleOrder = [](std::string_view a, std::string_view b) {
    std::string left(a), right(b);
    std::erase(left, '-');
    std::erase(right, '-');
    return left.compare(right);
  };
  SetUserCollation(rules);
  EXPECT_LT(CompareText("b-a", "bb", false), 0);
  EXPECT_LT(CompareText("a.b", "a-x", false), 0);
  EXPECT_GT(CompareText("B-C", "ba", false), 0) << "the locale is asked about upper-cased texts";
  EXPECT_EQ(CompareText("co-op", "coop", false) < 0, CompareText("coop", "co-op", false) > 0);
  EXPECT_EQ(CompareText("Co-op", "co-Op", false), 0);
  const std::string longText(1000, 'x');
  EXPECT_LT(CompareText(longText + "-a", longText + "b", false), 0);
}

// Of a code page where 0x83 begins a character of two bytes: "\x83\x5B" is the small form of
// "\x83\x7C", and "\x83\x5D" that of "\xA1", of one byte.
TEST_F(OtherRules, CharactersOfSeveralBytes) {
  TCollation rules = UserCollation();
  rules.LeadBytes[0x83] = true;
  rules.UpperCharacter = [](std::string_view text) noexcept -> TUpperCharacter {
    if (text.starts_with("\x83\x5B")) return {{'\x83', '\x7C'}, 2, 2};
    if (text.starts_with("\x83\x5D")) return {{'\xA1'}, 1, 2};
    const bool pair = text.size() > 1 && text[0] == '\x83' && text[1] >= '@';
    const unsigned char length = pair ? 2 : 1;
    return {{text[0], pair ? text[1] : '\0'}, length, length};
  };
  SetUserCollation(rules);
  const struct {
    const char *Text, *Upper, *Masked;
  } cases[] = {
      {"a\x83\x5B[", "A\x83\x7C[", "a\x80\x80["},
      {"\x83\x5D.b", "\xA1.B", "\x80\x80.b"},
      {"\x83\x61", "\x83\x61", "\x80\x80"},  // its second byte is no letter
      {"\x83\x83\x5C\\", "\x83\x83\x5C\\", "\x80\x80\\\\"},
      {"\x83,a\x83", "\x83,A\x83", "\x83,a\x83"},  // no characters
  };
  for (const auto& c : cases) {
    ExpectSame(c.Text, c.Upper);
    EXPECT_EQ(MaskDoubleBytes(c.Text), c.Masked);
    EXPECT_NE(CompareText(c.Text, c.Upper, true) == 0, c.Text != std::string_view(c.Upper));
  }
  EXPECT_FALSE(SameText("\x83\x61", "\x83\x41") || SameText("\x83\x5D", "\xA1\xA1"));
  EXPECT_LT(CompareText("\x83\x5B", "\x83\x5B\x83\x5B", false), 0);
}

}  // namespace
