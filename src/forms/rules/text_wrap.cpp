#include "forms/rules/text_wrap.h"

#include <algorithm>

namespace {

constexpr std::wstring_view kBlanks = L" \t";
constexpr wchar_t kEllipsis = L'\x2026';

bool IsLowSurrogate(wchar_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

std::wstring_view WithoutBlanksBehind(std::wstring_view line) {
  return line.substr(0, line.find_last_not_of(kBlanks) + 1);
}

/// Where to break a paragraph that is wider than a line.
std::size_t BreakOf(std::wstring_view paragraph, std::size_t fit) {
  const auto blank = paragraph.find_last_of(kBlanks, fit);
  // An indent is no place to break at.
  if (blank != std::wstring_view::npos &&
      !WithoutBlanksBehind(paragraph.substr(0, blank)).empty()) {
    return blank;
  }
  std::size_t cut = std::max<std::size_t>(fit, 1);
  if (cut == paragraph.size() || !IsLowSurrogate(paragraph[cut])) return cut;
  return cut > 1 ? cut - 1 : cut + 1;
}

/// Takes the first line off a text.
std::wstring_view TakeLine(std::wstring_view& text, const TFitting& fitting) {
  const auto end = text.find_first_of(L"\r\n");
  const auto paragraph = text.substr(0, end);
  const auto fit = fitting(paragraph);
  if (fit < paragraph.size()) {
    const auto line = paragraph.substr(0, BreakOf(paragraph, fit));
    const auto rest = paragraph.find_first_not_of(kBlanks, line.size());
    // Blanks at the very end of a paragraph make no line of their own.
    if (rest != std::wstring_view::npos) {
      text.remove_prefix(rest);
      return WithoutBlanksBehind(line);
    }
  }
  text.remove_prefix(paragraph.size());
  if (!text.empty()) text.remove_prefix(text.starts_with(L"\r\n") ? 2 : 1);
  return WithoutBlanksBehind(paragraph);
}

}  // namespace

std::vector<std::wstring> WrapText(std::wstring_view text, std::size_t most,
                                   const TFitting& fitting) {
  std::vector<std::wstring> lines;
  while (!text.empty() && lines.size() < most) lines.emplace_back(TakeLine(text, fitting));
  if (text.empty() || lines.empty()) return lines;
  std::wstring& last = lines.back();
  last += kEllipsis;
  while (last.size() > 1 && fitting(last) < last.size()) last.erase(last.size() - 2, 1);
  return lines;
}
