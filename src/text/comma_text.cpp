#include "text/comma_text.h"

#include <algorithm>

namespace {

bool IsBlank(char c) { return static_cast<unsigned char>(c) <= ' '; }

bool NeedsQuotes(std::string_view line) {
  return std::any_of(line.begin(), line.end(),
                     [](char c) { return IsBlank(c) || c == ',' || c == '"'; });
}

}  // namespace

void AppendCommaEntry(std::string& text, std::string_view line) {
  if (!NeedsQuotes(line)) {
    text += line;
    return;
  }
  text += '"';
  for (char c : line) {
    if (c == '"') text += '"';
    text += c;
  }
  text += '"';
}

TCommaReader::TCommaReader(std::string_view text) : FText(text) { SkipBlanks(); }

std::optional<std::string_view> TCommaReader::Next() {
  if (FAt == FText.size()) {
    if (!FEmptyLast) return std::nullopt;
    FEmptyLast = false;
    return std::string_view();
  }
  const std::string_view line = FText[FAt] == '"' ? Quoted() : Bare();
  SkipBlanks();
  if (FAt < FText.size() && FText[FAt] == ',') {
    ++FAt;
    FEmptyLast = FAt == FText.size();
    SkipBlanks();
  }
  return line;
}

void TCommaReader::SkipBlanks() {
  while (FAt < FText.size() && IsBlank(FText[FAt])) ++FAt;
}

std::string_view TCommaReader::Quoted() {
  const std::size_t start = ++FAt;
  std::size_t end = FText.find('"', start);
  FUnquoted.clear();
  while (end != std::string_view::npos && end + 1 < FText.size() && FText[end + 1] == '"') {
    // Doubled: the first of the two belongs to the line.
    FUnquoted.append(FText, FAt, end + 1 - FAt);
    FAt = end + 2;
    end = FText.find('"', FAt);
  }
  const std::size_t stop = std::min(end, FText.size());
  const std::size_t rest = FAt;
  FAt = end == std::string_view::npos ? stop : stop + 1;
  if (rest == start) return FText.substr(start, stop - start);
  FUnquoted.append(FText, rest, stop - rest);
  return FUnquoted;
}

std::string_view TCommaReader::Bare() {
  const std::size_t start = FAt;
  while (FAt < FText.size() && !IsBlank(FText[FAt]) && FText[FAt] != ',') ++FAt;
  return FText.substr(start, FAt - start);
}
