#include "platform/code_page.h"

#include <windows.h>

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace {

// Every ANSI code page agrees with ASCII, and most names and keywords are nothing else.
template <class TText>
bool IsAscii(const TText& text) {
  return std::all_of(text.begin(), text.end(), [](auto c) {
    return static_cast<std::make_unsigned_t<decltype(c)>>(c) < 0x80;
  });
}

int CheckedLength(std::size_t length) {
  if (length > static_cast<std::size_t>(std::numeric_limits<int>::max() / 4))
    throw std::length_error("text too long to convert");
  return static_cast<int>(length);
}

std::wstring Widen(std::string_view text, UINT codePage) {
  if (IsAscii(text)) return {text.begin(), text.end()};
  const int length = CheckedLength(text.size());
  // No code page has a character of more UTF-16 units than bytes.
  std::wstring wide(text.size(), L'\0');
  const int used = MultiByteToWideChar(codePage, 0, text.data(), length, wide.data(), length);
  wide.resize(static_cast<std::size_t>(used));
  return wide;
}

}  // namespace

std::wstring ToWide(std::string_view text) { return Widen(text, CP_ACP); }

std::wstring Utf8ToWide(std::string_view utf8) { return Widen(utf8, CP_UTF8); }

std::string Utf8ToAnsi(std::string_view utf8) { return ToAnsi(Utf8ToWide(utf8)); }

std::string ToUtf8(std::wstring_view text) {
  const int length = CheckedLength(text.size());
  std::string utf8(text.size() * 3, '\0');
  const int used = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, utf8.data(), length * 3,
                                       nullptr, nullptr);
  utf8.resize(static_cast<std::size_t>(used));
  return utf8;
}

std::string ToAnsi(std::wstring_view text) {
  std::string ansi;
  AppendAnsi(ansi, text);
  return ansi;
}

void AppendAnsi(std::string& text, std::wstring_view addition) {
  const std::size_t start = text.size();
  if (IsAscii(addition)) {
    text.resize(start + addition.size());
    std::transform(addition.begin(), addition.end(), text.data() + start,
                   [](wchar_t c) { return static_cast<char>(c); });
    return;
  }
  // Four bytes are the most that any ANSI code page, UTF-8 included, needs for one unit.
  const int length = CheckedLength(addition.size());
  text.resize(start + addition.size() * 4);
  const int used = WideCharToMultiByte(CP_ACP, 0, addition.data(), length, text.data() + start,
                                       length * 4, nullptr, nullptr);
  text.resize(start + static_cast<std::size_t>(used));
}
