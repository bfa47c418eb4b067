#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "syntax/rules/syntax_names.h"
#include "text/string_list.h"

/// What is known of the types of the objects of one chain: declared variables of the script, types
/// chosen or found out position by position, and the first object when nothing gives its type.
class TChainTypes {
 public:
  /// The script's variables, as comma text of name=type entries.
  void SetDeclared(std::string_view commaText);
  /// Forgets all but the declared variables.
  void Restart();

  /// Records a type for the object at a position (0 and up).
  void Record(int position, std::string_view type);
  /// Records the type that the user picked for the object at a position.
  void Pick(int position, std::string_view type);
  /// The recorded type, else that of a predefined object or declared variable of that text, spelled
  /// as the type names spell it; empty when it is unknown or not one of them.
  std::string TypeAt(int position, std::string_view object, const TSyntaxNames& names) const;

  /// Takes note of the chain's first object. What was recorded for another one is dropped, but the
  /// user's pick stays with an object that is merely renamed, unless the new name's type is known.
  void NoteFirstObject(std::string_view object, bool renamed, bool functionMode,
                       const TSyntaxNames& names);
  const std::string& FirstObject() const { return FFirstObject; }
  /// Declares the undeclared variable when a type was recorded for it: all declared variables as
  /// comma text, or nothing when there is nothing new to declare.
  std::optional<std::string> DeclareFirstObject(const TSyntaxNames& names);

 private:
  std::string_view KnownType(std::string_view object, const TSyntaxNames& names) const;

  TStringList FDeclared{{.KeepDuplicates = true}};
  std::vector<std::string> FByPosition;
  std::string FFirstObject;
  std::string FPick;            ///< the type that the user picked for the first object
  std::string FUndeclaredName;  ///< the first object when neither list knows it, else empty
};
