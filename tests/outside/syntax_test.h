#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "outside/outside_test.h"

/// The assistant and its two dialogs in a host's hands, on a small database of their own. Texts
/// are UTF-8 here.
class TSyntaxTest : public TOutsideTest {
 protected:
  using TScript = std::function<void(TScriptedUser&, TFormDriver&)>;

  static const char SampleDatabase[];

  void SetUp() override;
  void TearDown() override;

  // Each runs one dialog; a script that does not leave it leaves it by OK.

  struct TAssisted {
    std::string Line;
    int Cursor;
    bool operator==(const TAssisted&) const = default;
    friend void PrintTo(const TAssisted& assisted, std::ostream* out) {
      *out << assisted.Line << ", cursor " << assisted.Cursor;
    }
  };
  TAssisted Assist(std::string_view line, int cursor, const TScript& script,
                   std::string_view types = {});
  std::string Pick(std::string_view text, const TScript& script);
  std::string EditTypes(std::string_view variables, const TScript& script);
  /// Calls of the three without their results, for tests of how a run ends.
  using TCall = std::function<void()>;
  /// Makes the call while a user has that dialog before him.
  void WithDialog(const char* className, const TCall& call, const TScript& script);

  /// The changed types, or nothing when none are said to have changed.
  std::optional<std::string> NewTypes();

  /// The ways out of a dialog: name, whether it confirms, how.
  struct TWayOut {
    const char* Name;
    bool Confirms;
    std::function<void(TFormDriver&)> Leave;
  };
  static const std::vector<TWayOut> WaysOut;

  std::optional<TDatabaseFile> Database;
};

/// Work on the user-interface thread from a timer, whatever message loop runs there. To be made on
/// that thread.
class TInterruption {
 public:
  explicit TInterruption(std::function<void()> work);
  TInterruption(const TInterruption&) = delete;
  TInterruption& operator=(const TInterruption&) = delete;
  ~TInterruption();

  /// On another thread: has the work done once and returns when it is.
  void Happen(TUser& user);

 private:
  static void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD);

  std::function<void()> FWork;
  UINT_PTR FTimer;
  std::atomic<bool> FWanted = false;
  std::atomic<bool> FDone = false;
};
