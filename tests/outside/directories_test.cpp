#include <algorithm>
#include <atomic>
#include <fstream>
#include <thread>

#include "outside/directories_fixture.h"

/// What lists and moves do has tests of its own; here are the dialog, the shell's picker, the
/// registry and two disks.
class Directories : public TDirectoriesTest {
 protected:
  using TSettings = std::map<std::string, std::string>;

  /// The text of the box on screen, which is then left by a button: 1 OK, 6 yes, 7 no.
  static std::string Answer(TScriptedUser& user, const char* caption, const char* button = "#1") {
    TFormDriver box = user.WaitForMessageBox(caption);
    std::string text;
    for (const HWND child : Descendants(box.Handle()))
      if (ClassOf(child) == "Static" && !TextOf(child).empty()) text = TextOf(child);
    box.Click(button);
    box.WaitGone();
    return text;
  }
  static void MoveInto(TScriptedUser& user, TFormDriver& form, const std::string& folder,
                       std::string_view shownName) {
    form.Click("BtnMove");
    TPickerDriver picker(user);
    picker.Select(folder, shownName);
    picker.Leave("#1");
  }
};

TEST_F(Directories, DefaultAndNamedEntriesOpenSilently) {
  const std::string home = MakeDirectory("Comptes d'été");
  const std::string other = MakeDirectory("autre");
  Store({{"Été", home}, {"Autre", other}, {"Parti", Path("parti")}}, "Été");
  EXPECT_EQ(ChooseSilently(""), (TOutcome{1, 0}));
  EXPECT_EQ(Current(), home);
  EXPECT_EQ(ChooseSilently(nullptr), (TOutcome{0, 0})) << "it is current already";
  EXPECT_EQ(ChooseSilently("AUTRE"), (TOutcome{1, 0}));
  const auto refuse = [&](TScriptedUser&, TFormDriver& form) {
    EXPECT_EQ(form.Items("ListRep"), (std::vector<std::string>{"Autre", "Été", "Parti"}));
    EXPECT_EQ(form.SelectedItem("ListRep"), "Autre") << "the current directory's entry";
    EXPECT_EQ(form.Text("EditRep"), other);
    form.Press(VK_ESCAPE);
  };
  for (const char* name : {"inconnu", "Parti", ""})
    EXPECT_EQ(Choose(name, !*name, refuse), (TOutcome{0, 1})) << name;
  EXPECT_EQ(Current(), other);
}

TEST_F(Directories, DataOfAnOlderProgramIsImported) {
  Enter(MakeDirectory("sans données"));
  const auto nothing = Choose("", false, [](TScriptedUser& user, TFormDriver& form) {
    EXPECT_TRUE(form.Items("ListRep").empty());
    for (const char* name : {"EditRep", "BoxDefault", "BtnRename", "BtnDel", "BtnMove"})
      EXPECT_FALSE(form.Enabled(name)) << name;
    form.Click("ButtonOK");
    EXPECT_EQ(Answer(user, "Erreur"), "Vous devez choisir un répertoire !");
    form.CloseBox();
  });
  EXPECT_EQ(nothing, (TOutcome{0, 1}));
  const std::string old = MakeDirectory("ancien", true);
  Enter(old);
  unsigned char cancelled = 2;
  During([&] { Library->VCLSelectDirList("", static_cast<unsigned char>(0), &cancelled); },
         [&](TScriptedUser& user) {
           EXPECT_EQ(Answer(user, "Avertissement"),
                     "ZEF a importé l'ancien répertoire de lancement comme répertoire des comptes. "
                     "Il est recommandé de déplacer le répertoire dans le répertoire 'Mes "
                     "Documents' à l'aide du menu 'Fichier' puis 'Répertoire des comptes'...");
           TFormDriver form = user.WaitForForm("TDlgDirSelect");
           EXPECT_EQ(form.SelectedItem("ListRep"), "Répertoire par défaut");
           form.Click("ButtonOK");
           form.WaitGone();
         });
  EXPECT_EQ(cancelled, 0);
  EXPECT_EQ(Settings(), (TSettings{{"NbDirAlias", "1"},
                                   {"DirAliasName0", "Répertoire par défaut"},
                                   {"DirAliasPath0", old},
                                   {"DirAliasDefault", ""}}));
}

