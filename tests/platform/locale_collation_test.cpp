#include "platform/locale_collation.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <random>

#include "platform/code_page.h"
#include "text/collation.h"

namespace {

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
    const auto extended = [&](std::string text) {
      for (auto length = random() % 5; length > 0; --length)
        text += round % 2 ? familiar[random() % familiar.size()]
                          : static_cast<char>(1 + random() % 255);
      return text;
    };
    const std::string start = extended(""), a = extended(start), b = extended(start);
    for (const bool exact : {true, false}) {
      const int systems = exact ? SystemsOrder(a, b) : SystemsOrder(UpperText(a), UpperText(b));
      if (systems == 0) continue;
      ++decided;
      const int ours = CompareText(a, b, exact);
      ASSERT_TRUE(systems < 0 ? ours < 0 : ours > 0) << a << " and " << b;
    }
  }
  EXPECT_GT(decided, 50'000);
}

}  // namespace
