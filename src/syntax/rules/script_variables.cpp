#include "syntax/rules/script_variables.h"

namespace {

constexpr std::string_view kFirstType = "Cpt";

}  // namespace

void TScriptVariables::Load(std::string_view commaText) {
  FEntries.SetCommaText(commaText);
  FChanged = false;
}

void TScriptVariables::Replace(std::string_view commaText) {
  FEntries.SetCommaText(commaText);
  FChanged = true;
}

std::vector<std::string> TScriptVariables::Names() const {
  std::vector<std::string> names;
  for (int i = 0; i < FEntries.Count(); ++i) {
    const std::string_view entry = FEntries.At(i);
    const std::size_t equals = entry.find('=');
    if (equals != std::string_view::npos && equals > 0) names.emplace_back(entry.substr(0, equals));
  }
  return names;
}

void TScriptVariables::Add(std::string_view name) { SetType(name, kFirstType); }

void TScriptVariables::Rename(std::string_view name, std::string_view newName) {
  std::string entry(newName);
  entry.append(1, '=').append(Type(name));
  const int before = FEntries.IndexOfName(name);
  FEntries.Add(entry);
  if (before >= 0) FEntries.Delete(before);
  FChanged = true;
}

void TScriptVariables::SetType(std::string_view name, std::string_view type) {
  FEntries.SetValue(name, type);
  FChanged = true;
}

void TScriptVariables::Delete(std::string_view name) {
  const int index = FEntries.IndexOfName(name);
  if (index >= 0) FEntries.Delete(index);
  FChanged = true;
}

TVariablesButtons ButtonsAfterNewName(const TScriptVariables& variables,
                                      const TVariablesInput& input) {
  if (!input.NewName.empty() && !variables.Exists(input.NewName))
    return {.AddEnabled = true, .RenameEnabled = {}, .Default = TVariablesDefault::Add};
  TVariablesButtons buttons = ButtonsAfterOtherName(variables, input);
  buttons.AddEnabled = false;
  return buttons;
}

TVariablesButtons ButtonsAfterOtherName(const TScriptVariables& variables,
                                        const TVariablesInput& input) {
  const bool free =
      input.Selected && !input.OtherName.empty() && !variables.Exists(input.OtherName);
  return {.AddEnabled = {},
          .RenameEnabled = free,
          .Default = free ? TVariablesDefault::Rename : TVariablesDefault::OK};
}
