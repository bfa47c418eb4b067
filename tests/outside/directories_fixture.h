#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "outside/outside_test.h"
#include "user/saved_settings.h"

/// Directories on disk and a list of them in the settings, gone after each test; the current
/// directory and the user's settings are the same again. Texts are UTF-8.
class TDirectoriesTest : public TOutsideTest {
 protected:
  void SetUp() override;
  void TearDown() override;

  /// Makes a directory below the test's own, with the host's data if asked; gives its path.
  std::string MakeDirectory(std::string_view name, bool withData = false) const;
  std::string Path(std::string_view name) const;
  /// Stores a list as the dialog does.
  void Store(const std::vector<std::pair<std::string, std::string>>& entries,
             const std::string& defaultName = {}) const;
  static void Enter(const std::string& path);

 private:
  std::optional<TSavedSettings> FSettings;
  std::filesystem::path FRoot;
  std::filesystem::path FCurrent;
};
