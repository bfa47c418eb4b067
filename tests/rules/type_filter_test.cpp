#include "filter/rules/type_filter.h"

#include <gtest/gtest.h>

namespace {

using TTexts = std::vector<std::string>;

const TTexts SomeTypes = {"Virement", "CB/Chq", "Pr\xE9l\xE8vement"};
const TTexts SomeCards = {"Visa", "Chq 001", "virement"};

TEST(TypeFilter, PreselectsAnEarlierChoice) {
  const struct {
    TTexts Types;
    TTexts Cards;
    const char* Previous;
    int Type;
    int Card;
    bool CardsEnabled;
    const char* Value;
  } cases[] = {
      {SomeTypes, SomeCards, "", -1, -1, false, ""},
      {SomeTypes, SomeCards, "Autre", -1, -1, false, ""},
      {SomeTypes, SomeCards, "Vis", -1, -1, false, ""},  // the whole text only
      {SomeTypes, SomeCards, "PR\xC9L\xC8VEMENT", 2, -1, false, "Pr\xE9l\xE8vement"},
      {SomeTypes, SomeCards, "virement", 0, -1, false, "Virement"},  // types come first
      {SomeTypes, SomeCards, "cb/chq", 1, 0, true, "Visa"},
      {SomeTypes, SomeCards, "CHQ 001", 1, 1, true, "Chq 001"},
      {SomeTypes, {}, "CB/Chq", 1, -1, true, ""},
      {{"Virement"}, SomeCards, "Visa", -1, 0, false, ""},
      // Found ignoring case, but only the exact text opens the cards.
      {{"", "cb/chq"}, SomeCards, "Visa", 1, 0, false, "cb/chq"},
      {{}, {}, "Visa", -1, -1, false, ""},
  };
  for (const auto& c : cases) {
    TTypeFilter filter(c.Types, c.Cards);
    filter.Preselect(c.Previous);
    EXPECT_EQ(filter.Type(), c.Type) << c.Previous;
    EXPECT_EQ(filter.Card(), c.Card) << c.Previous;
    EXPECT_EQ(filter.CardsEnabled(), c.CardsEnabled) << c.Previous;
    EXPECT_EQ(filter.ChosenValue(), c.Value) << c.Previous;
  }
}

TEST(TypeFilter, KeepsTheCardWhileAnotherTypeIsChosen) {
  TTypeFilter filter(SomeTypes, SomeCards);
  filter.Choose(1, -1);
  EXPECT_EQ(filter.ChosenValue(), "Visa") << "the first card is taken when none is";
  filter.Choose(1, 1);
  filter.Choose(0, filter.Card());
  EXPECT_FALSE(filter.CardsEnabled());
  EXPECT_EQ(filter.ChosenValue(), "Virement");
  filter.Choose(1, filter.Card());
  EXPECT_EQ(filter.ChosenValue(), "Chq 001");
}

}  // namespace
