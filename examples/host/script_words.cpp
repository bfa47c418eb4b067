#include "script_words.h"

#include <algorithm>
#include <cwctype>
#include <iterator>
#include <string>

namespace {

// Sorted, in lower case. True and False are constants of the syntax database.
constexpr std::wstring_view Keywords[] = {
    L"and",     L"byref",    L"byval",  L"call",     L"case",  L"class",    L"const",   L"dim",
    L"do",      L"each",     L"else",   L"elseif",   L"empty", L"end",      L"eqv",     L"error",
    L"exit",    L"explicit", L"for",    L"function", L"get",   L"goto",     L"if",      L"imp",
    L"in",      L"is",       L"let",    L"loop",     L"mod",   L"new",      L"next",    L"not",
    L"nothing", L"null",     L"on",     L"option",   L"or",    L"preserve", L"private", L"property",
    L"public",  L"redim",    L"resume", L"select",   L"set",   L"step",     L"stop",    L"sub",
    L"then",    L"to",       L"until",  L"wend",     L"while", L"with",     L"xor"};
static_assert(std::is_sorted(std::begin(Keywords), std::end(Keywords)));

bool StartsName(wchar_t c) { return std::iswalpha(c) != 0; }
bool ContinuesName(wchar_t c) { return std::iswalnum(c) != 0 || c == L'_'; }

std::wstring Lower(std::wstring_view word) {
  std::wstring lower(word);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](wchar_t c) { return static_cast<wchar_t>(std::towlower(c)); });
  return lower;
}

std::size_t NameEnd(std::wstring_view line, std::size_t from) {
  while (from < line.size() && ContinuesName(line[from])) ++from;
  return from;
}

/// A doubled quote inside a text closes and opens it again, which colours the same.
std::size_t TextEnd(std::wstring_view line, std::size_t quote) {
  const std::size_t end = line.find(L'"', quote + 1);
  return end == std::wstring_view::npos ? line.size() : end + 1;
}

}  // namespace

std::vector<TWord> SplitScriptLine(std::wstring_view line) {
  std::vector<TWord> words;
  std::size_t i = 0;
  while (i < line.size()) {
    const wchar_t c = line[i];
    std::size_t end = i + 1;
    if (c == L'\'') {
      end = line.size();
      words.push_back({TWordKind::Comment, i, end - i});
    } else if (c == L'"') {
      end = TextEnd(line, i);
      words.push_back({TWordKind::Text, i, end - i});
    } else if (c == L'.' && end < line.size() && StartsName(line[end])) {
      end = NameEnd(line, end);
      words.push_back({TWordKind::Name, i, end - i});
    } else if (StartsName(c)) {
      end = NameEnd(line, i);
      const std::wstring word = Lower(line.substr(i, end - i));
      if (word == L"rem") {
        end = line.size();
        words.push_back({TWordKind::Comment, i, end - i});
      } else {
        const bool keyword = std::binary_search(std::begin(Keywords), std::end(Keywords), word);
        words.push_back({keyword ? TWordKind::Keyword : TWordKind::Name, i, end - i});
      }
    } else if (ContinuesName(c)) {
      end = NameEnd(line, i);  // a number: its letters are no name
    }
    i = end;
  }
  return words;
}
