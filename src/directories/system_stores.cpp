#include "directories/system_stores.h"

#include <cstdio>

#include "platform/file_system.h"
#include "platform/named_lock.h"

namespace {

// Of the user's session: no two of its programs save or move at the same time.
constexpr wchar_t kListLock[] = L"Local\\ZEF directory list";
constexpr wchar_t kMoveLock[] = L"Local\\ZEF directory move";
/// How long a save of another program may take, in ms.
constexpr DWORD kLongestSave = 2000;

std::shared_ptr<void> Take(const wchar_t* name, DWORD ms) {
  auto lock = std::make_shared<TNamedLock>(name, ms);
  return lock->Taken() ? lock : nullptr;
}

/// Marks a directory as one that holds the host's data.
constexpr char kDataMarker[] = "\\ZEF.INI";

}  // namespace

std::string TUserSettings::Read(const std::string& name) const { return FSettings.Read(name); }

std::vector<std::string> TUserSettings::Names() const { return FSettings.Names(); }

bool TUserSettings::Write(const std::string& name, const std::string& value) {
  return FSettings.Write(name, value);
}

bool TUserSettings::Remove(const std::string& name) { return FSettings.Remove(name); }

std::shared_ptr<void> TUserSettings::Hold() {
  auto held = Take(kListLock, kLongestSave);
  FTimedOut = !held;
  return held;
}

std::string TDiskFiles::Current() const { return CurrentDirectoryPath(); }

bool TDiskFiles::Enter(const std::string& path) { return EnterDirectoryPath(path); }

bool TDiskFiles::DirectoryExists(const std::string& path) const { return IsDirectory(path); }

TRenaming TDiskFiles::Rename(const std::string& from, const std::string& to) {
  switch (RenameDirectory(from, to)) {
    case TTreeRenaming::Done:
      return TRenaming::Done;
    case TTreeRenaming::OtherVolume:
      return TRenaming::OtherVolume;
    case TTreeRenaming::Refused:
      break;
  }
  return TRenaming::Refused;
}

std::shared_ptr<void> TDiskFiles::Copy(const std::string& from, const std::string& to) {
  return CopyDirectory(from, to, FProgress);
}

bool TDiskFiles::Remove(const std::string& path) { return RemoveDirectoryTree(path); }

bool TDiskFiles::IsCopied(const std::string& path, const std::string& other) const {
  return IsCopiedDirectory(path, other);
}

bool TDiskFiles::RemoveCopied(const std::string& path, const std::string& other) {
  return RemoveCopiedDirectory(path, other);
}

std::string TDiskFiles::NewMark() {
  LARGE_INTEGER now;
  QueryPerformanceCounter(&now);
  FILETIME time;
  GetSystemTimeAsFileTime(&time);
  char mark[32];
  std::snprintf(mark, sizeof mark, ".zef-%08lx%08lx",
                static_cast<unsigned long>(time.dwHighDateTime ^ now.LowPart),
                static_cast<unsigned long>(time.dwLowDateTime ^ GetCurrentProcessId()));
  return mark;
}

std::shared_ptr<void> TDiskFiles::HoldMoves() { return Take(kMoveLock, 0); }

bool TDiskFiles::HoldsData(const std::string& directory) const {
  return IsFile(directory + kDataMarker);
}
