#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "syntax/rules/syntax_database.h"
#include "text/string_list.h"

/// A set of names compared without regard to letter case. Asked for every word of every repaint, so
/// a look-up allocates nothing and touches no other name unless the hashes meet.
class TNameSet {
 public:
  void Clear();
  /// Empty names are not added; a name already there is not added again.
  void Add(std::string_view name);
  bool Contains(std::string_view name) const;
  std::size_t Count() const;

 private:
  struct TSlot {
    std::uint32_t Hash;
    std::uint32_t Offset;  ///< of the name in FText, plus 1; 0 marks a free slot
    std::uint32_t Length;
  };
  /// The name's slot, or the free slot where it would go.
  const TSlot* Find(std::string_view name, std::uint32_t hash) const;
  void Grow();
  std::vector<TSlot> FSlots;  ///< none, or a power of two of them
  std::string FText;          ///< the names, one after another
  std::size_t FCount = 0;
};

/// Adds the names of types, plain ones and objects', to a list.
void CollectTypeNames(const TSyntaxDatabase& database, TStringList& names);

/// The name lists of the assistant.
struct TSyntaxNames {
  TNameSet Methods;    ///< ".Add" for each object's member, the name of each const with text
  TNameSet Functions;  ///< top-level methods
  TNameSet Constants;  ///< named children of lists
  TStringList Types{{.Sorted = true}};               ///< objects and types
  TStringList Predefined{{.KeepDuplicates = true}};  ///< name=type of each const

  /// A member with its leading dot, a function, or a predefined object that has text.
  bool IsMethod(std::string_view word) const;
  bool IsConstant(std::string_view word) const;
  bool IsFunction(std::string_view word) const;

  /// Rebuilds the three colouring lists (done once an instance).
  void BuildWords(const TSyntaxDatabase& database);
  /// Rebuilds type names and predefined objects (done at each analysis of a line).
  void BuildTypes(const TSyntaxDatabase& database);
};
