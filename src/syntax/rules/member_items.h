#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "syntax/rules/syntax_database.h"

/// The members of a type as a box offers them: a method's name with "()", a property's bare, sorted
/// by text. A copy: it outlives the database.
class TMemberItems {
 public:
  static constexpr int MethodImage = 0;
  static constexpr int DataImage = 2;

  TMemberItems() = default;
  /// The methods and properties of an object type.
  explicit TMemberItems(const TSyntaxElement& object);
  /// The functions, which need no object.
  explicit TMemberItems(const TSyntaxDatabase& functions);

  int Count() const { return static_cast<int>(FItems.size()); }
  /// Of an index from 0 to Count() - 1.
  const std::string& Text(int index) const { return Item(index).Text; }
  int Image(int index) const { return Item(index).Image; }
  /// The text without its "()".
  std::string_view Name(int index) const;
  /// First item of that name ignoring letter case, or -1.
  int Find(std::string_view name) const;

 private:
  struct TItem {
    std::string Text;
    int Image;
  };
  const TItem& Item(int index) const { return FItems.at(static_cast<std::size_t>(index)); }
  void Add(const TSyntaxMember& member);
  void Arrange();

  std::vector<TItem> FItems;
  std::unordered_map<std::string, int> FIndex;  ///< by upper-cased name
};
