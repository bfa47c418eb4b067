#include "syntax/result_strings.h"

#include <utility>

#include "platform/kept.h"

namespace {
struct TResultStrings {
  std::string Assistant;
  std::string Types;
};
}  // namespace

const char* FillResultString(TResultString which, std::string text) {
  auto& strings = Kept<TResultStrings>();
  std::string& result = which == TResultString::Assistant ? strings.Assistant : strings.Types;
  result = std::move(text);
  return result.c_str();
}
