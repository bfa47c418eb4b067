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
  static const char SampleDatabase[];

  using TScript = std::function<void(TScriptedUser&, TFormDriver&)>;

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
  /// Makes the call while a user has that dialog before him.
  void WithDialog(const char* className, const std::function<void()>& call, const TScript& script);

  std::optional<TDatabaseFile> Database;
};
