#include "syntax/rules/constant_value.h"

#include <algorithm>
#include <iterator>

#include "text/collation.h"
#include "text/trimmed.h"

namespace {

bool IsAdditive(const TSyntaxElement& list) { return list.Flag == "add"; }

}  // namespace

std::vector<TConstantCategory> ConstantCategories(const TSyntaxDatabase& database,
                                                  std::string_view filter) {
  TStringList exclusive({.Sorted = true}), additive({.Sorted = true});
  for (const TSyntaxElement& element : database.Elements()) {
    if (element.Kind != TSyntaxKind::List || element.Name.empty()) continue;
    if (!filter.empty() && filter.find(element.Name) == std::string_view::npos) continue;
    (IsAdditive(element) ? additive : exclusive).Add(element.Name);
  }
  std::vector<TConstantCategory> categories;
  for (const TStringList* names : {&exclusive, &additive})
    for (int i = 0; i < names->Count(); ++i)
      categories.push_back({std::string(names->At(i)), names == &additive});
  return categories;
}

int FindCategory(std::span<const TConstantCategory> categories, std::string_view name) {
  for (std::size_t i = categories.size(); i-- > 0;)
    if (SameText(categories[i].Name, name)) return static_cast<int>(i);
  return -1;
}

void TConstantChoice::Fill(const TSyntaxDatabase& database, std::string_view category) {
  TConstantChoice filled;
  for (const TSyntaxElement& element : database.Elements()) {
    if (element.Kind == TSyntaxKind::List && element.Name == category && !category.empty())
      filled.Take(element);
  }
  *this = std::move(filled);
}

void TConstantChoice::Take(const TSyntaxElement& list) {
  FType = list.Type;
  FAdditive = FAdditive || IsAdditive(list);
  FHelp.insert(FHelp.end(), list.Comments.begin(), list.Comments.end());
  for (const TSyntaxConstant& constant : list.Constants) {
    if (!constant.Listed) continue;
    FByName[UpperText(constant.Name)].push_back(Count());
    FNames.push_back(constant.Name);
    FConstantHelp.push_back(constant.Help);
  }
}

const std::string& TConstantChoice::ConstantHelp(int constant) const {
  const std::vector<int>& sameName = FByName.at(UpperText(Name(constant)));
  const auto help = [this](int i) -> const std::string& {
    return FConstantHelp[static_cast<std::size_t>(i)];
  };
  return help(*std::min_element(sameName.begin(), sameName.end(), [&](int a, int b) {
    return CompareText(help(a), help(b), false) < 0;
  }));
}

bool TConstantChoice::Ticked(int constant) const {
  return std::binary_search(FTicked.begin(), FTicked.end(), constant);
}

std::vector<int> TConstantChoice::Parse(std::string_view value) {
  std::vector<int> ticked;
  while (!value.empty()) {
    const std::size_t plus = value.find('+');
    const std::string_view piece = Trimmed(value.substr(0, plus));
    value.remove_prefix(plus == std::string_view::npos ? value.size() : plus + 1);
    const auto found = FByName.find(UpperText(piece));
    if (found != FByName.end())
      ticked.insert(ticked.end(), found->second.begin(), found->second.end());
  }
  std::sort(ticked.begin(), ticked.end());
  ticked.erase(std::unique(ticked.begin(), ticked.end()), ticked.end());
  return Replace(std::move(ticked));
}

std::vector<int> TConstantChoice::Tick(int constant, bool ticked) {
  std::vector<int> result;
  if (FAdditive) {
    result = FTicked;
    const auto at = std::lower_bound(result.begin(), result.end(), constant);
    const bool there = at != result.end() && *at == constant;
    if (ticked && !there) result.insert(at, constant);
    if (!ticked && there) result.erase(at);
  } else if (ticked) {
    result.push_back(constant);
  }
  return Replace(std::move(result));
}

std::string TConstantChoice::Value() const {
  std::string value;
  for (const int constant : FTicked) {
    if (!value.empty()) value += '+';
    value += Name(constant);
  }
  return value;
}

std::vector<int> TConstantChoice::Replace(std::vector<int> ticked) {
  std::vector<int> changed;
  std::set_symmetric_difference(FTicked.begin(), FTicked.end(), ticked.begin(), ticked.end(),
                                std::back_inserter(changed));
  FTicked = std::move(ticked);
  return changed;
}
