#include "filter/rules/type_filter.h"

#include <gtest/gtest.h>

namespace {

using TLines = std::vector<std::string>;

const TLines Types = {"Virement", "CB/Chq", "Especes"};
const TLines Cards = {"Visa", "Cheques 1", "Cheques 2"};

TEST(TypeFilter, OpensOnTheEarlierChoice) {
  const struct {
    TLines Types, Cards;
    const char* Previous;
    int Type, Card;
    const char* Chosen;  ///< by OK at once
  } cases[] = {{Types, Cards, "", -1, -1, ""},
               {Types, Cards, "Vire", -1, -1, ""},
               {Types, Cards, "ESPECES", 2, -1, "Especes"},
               {Types, Cards, "CB/Chq", 1, 0, "Visa"},
               {Types, Cards, "cheques 2", 1, 2, "Cheques 2"},
               {Types, {}, "CB/Chq", 1, -1, ""},
               {{"Virement"}, Cards, "Visa", -1, 0, ""},
               {{"", "Virement"}, {""}, "", -1, -1, ""},
               {{"Virement", "cb/chq"}, Cards, "Visa", 1, 0, "cb/chq"},
               {{"Visa"}, Cards, "Visa", 0, -1, "Visa"},
               {{}, {}, "Virement", -1, -1, ""}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.Previous);
    TTypeFilter filter(c.Types, c.Cards);
    filter.Preselect(c.Previous);
    EXPECT_EQ(filter.Type(), c.Type);
    EXPECT_EQ(filter.Card(), c.Card);
    EXPECT_EQ(filter.ChosenValue(), c.Chosen);
    // Only the very words open the list of cards.
    EXPECT_EQ(filter.CardsEnabled(), c.Type >= 0 && filter.Types()[c.Type] == "CB/Chq");
  }
}

TEST(TypeFilter, CardsFollowTheType) {
  TTypeFilter filter(Types, Cards);
  const struct {
    int Type, Card, ShownCard;
    const char* Chosen;
  } clicks[] = {
      {-1, -1, -1, ""},     {0, -1, -1, "Virement"}, {1, -1, 0, "Visa"}, {1, 2, 2, "Cheques 2"},
      {2, 2, 2, "Especes"}, {1, 2, 2, "Cheques 2"},  {-1, 2, 2, ""},
  };
  for (const auto& click : clicks) {
    filter.Choose(click.Type, click.Card);
    EXPECT_EQ(filter.Card(), click.ShownCard);
    EXPECT_EQ(filter.ChosenValue(), click.Chosen);
  }
}

}  // namespace
