#include "syntax/rules/help_text.h"

#include <algorithm>
#include <cstddef>

namespace {

constexpr std::string_view kIndents = " \t";
constexpr std::string_view kBlanksAndBreaks = " \t\r\n";

/// The line that begins the text, with its line break.
std::string_view FirstLine(std::string_view text) {
  const std::size_t end = text.find('\n');
  return text.substr(0, end == std::string_view::npos ? end : end + 1);
}

std::size_t Indentation(std::string_view line) {
  return std::min(line.find_first_not_of(kIndents), line.size());
}

bool IsBlank(std::string_view line) {
  return line.find_first_not_of(kBlanksAndBreaks) == std::string_view::npos;
}

/// What the lines that say something have in common before they say it.
std::size_t SharedIndentation(std::string_view lines) {
  std::string_view shared;
  for (bool isFirst = true; !lines.empty();) {
    const std::string_view line = FirstLine(lines);
    lines.remove_prefix(line.size());
    if (IsBlank(line)) continue;
    const std::string_view own = line.substr(0, Indentation(line));
    const auto differs = std::mismatch(shared.begin(), shared.end(), own.begin(), own.end());
    shared = isFirst ? own : std::string_view(shared.begin(), differs.first);
    isFirst = false;
  }
  return shared.size();
}

}  // namespace

std::string WithoutIndentation(std::string_view text) {
  const std::size_t start = std::min(text.find_first_not_of(kBlanksAndBreaks), text.size());
  // Lines that begin the text share their indentation with the rest; one behind the tag does not.
  const std::size_t lineStart = text.substr(0, start).rfind('\n') + 1;
  const bool behindTag = lineStart == 0;
  text.remove_prefix(behindTag ? start : lineStart);
  std::string result;
  const auto add = [&result](std::string_view line) {
    const bool isEnded = line.ends_with('\n');
    result.append(line.substr(0, line.size() - isEnded)).append(isEnded ? "\r\n" : "");
  };
  if (behindTag) {
    add(FirstLine(text));
    text.remove_prefix(FirstLine(text).size());
  }
  const std::size_t shared = SharedIndentation(text);
  while (!text.empty()) {
    const std::string_view line = FirstLine(text);
    text.remove_prefix(line.size());
    add(line.substr(std::min(shared, Indentation(line))));
  }
  return result;
}
