#include "platform/file_system.h"

#include <windows.h>

#include "platform/code_page.h"
#include "platform/quiet_disks.h"

namespace {

DWORD AttributesOf(const std::string& path) {
  const TQuietDisks quiet;
  return GetFileAttributesW(ToWide(path).c_str());
}

}  // namespace

std::string CurrentDirectoryPath() {
  std::wstring path(GetCurrentDirectoryW(0, nullptr), L'\0');
  // It may have got longer in between: another thread may change it at any time.
  const DWORD length = GetCurrentDirectoryW(static_cast<DWORD>(path.size()), path.data());
  if (length >= path.size()) return {};
  path.resize(length);
  return ToAnsi(path);
}

bool EnterDirectoryPath(const std::string& path) {
  const TQuietDisks quiet;
  return SetCurrentDirectoryW(ToWide(path).c_str()) != FALSE;
}

bool IsDirectory(const std::string& path) {
  const DWORD attributes = AttributesOf(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool IsFile(const std::string& path) {
  const DWORD attributes = AttributesOf(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}
