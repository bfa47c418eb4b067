#include <shlobj.h>

#include <fstream>

#include "outside/directories_fixture.h"
#include "outside/imports.h"

static const HANDLE Seen = CreateEventW(nullptr, TRUE, FALSE, nullptr);

/// In place of the system's: copies once the user has seen the progress.
static BOOL WINAPI CopyWhenSeen(LPCWSTR from, LPCWSTR to, LPPROGRESS_ROUTINE routine, void* data,
                                LPBOOL cancel, DWORD flags) {
  WaitForSingleObject(Seen, INFINITE);
  return CopyFileExW(from, to, routine, data, cancel, flags);
}

/// What lists and moves do has tests of its own; here are the dialog, the shell's picker, the
/// registry and two disks.
class Directories : public TDirectoriesTest {
 protected:
  using TScript = std::function<void(TScriptedUser& user, TFormDriver& form)>;
  using TOutcome = std::pair<int, int>;  ///< changed, cancelled

  /// Without a script no window may open.
  TOutcome Choose(const char* name, bool showList, const TScript& script = {},
                  const char* form = "TDlgDirSelect") {
    unsigned char cancelled = 2;
    int changed = -1;
    const auto call = [&] {
      changed = Library->VCLSelectDirList(name, static_cast<unsigned char>(showList), &cancelled);
    };
    if (!script) return call(), TOutcome{changed, cancelled};
    During(call, [&](TScriptedUser& user) {
      TFormDriver first = user.WaitForForm(form);
      script(user, first);
      first.WaitGone();
    });
    return {changed, cancelled};
  }
  static std::string Current() { return Utf8(std::filesystem::current_path().wstring()); }
  /// Empty when there is none.
  static std::string Setting(const wchar_t* name) {
    wchar_t value[1000]{};
    DWORD size = sizeof value;
    RegGetValueW(HKEY_CURRENT_USER, TSavedSettings::Product, name, RRF_RT_REG_SZ, nullptr, value,
                 &size);
    return Utf8(value);
  }
  /// Picks a folder in the shell's picker, as a program that opened it does and a click would.
  void Pick(TScriptedUser& user, TFormDriver& form, const char* button, bool fromData,
            const std::string& folder, const std::string& shownName) const {
    form.Click(button);
    TFormDriver picker =
        user.WaitForMessageBox(fromData ? "Rechercher un dossier (ZEF)" : "Rechercher un dossier");
    EXPECT_EQ(GetWindow(picker.Handle(), GW_OWNER), MainWindow);
    EXPECT_FALSE(IsWindowEnabled(form.Handle())) << "only the picker takes input";
    picker.WaitText("#14147", fromData ? "Contient des données ZEF" : "");
    SendMessageW(picker.Handle(), BFFM_SETSELECTIONW, TRUE,
                 reinterpret_cast<LPARAM>(Wide(folder).c_str()));
    user.WaitUntil(shownName, [&] { return picker.Text("#14149").ends_with(shownName); });
    picker.Click("#1");
    picker.WaitGone();
  }
};