TEST_F(Directories, WhatCannotBeOpenedOrSavedIsTold) {
  const std::string home = MakeDirectory("revenu");
  const std::string gone = Path("clé débranchée") + std::string(200, 'x');
  Store({{"Clé", gone}});
  // A program of the same session that saves for long.
  const HANDLE saving = CreateMutexW(nullptr, FALSE, L"Local\\ZEF directory list");
  const auto outcome = Choose("clé", false, [&](TScriptedUser& user, TFormDriver& form) {
    form.Select("ListRep", "Clé");
    form.Click("ButtonOK");
    EXPECT_EQ(Answer(user, "Erreur"), "Le répertoire " + gone + " n'existe pas !");
    form.Fill("EditRep", home);
    WaitForSingleObject(saving, INFINITE);
    form.Press(VK_RETURN);
    EXPECT_TRUE(Answer(user, "Erreur").starts_with("Liste des répertoires disponibles : "));
    ReleaseMutex(saving);
  });
  CloseHandle(saving);
  EXPECT_EQ(outcome, (TOutcome{1, 0})) << "what was chosen is opened all the same";
  EXPECT_EQ(Current(), home);
  EXPECT_EQ(Settings()["DirAliasPath0"], gone);
}

// Another program writes and deletes values of the same key all the time.
TEST_F(Directories, ManyEntriesAreReadWholeWhileOthersWrite) {
  std::vector<std::pair<std::string, std::string>> entries;
  for (int i = 0; i < 500; ++i)
    entries.emplace_back("Comptes " + std::to_string(1499 - i), "c:\\x");
  Store(entries);
  std::atomic<bool> done = false;
  std::thread other([&] {
    for (int i = 0; !done; ++i) {
      RegSetKeyValueW(HKEY_CURRENT_USER, TSavedSettings::Product, L"Autre", REG_SZ, L"", 2);
      RegDeleteKeyValueW(HKEY_CURRENT_USER, TSavedSettings::Product, L"Autre");
      if (i % 8 == 0) Sleep(1);
    }
  });
  Choose("", true, [&](TScriptedUser&, TFormDriver& form) {
    EXPECT_EQ(form.Items("ListRep").size(), 500u);
    form.Press(VK_ESCAPE);
  });
  done = true;
  other.join();
}

TEST_F(Directories, ThePickerShowsWhereItIsAndWhatAFolderHolds) {
  const std::string data = MakeDirectory("avec données d'été", true);
  const std::string plain = MakeDirectory("sans données");
  Store({{"Comptes", data}});
  Choose("", true, [&](TScriptedUser& user, TFormDriver& form) {
    form.Select("ListRep", "Comptes");
    for (const char* button : {"#2", "#1"}) {
      form.Click("BtnBrowse");
      TPickerDriver picker(user);
      EXPECT_EQ(GetWindow(picker.Form.Handle(), GW_OWNER), MainWindow);
      EXPECT_FALSE(IsWindowEnabled(form.Handle())) << "only the picker takes input";
      picker.WaitSelected("avec données d'été");
      picker.WaitShown("Rechercher un dossier (ZEF)", "Contient des données ZEF");
      picker.Select(plain, "sans données");
      picker.WaitShown("Rechercher un dossier", "");
      picker.Leave(button);
      form.WaitText("EditRep", *button == '#' && button[1] == '1' ? plain : data);
    }
    form.WaitFocus("BtnBrowse");
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

TEST_F(Directories, TheActiveOneMovesToAnotherVolumeAndBack) {
  const std::string home = MakeDirectory("Comptes d'été", true);
  const std::string back = MakeDirectory("retour");
  const std::string away = "D:\\Comptes d'été";
  const std::string end = Path("retour/Comptes d'été");
  Store({{"Comptes", home}}, "Comptes");
  ASSERT_EQ(ChooseSilently(""), (TOutcome{1, 0}));
  const auto outcome = Choose("", true, [&](TScriptedUser& user, TFormDriver& form) {
    form.WaitText("EditRep", home);
    MoveInto(user, form, home, "Comptes d'été");
    EXPECT_EQ(Answer(user, "Erreur"), "Erreur, impossible de déplacer !");
    EXPECT_EQ(form.Text("EditRep"), home);
    MoveInto(user, form, "D:\\", "(D:)");
    form.WaitText("EditRep", away);
    EXPECT_EQ(Current(), away);
    MoveInto(user, form, back, "retour");
    form.WaitText("EditRep", end);
    EXPECT_TRUE(std::filesystem::exists(Wide(end + "\\ZEF.INI")));
    form.Press(VK_ESCAPE);
  });
  EXPECT_EQ(outcome, (TOutcome{1, 1})) << "cancelled, but what was moved is elsewhere";
  EXPECT_EQ(Current(), end);
  EXPECT_EQ(Settings()["DirAliasPath0"], end) << "a move is stored at once";
  EXPECT_EQ(Settings().count("DirAliasMove"), 0u);
}

// Long enough for a user to see it and to think better of it.
TEST_F(Directories, AMoveIsShownAndCancelledWhileItCopies) {
  const std::string home = MakeDirectory("comptes", true);
  // Enough to be still at work when the user cancels.
  for (int i = 0; i < 3000; ++i)
    std::ofstream(std::filesystem::path(Wide(home)) / std::to_string(i)) << "compte";
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
