#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

/// What the editor can tell of a word by itself; the library knows the rest of the names.
enum class TWordKind { Name, Keyword, Text, Comment };

struct TWord {
  TWordKind Kind;
  std::size_t Start;
  std::size_t Length;  ///< of a name after a dot: with its dot, as the library expects it
};

/// The words of one script line in order. No word runs over the end of a line, so a change never
/// touches the colours of another line.
std::vector<TWord> SplitScriptLine(std::wstring_view line);
