#include <fstream>

#include "outside/directories_fixture.h"

/// The shell's folder picker, opened by the dialog to point an entry elsewhere and to move it.
class FolderPicker : public TDirectoriesTest {
 protected:
  static constexpr char Plain[] = "Rechercher un dossier";
  static constexpr char WithData[] = "Rechercher un dossier (ZEF)";

  static void WaitCaption(TScriptedUser& user, const TPickerDriver& picker, const char* caption) {
    user.WaitUntil("the caption " + std::string(caption),
                   [&] { return picker.Form.Caption() == caption; });
  }
  static void MoveInto(TScriptedUser& user, TFormDriver& form, const std::string& folder,
                       std::string_view shownName) {
    form.Click("BtnMove");
    TPickerDriver picker(user);
    picker.Select(folder, shownName);
    picker.Ok();
  }
  static void ExpectRefusal(TScriptedUser& user) {
    TFormDriver box = user.WaitForMessageBox("Erreur");
    EXPECT_NE(WindowTree(user.Process()).find("Erreur, impossible de déplacer !"),
              std::string::npos);
    box.Press(VK_RETURN);
    box.WaitGone();
  }
};

TEST_F(FolderPicker, ShowsWhereItIsAndWhatAFolderHolds) {
  const std::string data = MakeDirectory("avec données d'été", true);
  const std::string plain = MakeDirectory("sans données");
  Store({{"Comptes", data}});
  Choose("", true, [&](TScriptedUser& user, TFormDriver& form) {
    form.Select("ListRep", "Comptes");
    form.Click("BtnBrowse");
    TPickerDriver picker(user);
    EXPECT_EQ(GetWindow(picker.Form.Handle(), GW_OWNER), MainWindow);
    EXPECT_FALSE(IsWindowEnabled(form.Handle())) << "only the picker takes input";
    picker.WaitSelected("avec données d'été");
    WaitCaption(user, picker, WithData);
    EXPECT_EQ(picker.Status(), "Contient des données ZEF");
    picker.Select(plain, "sans données");
    WaitCaption(user, picker, Plain);
    EXPECT_EQ(picker.Status(), "");
    picker.Cancel();
    EXPECT_EQ(form.Text("EditRep"), data) << "cancelled";
    form.WaitFocus("BtnBrowse");

    form.Click("BtnBrowse");
    TPickerDriver again(user);
    again.WaitSelected("avec données d'été");
    again.Select(plain, "sans données");
    WaitCaption(user, again, Plain);
    again.Ok();
    form.WaitText("EditRep", plain);

    form.Click("BtnBrowse");
    TPickerDriver typed(user);
    typed.WaitSelected("sans données");
    typed.TypeName("rien de tel");
    typed.Form.Press(VK_RETURN);
    typed.Form.WaitGone();
    EXPECT_EQ(form.Text("EditRep"), plain) << "a name that is nowhere changes nothing";
    form.Press(VK_ESCAPE);
  });
}

TEST_F(FolderPicker, MovesTheActiveDirectoryToAnotherVolumeAndBack) {
  const std::string home = MakeDirectory("Comptes d'été", true);
  const std::string back = MakeDirectory("retour");
  const std::string away = "D:\\Comptes d'été";
  Store({{"Comptes", home}}, "Comptes");
  ASSERT_EQ(ChooseSilently(""), (TOutcome{1, 0}));
  const auto outcome = Choose("", true, [&](TScriptedUser& user, TFormDriver& form) {
    form.WaitText("EditRep", home);
    MoveInto(user, form, "D:\\", "(D:)");
    form.WaitText("EditRep", away);
    EXPECT_EQ(Current(), away);
    EXPECT_FALSE(std::filesystem::exists(Wide(home)));
    MoveInto(user, form, back, "retour");
    form.WaitText("EditRep", Path("retour/Comptes d'été"));
    EXPECT_TRUE(std::filesystem::exists(Wide(Path("retour/Comptes d'été/ZEF.INI"))));
    form.Press(VK_ESCAPE);
  });
  EXPECT_EQ(outcome, (TOutcome{1, 1})) << "cancelled, but what was moved is elsewhere";
  EXPECT_EQ(Current(), Path("retour/Comptes d'été"));
  EXPECT_EQ(Settings()["DirAliasPath0"], Current()) << "a move is stored at once";
  EXPECT_EQ(Settings().count("DirAliasMove"), 0u);
}

// Long enough for a user to see it and to think better of it.
TEST_F(FolderPicker, AMoveIsShownAndCancelledWhileItCopies) {
  const std::string home = MakeDirectory("comptes", true);
  // Enough to be still at work when the user cancels.
  for (int i = 0; i < 3000; ++i) {
    std::ofstream(std::filesystem::path(Wide(home)) / std::to_string(i)) << "compte";
  }
  Store({{"Comptes", home}});
  Choose("", true, [&](TScriptedUser& user, TFormDriver& form) {
    form.Select("ListRep", "Comptes");
    MoveInto(user, form, "D:\\", "(D:)");
    TFormDriver moving = user.WaitForForm("TDlgDirMove");
    EXPECT_EQ(moving.Text("LabelPath"), home);
    moving.Press(VK_ESCAPE);
    moving.WaitGone();
    form.WaitFocus("BtnMove");
    EXPECT_EQ(form.Text("EditRep"), home);
    form.Press(VK_ESCAPE);
  });
  EXPECT_TRUE(std::filesystem::exists(Wide(home + "\\999")));
  WIN32_FIND_DATAW left;
  EXPECT_EQ(FindFirstFileW(L"D:\\comptes*", &left), INVALID_HANDLE_VALUE) << Utf8(left.cFileName);
}

TEST_F(FolderPicker, ARefusedMoveLeavesEverythingWhereItWas) {
  const std::string home = MakeDirectory("comptes", true);
  const std::string inside = MakeDirectory("comptes/2026");
  const std::string taken = MakeDirectory("autres");
  MakeDirectory("autres/comptes");
  const std::string gone = Path("parti");
  Store({{"Comptes", home}, {"Parti", gone}});
  Enter(home);
  Choose("", true, [&](TScriptedUser& user, TFormDriver& form) {
    for (const std::string& folder : {inside, taken, home}) {
      MoveInto(user, form, folder, folder.substr(folder.rfind('\\') + 1));
      ExpectRefusal(user);
      EXPECT_EQ(form.Text("EditRep"), home);
      EXPECT_EQ(Current(), home);
      EXPECT_TRUE(std::filesystem::exists(Wide(home + "\\ZEF.INI")));
    }
    form.Select("ListRep", "Parti");
    MoveInto(user, form, taken, "autres");
    ExpectRefusal(user);
    EXPECT_EQ(form.Text("EditRep"), gone);
    form.Press(VK_ESCAPE);
  });
}
