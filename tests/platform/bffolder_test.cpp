#include "directories/bffolder.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>
#include <shlobj.h>

#include <thread>

#include "forms/application.h"
#include "user/form_driver.h"
#include "user/window.h"

namespace {

using enum TBffOption;
using enum TBffRootDir;

std::string RootName(HWND picker) {
  for (const HWND child : Descendants(picker)) {
    if (ClassOf(child) != WC_TREEVIEWA) continue;
    wchar_t text[MAX_PATH] = {};
    TVITEMW item{TVIF_TEXT, TreeView_GetRoot(child), 0, 0, text, MAX_PATH, 0, 0, 0, 0};
    SendMessageW(child, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
    return Utf8(text);
  }
  return {};
}

/// A user who leaves each picker as told, from a thread of their own.
class Bffolder : public testing::Test {
 protected:
  Bffolder() {
    Folder.SetCaption("choix");
    Folder.SetOptions({bffEditBox, bffNewDialogStyle, bffReturnOnlyFSDirs});
  }
  /// Runs the picker while the script does what a user would.
  bool Execute(const std::function<void(TUser&, TFormDriver&)>& script) {
    std::thread user([&] {
      TUser hands(GetCurrentProcessId());
      try {
        TFormDriver picker = hands.WaitForMessageBox("choix");
        script(hands, picker);
        picker.WaitGone();
      } catch (const std::exception& error) {
        ADD_FAILURE() << error.what() << "\n" << WindowTree(GetCurrentProcessId());
        for (const HWND window : TopWindows(GetCurrentProcessId()))
          PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
      }
    });
    const bool chosen = Folder.Execute();
    user.join();
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

// The newer look, which users can size, needs a thread for windows.
TEST_F(Bffolder, RootOfTheTreeWhateverTheThreadingModel) {
  const struct {
    TBffRootDir Root;
    const char *Selected, *Shown;
  } cases[] = {{rdWindows, "", "windows"},
               {rdUseSelectedDir, "C:\\users", "users"},
               {rdUseSelectedDir, "", "Desktop"},
               {rdUseSelectedDir, "C:\\n'existe pas", "Desktop"},
               {rdDesktop, "", "Desktop"}};
  for (const auto& c : cases) {
    Folder.SetRootDir(c.Root);
    Folder.SetSelectedDir(c.Selected);
    std::thread([&] {
      const bool windows = c.Root != rdDesktop;
      CoInitializeEx(nullptr, windows ? COINIT_APARTMENTTHREADED : COINIT_MULTITHREADED);
      EXPECT_FALSE(Execute([&](TUser& user, TFormDriver& picker) {
        user.WaitUntil(c.Shown, [&] { return RootName(picker.Handle()) == c.Shown; });
        EXPECT_EQ((GetWindowLongW(picker.Handle(), GWL_STYLE) & WS_THICKFRAME) != 0, windows);
        picker.Click("#2");
      }));
      CoUninitialize();
    }).join();
  }
}

}  // namespace
