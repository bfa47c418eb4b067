#pragma once

#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "syntax/rules/syntax_database.h"
#include "text/string_list.h"

/// A `list` of the database as a choice to the user. Lists of one name are one category, unless
/// some are additive and some not: those are offered once in each group.
struct TConstantCategory {
  std::string Name;
  bool Additive = false;  ///< several of its constants may be combined
};

/// The categories that have a name, exclusive ones first, each group in alphabetical order. A
/// filter that is not empty leaves only those whose name occurs in it, letter case counting: a list
/// made for one parameter then brings the general ones along that its name contains.
std::vector<TConstantCategory> ConstantCategories(const TSyntaxDatabase& database,
                                                  std::string_view filter);

/// Position of the last category of that name, letter case ignored, or -1.
int FindCategory(std::span<const TConstantCategory> categories, std::string_view name);

/// The constants of one category, and which of them make up a value. Constants are told by their
/// position. No operation but Fill costs more than the value and the ticked constants make it.
class TConstantChoice {
 public:
  /// The constants, help and type of every list of exactly this name, none of them ticked. An empty
  /// name gives an empty category.
  void Fill(const TSyntaxDatabase& database, std::string_view category);

  bool Additive() const { return FAdditive; }
  /// Type of the constants; the last list's when several make up the category.
  const std::string& Type() const { return FType; }
  /// Help on the category, line by line.
  const std::vector<std::string>& Help() const { return FHelp; }

  int Count() const { return static_cast<int>(FNames.size()); }
  const std::string& Name(int constant) const {
    return FNames.at(static_cast<std::size_t>(constant));
  }
  /// Of constants that share a name, letter case ignored, the help that sorts first.
  const std::string& ConstantHelp(int constant) const;
  bool Ticked(int constant) const;

  /// Ticks the constants that the value names between its "+", letter case and blanks around them
  /// ignored, and no others. Does not enforce exclusivity: a value that the user typed shows as it
  /// is. Gives the constants whose mark changed, in order.
  std::vector<int> Parse(std::string_view value);

  /// What the user's click on a box does; in an exclusive category all others lose their mark.
  /// Gives the constants whose mark changed, in order.
  std::vector<int> Tick(int constant, bool ticked);

  /// The ticked constants joined by "+", in order.
  std::string Value() const;

 private:
  void Take(const TSyntaxElement& list);
  std::vector<int> Replace(std::vector<int> ticked);

  bool FAdditive = false;
  std::string FType;
  std::vector<std::string> FHelp;
  std::vector<std::string> FNames;
  std::vector<std::string> FConstantHelp;
  std::unordered_map<std::string, std::vector<int>> FByName;  ///< by upper-cased name
  std::vector<int> FTicked;                                   ///< ascending
};
