#include "platform/replacement_file.h"

#include <windows.h>

#include <atomic>
#include <utility>

#include "platform/code_page.h"

namespace {

constexpr wchar_t kSuffix[] = L".part";

/// Of this process's files; others' end otherwise, which tells what may be cleared away.
std::wstring OwnMark() { return L"." + std::to_wstring(GetCurrentProcessId()) + L"-"; }

/// Deletes what other processes left beside the target; what they still write to, they hold.
void ClearAway(const std::wstring& target) {
  WIN32_FIND_DATAW found;
  const HANDLE search = FindFirstFileW((target + L".*-*" + kSuffix).c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  const auto name = target.find_last_of(L'\\') + 1;
  const std::wstring ours = target.substr(name) + OwnMark();
  do {
    const std::wstring file = found.cFileName;
    if (!file.starts_with(ours)) DeleteFileW((target.substr(0, name) + file).c_str());
  } while (FindNextFileW(search, &found));
  FindClose(search);
}

}  // namespace

std::wstring FullPath(std::string_view name) {
  const std::wstring wide = ToWide(name);
  std::wstring path(GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr), L'\0');
  path.resize(
      GetFullPathNameW(wide.c_str(), static_cast<DWORD>(path.size()), path.data(), nullptr));
  return path;
}

TReplacementFile::~TReplacementFile() {
  if (FHandle) CloseHandle(FHandle);
  if (!FPath.empty()) DeleteFileW(FPath.c_str());
}

bool TReplacementFile::Create() {
  static std::atomic<unsigned> number = 0;
  if (FTarget.empty()) return false;
  ClearAway(FTarget);
  const std::wstring path = FTarget + OwnMark() + std::to_wstring(++number) + kSuffix;
  // Shared with nobody, so that others cannot clear it away.
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  FHandle = file;
  FPath = path;
  return true;
}

bool TReplacementFile::Write(std::span<const char> data) {
  DWORD written = 0;
  const auto size = static_cast<DWORD>(data.size());
  return WriteFile(FHandle, data.data(), size, &written, nullptr) && written == size;
}

bool TReplacementFile::Flush() { return FlushFileBuffers(FHandle) != FALSE; }

bool TReplacementFile::Replace() {
  const HANDLE file = std::exchange(FHandle, nullptr);
  if (!CloseHandle(file) || !MoveFileExW(FPath.c_str(), FTarget.c_str(),
                                         MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
    return false;
  }
  FPath.clear();
  return true;
}
