#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "text/string_list.h"

/// The variables of the script being edited, each with the name of its type, in order of arrival.
/// Names are told apart without regard to letter case. An entry of the host's that has no name is
/// kept and handed back, but is no variable. Every operation but reading or writing them all costs
/// about the same however many there are.
class TScriptVariables {
 public:
  /// Takes the host's comma text of name=type entries; they count as unchanged.
  void Load(std::string_view commaText);
  /// Takes other entries, as a change.
  void Replace(std::string_view commaText);
  std::string CommaText() const { return FEntries.CommaText(); }

  /// Whether the variables were changed since they were loaded, or since this was cleared.
  bool Changed() const { return FChanged; }
  void ClearChanged() { FChanged = false; }

  std::vector<std::string> Names() const;
  bool Exists(std::string_view name) const { return FEntries.IndexOfName(name) >= 0; }
  /// Empty when there is no such variable. Valid until the next change.
  std::string_view Type(std::string_view name) const { return FEntries.Value(name); }

  /// Adds a variable of the most common type, or gives that type to the one there is.
  void Add(std::string_view name);
  /// The variable moves to the end.
  void Rename(std::string_view name, std::string_view newName);
  /// An empty type removes the variable.
  void SetType(std::string_view name, std::string_view type);
  void Delete(std::string_view name);

 private:
  TStringList FEntries{{.KeepDuplicates = true}};
  bool FChanged = false;
};

enum class TVariablesDefault { OK, Add, Rename };

/// What an edit of a name does to the buttons; one that is not mentioned stays as it is.
struct TVariablesButtons {
  std::optional<bool> AddEnabled;
  std::optional<bool> RenameEnabled;
  TVariablesDefault Default = TVariablesDefault::OK;

  bool operator==(const TVariablesButtons&) const = default;
};

/// What the user has before him in the editor of the variables.
struct TVariablesInput {
  std::string_view NewName;    ///< of the variable to be added
  bool Selected = false;       ///< a variable is selected
  std::string_view OtherName;  ///< that the selected variable shall have
};

/// So that Enter adds a variable while a fresh name is typed, renames one while a free name is
/// typed, and otherwise closes with OK.
TVariablesButtons ButtonsAfterNewName(const TScriptVariables& variables,
                                      const TVariablesInput& input);
TVariablesButtons ButtonsAfterOtherName(const TScriptVariables& variables,
                                        const TVariablesInput& input);
