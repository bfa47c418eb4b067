#pragma once

#include "directories/rules/directory_files.h"
#include "directories/rules/settings_store.h"
#include "frame/settings.h"

/// The current user's settings in the registry, for one reading or writing of the list.
class TUserSettings final : public TSettingsStore {
 public:
  std::string Read(const std::string& name) const override;
  std::vector<std::string> Names() const override;
  bool Write(const std::string& name, const std::string& value) override;
  bool Remove(const std::string& name) override;

 private:
  TSettings FSettings{true};
};

/// The machine's disks and this process's current directory.
class TDiskFiles final : public TDirectoryFiles {
 public:
  std::string Current() const override;
  bool Enter(const std::string& path) override;
  bool DirectoryExists(const std::string& path) const override;
  bool Move(const std::string& from, const std::string& to) override;
  /// Whether a directory holds the host's data.
  bool HoldsData(const std::string& directory) const;
};
