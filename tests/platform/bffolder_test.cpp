#include "directories/bffolder.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <shlobj.h>

#include "forms/application.h"
#include "user/scripted_user.h"
#include "user/window.h"

namespace {

using enum TBffOption;

class Bffolder : public testing::Test {
 protected:
  Bffolder() {
    Folder.SetCaption("choix");
    Folder.SetOptions({bffEditBox, bffNewDialogStyle, bffReturnOnlyFSDirs});
  }
  /// Runs the picker while the script does what a user would.
  bool Execute(const std::function<void(TUser&, TFormDriver&)>& script) {
    bool chosen = false;
    TScriptedUser().During([&] { chosen = Folder.Execute(); },
                           [&](TScriptedUser& user) {
                             TFormDriver picker = user.WaitForMessageBox("choix");
                             script(user, picker);
                             picker.WaitGone();
                           });
    return chosen;
  }

  TBffolder Folder{"Folder"};
};

TEST_F(Bffolder, TellsWhenItIsThereAndTakesChangesWhileOpen) {
  constexpr int NameEdit = 0x3745;
  int initialized = 0;
  Folder.SetCaption("");
  Folder.SetEnableOK(false);
  Folder.SetSelectedDir("C:\\windows\\");
  Folder.OnInitialized = [&] {
    ++initialized;
    EXPECT_FALSE(Folder.Execute()) << "it is open already";
  };
  Folder.OnSelectionChanged = [&](const std::string& folder) {
    if (folder == "C:\\users") Folder.SetEnableOK(true);
  };
  EXPECT_TRUE(Execute([&](TUser& user, TFormDriver& picker) {
    const HWND name = GetDlgItem(picker.Handle(), NameEdit);
    user.WaitUntil("the first folder", [&] { return TextOf(name) == "windows"; });
    EXPECT_FALSE(picker.Enabled("#1"));
    SendMessageW(picker.Handle(), BFFM_SETSELECTIONA, TRUE, reinterpret_cast<LPARAM>("C:\\users"));
    user.WaitUntil("OK to be enabled", [&] { return picker.Enabled("#1"); });
    picker.Click("#1");
  }));
  EXPECT_EQ(initialized, 1);
  EXPECT_EQ(Folder.SelectedDir(), "C:\\users");
}

}  // namespace
