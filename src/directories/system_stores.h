#pragma once

#include "directories/rules/directory_files.h"
#include "directories/rules/settings_store.h"
#include "frame/settings.h"
#include "platform/directory_tree.h"

/// The current user's settings in the registry, for one reading or writing of the list. One thread
/// at a time.
class TUserSettings final : public TSettingsStore {
 public:
  std::string Read(const std::string& name) const override;
  bool ReadFailed() const override { return FSettings.ReadFailed(); }
  std::vector<std::string> Names() const override;
  bool Write(const std::string& name, const std::string& value) override;
  bool Remove(const std::string& name) override;
  std::shared_ptr<void> Hold() override;

  /// The system's code of what failed last; 0 while nothing has.
  long Error() const { return FTimedOut ? kTimedOut : FSettings.Error(); }

 private:
  static constexpr long kTimedOut = 258;

  TSettings FSettings{true};
  bool FTimedOut = false;
};

/// The machine's disks and this process's current directory.
class TDiskFiles final : public TDirectoryFiles {
 public:
  /// Copies tell their progress there, if it is given, and can be cancelled.
  explicit TDiskFiles(TCopyProgress* progress = nullptr) : FProgress(progress) {}

  std::string Current() const override;
  bool Enter(const std::string& path) override;
  bool DirectoryExists(const std::string& path) const override;
  TRenaming Rename(const std::string& from, const std::string& to) override;
  std::shared_ptr<void> Copy(const std::string& from, const std::string& to) override;
  bool Remove(const std::string& path) override;
  bool IsCopied(const std::string& path, const std::string& other) const override;
  bool RemoveCopied(const std::string& path, const std::string& other) override;
  std::string NewMark() override;
  std::shared_ptr<void> HoldMoves() override;

  /// Whether a directory holds the host's data.
  bool HoldsData(const std::string& directory) const;

 private:
  TCopyProgress* FProgress;
};
