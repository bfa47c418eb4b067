#include "filter/rules/type_filter.h"

#include <algorithm>
#include <utility>

#include "text/collation.h"

namespace {

constexpr std::string_view kCardType = "CB/Chq";

/// As list boxes search: the whole text, letter case ignored.
int IndexOf(const std::vector<std::string>& items, std::string_view text) {
  const auto found = std::find_if(items.begin(), items.end(),
                                  [&](const std::string& item) { return SameText(item, text); });
  return found == items.end() ? -1 : static_cast<int>(found - items.begin());
}

std::string ItemAt(const std::vector<std::string>& items, int index) {
  return index < 0 ? std::string() : items.at(static_cast<std::size_t>(index));
}

}  // namespace

TTypeFilter::TTypeFilter(std::vector<std::string> types, std::vector<std::string> cards)
    : FTypes(std::move(types)), FCards(std::move(cards)) {}

bool TTypeFilter::CardsEnabled() const { return ItemAt(FTypes, FType) == kCardType; }

void TTypeFilter::Preselect(std::string_view previous) {
  if (previous.empty()) return;
  if (const int type = IndexOf(FTypes, previous); type >= 0) {
    Choose(type, FCard);
  } else if (const int card = IndexOf(FCards, previous); card >= 0) {
    Choose(IndexOf(FTypes, kCardType), card);
  }
}

void TTypeFilter::Choose(int type, int card) {
  FType = type;
  FCard = card;
  if (CardsEnabled() && !FCards.empty()) FCard = std::max(FCard, 0);
}

std::string TTypeFilter::ChosenValue() const {
  return CardsEnabled() ? ItemAt(FCards, FCard) : ItemAt(FTypes, FType);
}
