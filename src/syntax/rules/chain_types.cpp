#include "syntax/rules/chain_types.h"

#include <cstddef>

void TChainTypes::SetDeclared(std::string_view commaText) { FDeclared.SetCommaText(commaText); }

void TChainTypes::Restart() {
  FByPosition.clear();
  FPick.clear();
}

void TChainTypes::Record(int position, std::string_view type) {
  const auto place = static_cast<std::size_t>(position);
  if (FByPosition.size() <= place) FByPosition.resize(place + 1);
  FByPosition[place] = type;
}

void TChainTypes::Pick(int position, std::string_view type) {
  Record(position, type);
  if (position == 0) FPick = type;
}

std::string TChainTypes::TypeAt(int position, std::string_view object,
                                const TSyntaxNames& names) const {
  const auto spelled = [&names](std::string_view type) {
    const int index = type.empty() ? -1 : names.Types.IndexOf(type);
    return index < 0 ? std::string() : std::string(names.Types.At(index));
  };
  const auto place = static_cast<std::size_t>(position);
  std::string type;
  if (place < FByPosition.size()) type = spelled(FByPosition[place]);
  return type.empty() ? spelled(KnownType(object, names)) : type;
}

void TChainTypes::NoteFirstObject(std::string_view object, bool renamed, bool functionMode,
                                  const TSyntaxNames& names) {
  const bool isUndeclared = !functionMode && KnownType(object, names).empty();
  if (object != FFirstObject) {
    FFirstObject = object;
    if (!renamed) FPick.clear();
    // A name on the way to the right one may be known: the pick waits for the next that is not.
    if (!FByPosition.empty()) FByPosition.front() = isUndeclared ? FPick : std::string();
  }
  FUndeclaredName = isUndeclared ? object : std::string_view();
}

std::optional<std::string> TChainTypes::DeclareFirstObject(const TSyntaxNames& names) {
  // An indexed object or a call is no variable that a script could declare.
  const bool isVariable = !FUndeclaredName.empty() &&
                          FUndeclaredName.find_first_of("()") == std::string::npos &&
                          !names.IsFunction(FUndeclaredName);
  if (!isVariable || FByPosition.empty() || FByPosition.front().empty()) return std::nullopt;
  const std::string& type = FByPosition.front();
  if (FDeclared.Value(FUndeclaredName) == type) return std::nullopt;
  FDeclared.SetValue(FUndeclaredName, type);
  return FDeclared.CommaText();
}

std::string_view TChainTypes::KnownType(std::string_view object, const TSyntaxNames& names) const {
  if (object.empty()) return {};
  const std::string_view predefined = names.Predefined.Value(object);
  return predefined.empty() ? FDeclared.Value(object) : predefined;
}
