#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "outside/outside_test.h"
#include "user/saved_settings.h"

/// The shell's folder picker under a user's hands.
class TPickerDriver {
 public:
  explicit TPickerDriver(TUser& user);

  TFormDriver Form;

  /// Waits until the selected folder shows this name, or a label before it.
  void WaitSelected(std::string_view name) const;
  void WaitShown(std::string_view caption, std::string_view status) const;
  void Leave(const char* button);
  /// As a program that opened the picker does, and a click on the folder would.
  void Select(const std::string& path, std::string_view shownName);
  void TypeName(std::string_view utf8);

 private:
  TUser& FUser;
};

/// Directories on disk and a list of them in the settings, gone after each test; the current
/// directory and the user's settings are the same again. Texts are UTF-8.
class TDirectoriesTest : public TOutsideTest {
 protected:
  struct TOutcome {
    int Changed;
    int Cancelled;
    bool operator==(const TOutcome&) const = default;
  };

  void SetUp() override;
  void TearDown() override;

  /// Makes a directory below the test's own, with the host's data if asked; gives its path.
  std::string MakeDirectory(std::string_view name, bool withData = false) const;
  std::string Path(std::string_view name) const;
  /// Stores a list as the dialog does.
  void Store(const std::vector<std::pair<std::string, std::string>>& entries,
             const std::string& defaultName = {});
  void StoreSetting(const std::string& name, const std::string& value);
  /// All settings, by name.
  std::map<std::string, std::string> Settings() const;

  TOutcome Choose(const char* name, bool showList,
                  const std::function<void(TScriptedUser&, TFormDriver&)>& script);
  /// No window may open.
  TOutcome ChooseSilently(const char* name);
  static std::string Current();
  static void Enter(const std::string& path);

 private:
  std::optional<TSavedSettings> FSettings;
  std::filesystem::path FRoot;
  std::wstring FCurrent;
};
