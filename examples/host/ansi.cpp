#include "ansi.h"

#include <windows.h>

std::optional<std::string> ToAnsi(std::wstring_view text) {
  const int length = static_cast<int>(text.size());
  if (length == 0) return std::string();
  const int size = WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, text.data(), length, nullptr,
                                       0, nullptr, nullptr);
  std::string ansi(static_cast<std::size_t>(size), '\0');
  BOOL lost = FALSE;
  WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, text.data(), length, ansi.data(), size, nullptr,
                      &lost);
  if (lost) return std::nullopt;
  return ansi;
}

std::wstring ToWide(std::string_view text) {
  const int length = static_cast<int>(text.size());
  if (length == 0) return {};
  const int size = MultiByteToWideChar(CP_ACP, 0, text.data(), length, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(size), L'\0');
  MultiByteToWideChar(CP_ACP, 0, text.data(), length, wide.data(), size);
  return wide;
}