TEST_F(Directories, DefaultAndNamedEntriesOpenSilently) {
  const std::string home = MakeDirectory("Comptes d'été");
  const std::string other = MakeDirectory("autre");
  Store({{"Été", home}, {"Autre", other}, {"Parti", Path("parti")}}, "Été");
  EXPECT_EQ(Choose("", false), (TOutcome{1, 0}));
  EXPECT_EQ(Current(), home);
  EXPECT_EQ(Choose(nullptr, false), (TOutcome{0, 0})) << "it is current already";
  EXPECT_EQ(Choose("AUTRE", false), (TOutcome{1, 0}));
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
  const std::string old = MakeDirectory("ancien", true);
  Enter(old);
  const auto script = [](TScriptedUser& user, TFormDriver&) {
    EXPECT_EQ(user.AnswerMessageBox("Avertissement", IDOK),
              "ZEF a importé l'ancien répertoire de lancement comme répertoire des comptes. "
              "Il est recommandé de déplacer le répertoire dans le répertoire 'Mes "
              "Documents' à l'aide du menu 'Fichier' puis 'Répertoire des comptes'...");
    TFormDriver form = user.WaitForForm("TDlgDirSelect");
    EXPECT_EQ(form.SelectedItem("ListRep"), "Répertoire par défaut");
    form.Click("ButtonOK");
    form.WaitGone();
  };
  EXPECT_EQ(Choose("", false, script, "#32770").second, 0);
  EXPECT_EQ(Setting(L"NbDirAlias") + Setting(L"DirAliasName0") + Setting(L"DirAliasPath0"),
            "1Répertoire par défaut" + old);
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
    EXPECT_EQ(user.AnswerMessageBox("Erreur", IDOK), "Le répertoire " + gone + " n'existe pas !");
    form.Fill("EditRep", home);
    WaitForSingleObject(saving, INFINITE);
    form.Press(VK_RETURN);
    EXPECT_TRUE(
        user.AnswerMessageBox("Erreur", IDOK).starts_with("Liste des répertoires disponibles : "));
    ReleaseMutex(saving);
  });
  CloseHandle(saving);
  EXPECT_EQ(outcome, (TOutcome{1, 0})) << "what was chosen is opened all the same";
  EXPECT_EQ(Current(), home);
  EXPECT_EQ(Setting(L"DirAliasPath0"), gone);
}

TEST_F(Directories, TheActiveOneMovesToAnotherVolumeUnlessCancelled) {
  const std::string home = MakeDirectory("Comptes d'été", true);
  const std::string away = "D:\\Comptes d'été", plain = MakeDirectory("sans données");
  for (const char* file : {"1", "2"}) std::ofstream(std::filesystem::path(Wide(home)) / file) << "";
  RedirectImports(Library->Module, [](std::string_view name, const void*) {
    return name == "CopyFileExW" ? reinterpret_cast<void*>(&CopyWhenSeen) : nullptr;
  });
  Store({{"Comptes", home}}, "Comptes");
  ASSERT_EQ(Choose("", false), (TOutcome{1, 0}));
  const auto outcome = Choose("", true, [&](TScriptedUser& user, TFormDriver& form) {
    form.WaitText("EditRep", home);
    Pick(user, form, "BtnMove", true, home, "Comptes d'été");
    EXPECT_EQ(user.AnswerMessageBox("Erreur", IDOK), "Erreur, impossible de déplacer !");
    for (const bool cancel : {true, false}) {
      EXPECT_EQ(form.Text("EditRep"), home);
      EXPECT_FALSE(std::filesystem::exists(Wide(away)));
      ResetEvent(Seen);
      Pick(user, form, "BtnMove", true, "D:\\", "(D:)");
      TFormDriver moving = user.WaitForForm("TDlgDirMove");
      EXPECT_EQ(moving.Text("LabelPath"), home);
      if (cancel) moving.Press(VK_ESCAPE);
      SetEvent(Seen);
      moving.WaitGone();
      form.WaitFocus("BtnMove");
    }
    form.WaitText("EditRep", away);
    EXPECT_TRUE(std::filesystem::exists(Wide(away + "\\2")));
    for (const bool fromData : {true, false}) {
      Pick(user, form, "BtnBrowse", fromData, plain, "sans données");
      form.WaitText("EditRep", plain);
      form.WaitFocus("BtnBrowse");
    }
    form.Press(VK_ESCAPE);
  });
  EXPECT_EQ(outcome, (TOutcome{1, 1})) << "cancelled, but what was moved is elsewhere";
  EXPECT_EQ(Current(), away);
  EXPECT_EQ(Setting(L"DirAliasPath0"), away) << "a move is stored at once";
  EXPECT_EQ(Setting(L"DirAliasMove"), "");
  Enter("C:\\");
  std::filesystem::remove_all(Wide(away));
}
