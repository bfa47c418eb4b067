#include "platform/full_path.h"

#include <windows.h>

#include "platform/code_page.h"

std::wstring FullPath(std::string_view name) {
  const std::wstring wide = ToWide(name);
  std::wstring path(GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr), L'\0');
  const DWORD length =
      GetFullPathNameW(wide.c_str(), static_cast<DWORD>(path.size()), path.data(), nullptr);
  // Another thread may have made it longer since, by changing the current directory.
  path.resize(length < path.size() ? length : 0);
  return path;
}
