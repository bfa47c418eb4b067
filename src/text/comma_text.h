#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Appends one line of a list as comma text. An empty line is written as nothing, which only reads
/// back as a line beside other lines.
void AppendCommaEntry(std::string& text, std::string_view line);

/// Reads the lines of a comma text one after the other.
class TCommaReader {
 public:
  /// The text must outlive the reader.
  explicit TCommaReader(std::string_view text);
  /// The next line, valid until the next call; nothing at the end.
  std::optional<std::string_view> Next();

 private:
  void SkipBlanks();
  std::string_view Quoted();
  std::string_view Bare();

  std::string_view FText;
  std::size_t FAt = 0;
  bool FEmptyLast = false;  ///< the text ends with a comma: one more line, an empty one
  std::string FUnquoted;
};
