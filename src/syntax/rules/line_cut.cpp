#include "syntax/rules/line_cut.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include "syntax/rules/line_scan.h"
#include "text/collation.h"

namespace {

// One past the stop found scanning back from the cursor, or the line's start, blanks skipped. The
// line is not empty; so is never the rest from here, even after a stop that ends the line.
int ExpressionStart(std::string_view line, int cursor) {
  const int length = static_cast<int>(line.size());
  const auto at = [line](int index) { return line[static_cast<std::size_t>(index)]; };

  int index = std::min(cursor, length - 1);
  while (index > 0 && at(index) == kBlank) --index;
  TBackwardNesting nesting;
  while (index > 0 && (nesting.Take(at(index)) || !kStartStops.Has(at(index)))) --index;

  if (kStartStops.Has(at(index))) ++index;
  const auto start = line.find_first_not_of(kBlank, static_cast<std::size_t>(index));
  return static_cast<int>(std::min(start, line.size() - 1));
}

// No check of word boundaries: a name that holds these letters ends the expression too.
bool StartsWithThen(std::string_view text) {
  return (text.front() | 0x20) == 't' && SameText(text.substr(0, 4), "then");
}

// One past the last character of the expression that starts at an index.
int ExpressionEnd(std::string_view line, int start) {
  constexpr int none = -1;
  int beforeBlank = none;  // end of the text before the first blank since the last argument began
  bool hasParenthesis = false;
  bool statementArguments = false;  // a call without parentheses has begun its arguments
  const auto beginArguments = [&] {
    if (statementArguments || hasParenthesis || beforeBlank == none) return;
    statementArguments = true;
    beforeBlank = none;
  };

  TNesting nesting;
  const int length = static_cast<int>(line.size());
  for (int i = start; i < length; ++i) {
    const char c = line[static_cast<std::size_t>(i)];
    const bool wasIdle = nesting.Idle();
    if (nesting.Take(c)) {
      if (wasIdle && c == '(') hasParenthesis = true;
      if (wasIdle && c == kQuote) beginArguments();
      continue;
    }
    if (c == kBlank) {
      if (!hasParenthesis && beforeBlank == none) beforeBlank = i - 1;
      continue;
    }
    const bool ends =
        c == kCommentMark ||
        (!statementArguments &&
         (kEndStops.Has(c) || StartsWithThen(line.substr(static_cast<std::size_t>(i)))));
    if (ends) return beforeBlank != none ? beforeBlank + 1 : i;
    beginArguments();
  }
  return length;
}

// A cursor inside a member stands for the object that owns it; at the very end it stands for what
// follows the last dot.
int PositionInChain(std::string_view expression, int cursor) {
  const auto taken =
      static_cast<std::size_t>(std::clamp(cursor, 0, static_cast<int>(expression.size())));
  const auto head = expression.substr(0, taken);
  const auto dots = static_cast<int>(std::count(head.begin(), head.end(), '.'));
  return std::max(0, taken < expression.size() ? dots - 1 : dots);
}

}  // namespace

TLineCut CutLine(std::string_view line, int cursor) {
  if (line.empty()) return {};
  cursor = std::clamp(cursor, 0, static_cast<int>(line.size()));
  const std::string signs = MaskDoubleBytes(line);
  const int start = ExpressionStart(signs, cursor);
  const auto from = static_cast<std::size_t>(start);
  auto to = static_cast<std::size_t>(ExpressionEnd(signs, start));
  if (line[from] == kBlank) to = from;  // and so is all that follows

  TLineCut cut{line.substr(0, from), line.substr(from, to - from), line.substr(to)};
  cut.Position = PositionInChain(cut.Expression, cursor - start);
  return cut;
}
