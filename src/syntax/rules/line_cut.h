#pragma once

#include <string_view>

/// A script line cut around the cursor: prefix + expression + suffix is the line.
struct TLineCut {
  std::string_view Prefix;
  std::string_view Expression;
  std::string_view Suffix;
  int Position = 0;  ///< of the object under the cursor in the expression's dotted chain, from 0
};

/// Cuts a line of the host's ANSI code page around the cursor (a byte index; any value will do).
/// The views are into the line. Costs in proportion to the line.
TLineCut CutLine(std::string_view line, int cursor);
