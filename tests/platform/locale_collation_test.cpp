#include "platform/locale_collation.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <random>
#include <string>

#include "platform/code_page.h"
#include "text/collation.h"

namespace {

int Sign(int order) { return (order > 0) - (order < 0); }

int SystemsOrder(const std::string& a, const std::string& b) {
  return CompareStringW(LOCALE_USER_DEFAULT, 0, ToWide(a).c_str(), -1, ToWide(b).c_str(), -1) -
         CSTR_EQUAL;
}

TEST(LocaleCollation, OrdersAsTheSystemDoes) {
  UseLocaleCollation();
  std::mt19937 random(11);
  const std::string familiar = "aAbe\xE9\xC9\xE8z09 -'=.,\x9C\xDF";
  int decided = 0;
  for (int round = 0; round < 50'000; ++round) {
    const auto text = [&](const std::string& start) {
      std::string result = start;
      for (auto length = random() % 5; length > 0; --length)
        result += round % 2 ? familiar[random() % familiar.size()]
                            : static_cast<char>(1 + random() % 255);
      return result;
    };
    const std::string start = text("");
    const std::string a = text(start);
    const std::string b = text(start);
    for (const bool caseSensitive : {true, false}) {
      const int systems =
          caseSensitive ? SystemsOrder(a, b) : SystemsOrder(UpperText(a), UpperText(b));
      if (systems == 0) continue;
      ++decided;
      ASSERT_EQ(Sign(CompareText(a, b, caseSensitive)), Sign(systems)) << a << " and " << b;
    }
  }
  EXPECT_GT(decided, 50'000);
}

}  // namespace
