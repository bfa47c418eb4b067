#pragma once

#include <string>
#include <string_view>
#include <vector>

/// What can be chosen in the operation type filter, what is, and what the choice means. Selections
/// are 0-based, -1 is none.
class TTypeFilter {
 public:
  TTypeFilter() = default;
  TTypeFilter(std::vector<std::string> types, std::vector<std::string> cards);

  const std::vector<std::string>& Types() const { return FTypes; }
  const std::vector<std::string>& Cards() const { return FCards; }
  int Type() const { return FType; }
  int Card() const { return FCard; }
  /// Whether the selected type is the one that a card or cheque book goes with.
  bool CardsEnabled() const;

  /// Selects what an earlier choice named: a type, else a card or cheque book. Letter case is
  /// ignored; an empty or unknown text selects nothing.
  void Preselect(std::string_view previous);
  /// Takes what the two lists show as selected after a click in either of them.
  void Choose(int type, int card);
  /// The text that the choice hands back; empty when nothing is chosen.
  std::string ChosenValue() const;

 private:
  std::vector<std::string> FTypes;
  std::vector<std::string> FCards;
  int FType = -1;
  int FCard = -1;
};
