#include <gtest/gtest.h>

#include <algorithm>

#include "forms/rules/burst_budget.h"
#include "forms/rules/text_wrap.h"

TEST(TextWrap, BreaksAtBlanksAndInsideWordsThatAreTooLong) {
  constexpr std::size_t Width = 6;
  constexpr std::size_t Most = 4;
  const std::pair<std::wstring, std::vector<std::wstring>> texts[] = {
      {L"", {}},
      {L"le solde du mois", {L"le", L"solde", L"du", L"mois"}},
      {L"a bc  de fg", {L"a bc", L"de fg"}},
      {L"123456 x", {L"123456", L"x"}},
      {L"x        ", {L"x"}},
      {L"         ", {L""}},
      {L"  indentation", {L"  inde", L"ntatio", L"n"}},
      {L"a interminable", {L"a", L"interm", L"inable"}},
      {L"a\nb\r\nc\rd", {L"a", L"b", L"c", L"d"}},
      {L"a\n\nb\n", {L"a", L"", L"b"}},
      {L"12345\xD83D\xDC00", {L"12345", L"\xD83D\xDC00"}},
      {L"a b c d e f g h i j k l m n", {L"a b c", L"d e f", L"g h i", L"j k l\x2026"}},
      {L"a\nb\nc\nvirement annuel", {L"a", L"b", L"c", L"virem\x2026"}},
  };
  for (const auto& [text, lines] : texts) {
    const auto fitting = [&](std::wstring_view line) { return std::min(line.size(), Width); };
    EXPECT_EQ(WrapText(text, Most, fitting), lines);
  }
  const auto nothingFits = [](std::wstring_view) { return std::size_t{0}; };
  EXPECT_EQ(WrapText(L"abc", Most, nothingFits), (std::vector<std::wstring>{L"a", L"b", L"c"}));
  EXPECT_EQ(WrapText(L"abc", 2, nothingFits), (std::vector<std::wstring>{L"a", L"\x2026"}));
  EXPECT_EQ(WrapText(L"\xD83D\xDFFFx", Most, nothingFits),
            (std::vector<std::wstring>{L"\xD83D\xDFFF", L"x"}));
}

TEST(BurstBudget, HoldsBackFloodsAlone) {
  using namespace std::chrono_literals;
  const auto start = TBurstBudget::TTime(1h);
  const struct {
    TBurstBudget::TSpan Piece;
    int AtOnce;  ///< pieces that come without a pause and need not wait
  } floods[] = {{1ms, 200}, {10ms, 20}, {100ms, 10}, {1s, 10}};
  for (const auto& [piece, atOnce] : floods) {
    TBurstBudget budget;
    auto now = start;
    auto worked = 0ns;
    int count = 0;
    const auto work = [&] {
      budget.Spend(now, now + piece);
      now += piece;
      worked += piece;
    };
    for (; budget.Next() <= now && count < 1000; ++count) work();
    EXPECT_NEAR(count, atOnce, atOnce > 10 ? atOnce / 5 + 1 : 0);
    // From then on it has its share.
    const auto since = now;
    worked = 0ns;
    while (now < since + 1000 * piece) {
      now = std::max(now, budget.Next());
      work();
    }
    EXPECT_NEAR(std::chrono::duration<double>(worked) / (now - since), 0.1, 0.005);
    // Once its share has made up for the work all is as at the start.
    now = budget.Next() + TBurstBudget::kShareOfTime * TBurstBudget::kBurst;
    EXPECT_LE(budget.Next(), now);
    work();
    EXPECT_LE(budget.Next(), now);
  }
}
