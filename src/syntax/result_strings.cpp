#include "syntax/result_strings.h"

#include <utility>

const char* FillResultString(TResultString which, std::string text) {
  static std::string assistant;
  static std::string types;
  std::string& result = which == TResultString::Assistant ? assistant : types;
  result = std::move(text);
  return result.c_str();
}
