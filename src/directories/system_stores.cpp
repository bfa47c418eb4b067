#include "directories/system_stores.h"

#include "platform/file_system.h"

namespace {

/// Marks a directory as one that holds the host's data.
constexpr char kDataMarker[] = "\\ZEF.INI";

}  // namespace

std::string TUserSettings::Read(const std::string& name) const { return FSettings.Read(name); }

std::vector<std::string> TUserSettings::Names() const { return FSettings.Names(); }

bool TUserSettings::Write(const std::string& name, const std::string& value) {
  return FSettings.Write(name, value);
}

bool TUserSettings::Remove(const std::string& name) { return FSettings.Remove(name); }

std::string TDiskFiles::Current() const { return CurrentDirectoryPath(); }

bool TDiskFiles::Enter(const std::string& path) { return EnterDirectoryPath(path); }

bool TDiskFiles::DirectoryExists(const std::string& path) const { return IsDirectory(path); }

bool TDiskFiles::Move(const std::string& from, const std::string& to) {
  return MoveDirectoryTree(from, to);
}

bool TDiskFiles::HoldsData(const std::string& directory) const {
  return IsFile(directory + kDataMarker);
}
