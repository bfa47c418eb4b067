#include "directories/bffolder.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>
#include <objbase.h>

#include <thread>

#include "forms/application.h"
#include "temporary_folder.h"
#include "user/form_driver.h"
#include "user/window.h"

namespace {

using enum TBffOption;
using enum TBffRootDir;

/// A user who leaves each picker as told, from a thread of their own.
class Bffolder : public testing::Test {
 protected:
  static constexpr int kNameEdit = 0x3745;

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
        for (const HWND window : TopWindows(GetCurrentProcessId())) {
          PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
        }
      }
    });
    const bool chosen = Folder.Execute();
    user.join();
    return chosen;
  }
  static std::string Name(const TFormDriver& picker) {
    return TextOf(GetDlgItem(picker.Handle(), kNameEdit));
  }
  static std::string RootName(const TFormDriver& picker) {
    for (const HWND child : Descendants(picker.Handle())) {
      if (ClassOf(child) != WC_TREEVIEWA) continue;
      wchar_t text[MAX_PATH] = {};
      TVITEMW item{};
      item.mask = TVIF_TEXT;
      item.hItem = TreeView_GetRoot(child);
      item.pszText = text;
      item.cchTextMax = MAX_PATH;
      SendMessageW(child, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
      return Utf8(text);
    }
    return {};
  }
  void SetUp() override {
    Folder.SetCaption("choix");
    Folder.SetOptions({bffEditBox, bffNewDialogStyle, bffReturnOnlyFSDirs});
  }

  TBffolder Folder{"Folder"};
};

TEST_F(Bffolder, TellsWhenItIsThereAndTakesChangesWhileOpen) {
  int initialized = 0;
  Folder.SetCaption("");
  std::string selected;
  Folder.SetEnableOK(false);
  Folder.SetSelectedDir("C:\\windows\\");
  Folder.OnInitialized = [&] {
    ++initialized;
    EXPECT_FALSE(Folder.Execute()) << "it is open already";
  };
  Folder.OnSelectionChanged = [&](const std::string& folder) {
    selected = folder;
    if (folder == "C:\\users") {
      Folder.SetCaption("utilisateurs");
      Folder.SetEnableOK(true);
    }
  };
  EXPECT_TRUE(Execute([&](TUser& user, TFormDriver& picker) {
    user.WaitUntil("the first folder", [&] { return Name(picker) == "windows"; });
    EXPECT_FALSE(picker.Enabled("#1"));
    SendMessageW(picker.Handle(), WM_USER + 102, TRUE, reinterpret_cast<LPARAM>("C:\\users"));
    user.WaitUntil("OK to be enabled", [&] { return picker.Enabled("#1"); });
    EXPECT_EQ(picker.Caption(), "utilisateurs");
    picker.Click("#1");
  }));
  EXPECT_EQ(initialized, 1);
  EXPECT_EQ(selected, "C:\\users");
  EXPECT_EQ(Folder.SelectedDir(), "C:\\users");
  Folder.SetCaption("choix");
  Folder.OnSelectionChanged = nullptr;
  EXPECT_FALSE(Execute([](TUser&, TFormDriver& picker) { picker.Press(VK_ESCAPE); }));
  EXPECT_EQ(Folder.SelectedDir(), "C:\\users") << "a picker left by Cancel changes nothing";
}

// The newer look, which users can size, needs a thread for windows.
TEST_F(Bffolder, RootOfTheTreeWhateverTheThreadingModel) {
  const struct {
    TBffRootDir Root;
    const char* Selected;
    const char* Shown;
  } cases[] = {{rdWindows, "", "windows"},
               {rdUseSelectedDir, "C:\\users", "users"},
               {rdUseSelectedDir, "", "Desktop"},
               {rdUseSelectedDir, "C:\\n'existe pas", "Desktop"},
               {rdDesktop, "", "Desktop"}};
  for (const auto& c : cases) {
    Folder.SetRootDir(c.Root);
    Folder.SetSelectedDir(c.Selected);
    std::thread host([&] {
      const bool windows = c.Root != rdDesktop;
      CoInitializeEx(nullptr, windows ? COINIT_APARTMENTTHREADED : COINIT_MULTITHREADED);
      EXPECT_FALSE(Execute([&](TUser&, TFormDriver& picker) {
        EXPECT_EQ(RootName(picker), c.Shown);
        EXPECT_EQ((GetWindowLongW(picker.Handle(), GWL_STYLE) & WS_THICKFRAME) != 0, windows);
        picker.Click("#2");
      }));
      CoUninitialize();
    });
    host.join();
  }
}

}  // namespace
