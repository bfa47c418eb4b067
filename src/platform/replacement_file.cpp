#include "platform/replacement_file.h"

#include <windows.h>

#include <random>
#include <vector>

#include "platform/handle.h"
#include "platform/rules/temporary_name.h"

namespace {

constexpr std::size_t kBlock = 64 * 1024;

std::size_t NameStart(const std::wstring& path) { return path.find_last_of(L'\\') + 1; }

/// A path that nothing has yet, beside the target.
std::wstring NewPath(const std::wstring& target) {
  std::random_device random;  // of the system's, which nobody foresees
  const auto at = NameStart(target);
  return PathOfAnyLength(
      target.substr(0, at) +
      TemporaryName(target.substr(at), {random(), random(), random(), random()}));
}

/// Deletes what was left beside the target; what another process still writes to, it holds.
void ClearAway(const std::wstring& target) {
  const auto folder = target.substr(0, NameStart(target));
  const auto name = target.substr(folder.size());
  const std::wstring pattern = PathOfAnyLength(folder + TemporaryNameStart(name) + L'*');
  WIN32_FIND_DATAW found;
  const TSearchHandle search(FindFirstFileW(pattern.c_str(), &found));
  if (!search) return;
  do {
    if (IsTemporaryName(found.cFileName, name)) {
      DeleteFileW(PathOfAnyLength(folder + found.cFileName).c_str());
    }
  } while (FindNextFileW(search.Get(), &found));
}

/// A file that is to stay as it is, or a directory.
bool IsProtected(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES &&
         (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0;
}

/// Whether a file goes when its handle is closed, by whatever way that comes about.
bool SetVanishing(HANDLE file, bool vanishing) {
  FILE_DISPOSITION_INFO info{};
  info.DeleteFile = vanishing;
  return SetFileInformationByHandle(file, FileDispositionInfo, &info, sizeof info) != FALSE;
}

}  // namespace

TReplacementFile::TReplacementFile(std::wstring_view target) : FTarget(PathOfAnyLength(target)) {}

TReplacementFile::~TReplacementFile() {
  FHandle.Reset();
  // Gone already, but on a disk whose files cannot vanish by themselves.
  if (!FPath.empty()) DeleteFileW(FPath.c_str());
}

bool TReplacementFile::Exists() const {
  return GetFileAttributesW(FTarget.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool TReplacementFile::Create() {
  if (!IsOneFile(FTarget) || IsProtected(FTarget)) return false;
  const bool exists = Exists();
  ClearAway(FTarget);
  const std::wstring path = NewPath(FTarget);
  // Shared with nobody, so that others can neither clear it away nor slip something in.
  FHandle = TKernelHandle(
      CreateFileW(path.c_str(), GENERIC_WRITE | DELETE | (exists ? WRITE_DAC : 0), 0, nullptr,
                  CREATE_NEW, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
  if (!FHandle) return false;
  FPath = path;
  SetVanishing(FHandle.Get(), true);
  return !exists || TakeRights();
}

bool TReplacementFile::TakeRights() const {
  DWORD size = 0;
  GetFileSecurityW(FTarget.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
  if (GetLastError() != ERROR_INSUFFICIENT_BUFFER) return true;  // a disk without rights
  std::vector<char> rights(size);
  return GetFileSecurityW(FTarget.c_str(), DACL_SECURITY_INFORMATION, rights.data(), size, &size) &&
         (SetKernelObjectSecurity(FHandle.Get(), DACL_SECURITY_INFORMATION, rights.data()) ||
          GetLastError() == ERROR_NOT_SUPPORTED);
}

bool TReplacementFile::Write(std::span<const char> data) {
  DWORD written = 0;
  const auto size = static_cast<DWORD>(data.size());
  return WriteFile(FHandle.Get(), data.data(), size, &written, nullptr) && written == size;
}

bool TReplacementFile::Flush() { return FlushFileBuffers(FHandle.Get()) != FALSE; }

bool TReplacementFile::Replace() {
  if (IsProtected(FTarget)) return false;
  SetVanishing(FHandle.Get(), false);
  FHandle.Reset();
  if (!MoveFileExW(FPath.c_str(), FTarget.c_str(),
                   MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
    return false;
  }
  FPath.clear();
  return true;
}

bool TReplacementFile::CopyOld() {
  const TKernelHandle old(CreateFileW(FTarget.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                      OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
  if (!old) return false;
  std::vector<char> block(kBlock);
  DWORD size = 0;
  bool done = Create();
  while (done && (done = ReadFile(old.Get(), block.data(), kBlock, &size, nullptr)) && size > 0) {
    done = Write({block.data(), size});
  }
  return done;
}

bool ReplaceBoth(TReplacementFile& first, TReplacementFile& second) {
  // No system replaces two files at one stroke: the first one's old content is kept ready.
  TReplacementFile undo(first.FTarget);
  const bool existed = first.Exists();
  if (existed && !undo.CopyOld()) return false;
  if (!first.Replace()) return false;
  if (second.Replace()) return true;
  if (existed) {
    undo.Replace();
  } else {
    DeleteFileW(first.FTarget.c_str());
  }
  return false;
}
