#pragma once

#include <string_view>

/// The assistant's own texts. The model's other texts are in the host's code page; these go by
/// their names, so that nothing between the rules and the screen has to convert them.
enum class TAssistantText { None, ChooseType, ChooseMember, VisualBasicFunction, ReturnedValue };

/// The text in UTF-8.
constexpr std::string_view Utf8Text(TAssistantText text) {
  switch (text) {
    case TAssistantText::ChooseType:
      return " <--- Sélectionnez un type pour cet objet !";
    case TAssistantText::ChooseMember:
      return " Sélectionnez une méthode ci-dessus !";
    case TAssistantText::VisualBasicFunction:
      return "Fonction Visual Basic";
    case TAssistantText::ReturnedValue:
      return "Valeur retournée : ";
    case TAssistantText::None:
      break;
  }
  return {};
}
