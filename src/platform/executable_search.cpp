#include "platform/executable_search.h"

#include <windows.h>

#include "platform/code_page.h"

std::string FileBesideExecutable(const char* executable, std::string_view file) {
  char found[MAX_PATH];
  const DWORD length = SearchPathA(nullptr, executable, nullptr, MAX_PATH, found, nullptr);
  if (length == 0 || length >= MAX_PATH) return {};
  // In a code page of two bytes a character, a byte that looks like a backslash need not be one.
  std::wstring path = ToWide({found, length});
  const std::size_t backslash = path.rfind(L'\\');
  if (backslash == std::wstring::npos) return {};
  path.resize(backslash + 1);
  return ToAnsi(path) += file;
}
