#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <optional>
#include <string>

#include "outside/library.h"
#include "user/scripted_user.h"
#include "user/window.h"

/// A host with a main window and the library loaded, its windows used by a scripted user. When the
/// test is over, the library is freed and unloaded, and no window, thread or module of it is left.
class TOutsideTest : public testing::Test {
 protected:
  static constexpr int TestSeconds = 180;  ///< at most, for what a user does during one call
  static constexpr char HelpFile[] = "C:\\ZEF\\Zef.hlp";

  void SetUp() override;
  void TearDown() override;

  /// Makes the call while a user acts as the script says; see TScriptedUser::During.
  void During(const std::function<void()>& call, const std::function<void(TScriptedUser&)>& script);
  /// The host serves its messages while the user acts.
  void WhileIdle(const std::function<void(TScriptedUser&)>& script) {
    During([] {}, script);
  }

  /// From a script: makes a call in the host's thread, as the host does when a message comes in.
  void InHost(const std::function<void()>& call);

  /// Serves messages until the library is out of memory, as it is to be when all let go of it.
  void WaitUnloaded();

  /// An edit in a window of the host's, so far from its top.
  static HWND HostEdit(HWND parent, int top = 10);

  HWND MainWindow = nullptr;
  std::optional<TLibrary> Library;

 private:
  void DropOrphans();
};

/// The syntax database beside the host's program, for as long as this object lives.
class TDatabaseFile {
 public:
  explicit TDatabaseFile(std::string_view bytes);
  TDatabaseFile(const TDatabaseFile&) = delete;
  TDatabaseFile& operator=(const TDatabaseFile&) = delete;
  ~TDatabaseFile();

 private:
  std::wstring FPath;
};
