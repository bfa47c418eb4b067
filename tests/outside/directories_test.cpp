#include <algorithm>
#include <atomic>
#include <thread>

#include "outside/directories_fixture.h"

namespace {
using TSettings = std::map<std::string, std::string>;

constexpr char Import[] =
    "ZEF a importé l'ancien répertoire de lancement comme répertoire des comptes. Il est "
    "recommandé de déplacer le répertoire dans le répertoire 'Mes Documents' à l'aide du menu "
    "'Fichier' puis 'Répertoire des comptes'...";

/// The text of the box on screen, which is then left by a button: 1 OK, 6 yes, 7 no.
std::string Answer(TScriptedUser& user, const char* caption, const char* button = "#1") {
  TFormDriver box = user.WaitForMessageBox(caption);
  std::string text;
  for (const HWND child : Descendants(box.Handle()))
    if (ClassOf(child) == "Static" && !TextOf(child).empty()) text = TextOf(child);
  box.Click(button);
  box.WaitGone();
  return text;
}

/// Answers the box that asks for a name.
void GiveName(TScriptedUser& user, const char* caption, const char* prompt, std::string_view name) {
  TFormDriver box = user.WaitForForm("TInputBox");
  EXPECT_EQ(box.Caption(), caption);
  EXPECT_EQ(box.Text("Prompt"), prompt);
  box.WaitFocus("Value");
  box.Type(name);
  box.Press(VK_RETURN);
  box.WaitGone();
}

void Add(TScriptedUser& user, TFormDriver& form, std::string_view name) {
  form.Click("BtnAdd");
  GiveName(user, "Nom du répertoire", "Nouveau répertoire", name);
}

void Rename(TScriptedUser& user, TFormDriver& form, std::string_view name) {
  form.Click("BtnRename");
  GiveName(user, "Changement du nom d'un répertoire", "Nouveau Nom", name);
}
}  // namespace

class Directories : public TDirectoriesTest {};

TEST_F(Directories, DefaultAndNamedEntriesOpenSilently) {
  const std::string home = MakeDirectory("Comptes d'été");
  const std::string other = MakeDirectory("autre");
  Store({{"Été", home}, {"Autre", other}, {"Parti", Path("parti")}}, "Été");
  EXPECT_EQ(ChooseSilently(""), (TOutcome{1, 0}));
  EXPECT_EQ(Current(), home);
  EXPECT_EQ(ChooseSilently(nullptr), (TOutcome{0, 0})) << "it is current already";
  EXPECT_EQ(ChooseSilently("AUTRE"), (TOutcome{1, 0}));
  EXPECT_EQ(Current(), other);
  const auto refuse = [&](TScriptedUser&, TFormDriver& form) {
    EXPECT_EQ(form.Items("ListRep"), (std::vector<std::string>{"Autre", "Été", "Parti"}));
    EXPECT_EQ(form.SelectedItem("ListRep"), "Autre") << "the current directory's entry";
    EXPECT_EQ(form.Text("EditRep"), other);
    EXPECT_EQ(form.Checked("BoxDefault"), BST_UNCHECKED);
    form.Press(VK_ESCAPE);
  };
  for (const char* name : {"inconnu", "Parti"}) {
    EXPECT_EQ(Choose(name, false, refuse), (TOutcome{0, 1})) << name;
  }
  EXPECT_EQ(Choose("", true, refuse), (TOutcome{0, 1})) << "asked to show the list";
  EXPECT_EQ(Current(), other);
}

TEST_F(Directories, NothingToChooseFrom) {
  Enter(MakeDirectory("sans données"));
  const auto outcome = Choose("", false, [](TScriptedUser& user, TFormDriver& form) {
    EXPECT_TRUE(form.Items("ListRep").empty());
    EXPECT_FALSE(form.Enabled("EditRep"));
    EXPECT_FALSE(form.Enabled("BoxDefault"));
    EXPECT_FALSE(form.Visible("BitBtn2"));
    for (const char* button : {"BtnRename", "BtnDel", "BtnMove"}) {
      EXPECT_FALSE(form.Enabled(button)) << "it needs a selection";
    }
    form.Click("ButtonOK");
    EXPECT_EQ(Answer(user, "Erreur"), "Vous devez choisir un répertoire !");
    form.CloseBox();
  });
  EXPECT_EQ(outcome, (TOutcome{0, 1}));
  EXPECT_EQ(Settings(), (TSettings{{"NbDirAlias", "0"}, {"DirAliasDefault", ""}}));
}

TEST_F(Directories, DataOfAnOlderProgramIsImported) {
  const std::string old = MakeDirectory("ancien", true);
  Enter(old);
  for (const bool confirm : {false, true}) {
    unsigned char cancelled = 2;
    During(
        [&] {
          EXPECT_EQ(Library->VCLSelectDirList("", static_cast<unsigned char>(0), &cancelled), 0);
        },
        [&](TScriptedUser& user) {
          EXPECT_EQ(Answer(user, "Avertissement"), Import);
          TFormDriver form = user.WaitForForm("TDlgDirSelect");
          EXPECT_EQ(form.SelectedItem("ListRep"), "Répertoire par défaut");
          EXPECT_EQ(form.Text("EditRep"), old);
          EXPECT_EQ(form.Checked("BoxDefault"), BST_UNCHECKED);
          form.Click(confirm ? "ButtonOK" : "ButtonCancel");
          form.WaitGone();
        });
    EXPECT_EQ(cancelled, confirm ? 0 : 1);
    EXPECT_EQ(Settings().count("NbDirAlias"), confirm ? 1u : 0u);
  }
  EXPECT_EQ(Settings(), (TSettings{{"NbDirAlias", "1"},
                                   {"DirAliasName0", "Répertoire par défaut"},
                                   {"DirAliasPath0", old},
                                   {"DirAliasDefault", ""}}));
}

TEST_F(Directories, AddedRenamedRemovedAndStored) {
  const std::string home = MakeDirectory("maison");
  const auto outcome = Choose("", true, [&](TScriptedUser& user, TFormDriver& form) {
    Add(user, form, "");
    EXPECT_TRUE(form.Items("ListRep").empty());
    Add(user, form, "Maison & jardin, \"été\" = 1");
    EXPECT_EQ(form.Checked("BoxDefault"), BST_CHECKED) << "the first one";
    form.WaitFocus("EditRep");
    form.Type(home);
    Add(user, form, "bureau");
    EXPECT_EQ(form.Text("EditRep"), "");
    EXPECT_EQ(form.Checked("BoxDefault"), BST_UNCHECKED);
    Add(user, form, "BUREAU");
    EXPECT_EQ(Answer(user, "Erreur"), "Erreur, BUREAU existe déja !");
    form.Fill("EditRep", "\\\\serveur\\comptes");
    Rename(user, form, "maison & JARDIN, \"été\" = 1");
    EXPECT_EQ(Answer(user, "Erreur"), "Erreur, maison & JARDIN, \"été\" = 1 existe déja !");
    Rename(user, form, "bureau");
    Rename(user, form, "");
    EXPECT_EQ(form.SelectedItem("ListRep"), "bureau");
    form.Click("BoxDefault");
    Rename(user, form, "Z");
    EXPECT_EQ(form.SelectedItem("ListRep"), "Z");
    Add(user, form, "à jeter");
    form.Click("BtnDel");
    EXPECT_EQ(Answer(user, "Confirmation", "#7"), "Confirmes vous la suppresion de à jeter ?");
    EXPECT_EQ(form.Items("ListRep").size(), 3u);
    form.Click("BtnDel");
    Answer(user, "Confirmation", "#6");
    EXPECT_EQ(form.SelectedItem("ListRep"), "");
    EXPECT_FALSE(form.Enabled("EditRep"));
    EXPECT_FALSE(form.Enabled("BoxDefault"));
    EXPECT_FALSE(form.Enabled("BtnDel"));
    form.WaitFocus("ListRep");
    form.Select("ListRep", "Z");
    EXPECT_EQ(form.Checked("BoxDefault"), BST_CHECKED);
    EXPECT_EQ(form.Text("EditRep"), "\\\\serveur\\comptes");
    form.Select("ListRep", "Maison & jardin, \"été\" = 1");
    form.Click("ButtonOK");
  });
  EXPECT_EQ(outcome, (TOutcome{1, 0}));
  EXPECT_EQ(Current(), home);
  EXPECT_EQ(Settings(), (TSettings{{"NbDirAlias", "2"},
                                   {"DirAliasName0", "Maison & jardin, \"été\" = 1"},
                                   {"DirAliasPath0", home},
                                   {"DirAliasName1", "Z"},
                                   {"DirAliasPath1", "\\\\serveur\\comptes"},
                                   {"DirAliasDefault", "Z"}}));
}

TEST_F(Directories, AGoneDirectoryStaysAndIsRefused) {
  const std::string home = MakeDirectory("revenu");
  const std::string gone = Path("clé débranchée") + std::string(200, 'x');
  Store({{"Clé", gone}});
  const auto outcome = Choose("clé", false, [&](TScriptedUser& user, TFormDriver& form) {
    form.Select("ListRep", "Clé");
    form.Click("ButtonOK");
    EXPECT_EQ(Answer(user, "Erreur"), "Le répertoire " + gone + " n'existe pas !");
    EXPECT_EQ(Settings()["DirAliasPath0"], gone);
    form.Fill("EditRep", home);
    form.Press(VK_RETURN);
  });
  EXPECT_EQ(outcome, (TOutcome{1, 0}));
  EXPECT_EQ(Current(), home);
  EXPECT_EQ(Settings()["DirAliasPath0"], home);
}

// Another program writes and deletes values of the same key all the time.
TEST_F(Directories, ManyEntriesAreReadWholeWhileOthersWrite) {
  std::vector<std::pair<std::string, std::string>> entries;
  for (int i = 0; i < 500; ++i) {
    entries.emplace_back("Comptes " + std::to_string(1499 - i), "c:\\x" + std::to_string(i));
  }
  Store(entries);
  StoreSetting("DirAliasName3", "");
  std::atomic<bool> done = false;
  std::thread other([&] {
    HKEY key = nullptr;
    RegOpenKeyExW(HKEY_CURRENT_USER, TSavedSettings::Product, 0, KEY_WRITE, &key);
    for (int i = 0; !done; ++i) {
      RegSetValueExW(key, L"Autre", 0, REG_SZ, reinterpret_cast<const BYTE*>(L""), 2);
      RegDeleteValueW(key, L"Autre");
      if (i % 8 == 0) Sleep(1);
    }
    RegCloseKey(key);
  });
  for (const char* count : {"500", "2000000000"}) {
    StoreSetting("NbDirAlias", count);
    Choose("", true, [&](TScriptedUser&, TFormDriver& form) {
      const auto items = form.Items("ListRep");
      EXPECT_EQ(items.size(), 499u) << count;
      EXPECT_TRUE(std::ranges::is_sorted(items));
      form.Press(VK_ESCAPE);
    });
  }
  done = true;
  other.join();
}

// A program of the same session that saves for long; the user learns that this one could not.
TEST_F(Directories, AFailedSaveIsTold) {
  const std::string home = MakeDirectory("maison");
  Store({{"Maison", home}});
  const auto outcome = Choose("", true, [&](TScriptedUser& user, TFormDriver& form) {
    form.Select("ListRep", "Maison");
    const HANDLE saving = CreateMutexW(nullptr, TRUE, L"Local\\ZEF directory list");
    form.Click("BoxDefault");
    form.Click("ButtonOK");
    EXPECT_TRUE(Answer(user, "Erreur").starts_with("Liste des répertoires disponibles : "));
    ReleaseMutex(saving);
    CloseHandle(saving);
  });
  EXPECT_EQ(outcome, (TOutcome{1, 0})) << "what was chosen is opened all the same";
  EXPECT_EQ(Settings()["DirAliasDefault"], "");
}

/// What the host does while the dialog is open.
const TLibrary* BusyLibrary = nullptr;

void CALLBACK ChooseAgainThenFree(HWND window, UINT, UINT_PTR timer, DWORD) {
  KillTimer(window, timer);
  unsigned char cancelled = 2;
  EXPECT_EQ(BusyLibrary->VCLSelectDirList("", static_cast<unsigned char>(1), &cancelled), 0);
  EXPECT_EQ(cancelled, 1);
  BusyLibrary->VCLFree();
}

TEST_F(Directories, OneChoiceAtATimeAndFreedWhileOpen) {
  BusyLibrary = &*Library;
  Store({{"Comptes", MakeDirectory("comptes")}});
  using TOpen = void (*)(TScriptedUser&, TFormDriver&);
  const TOpen boxes[] = {[](TScriptedUser&, TFormDriver&) {},
                         [](TScriptedUser& user, TFormDriver& form) {
                           form.Click("BtnAdd");
                           user.WaitForForm("TInputBox");
                         },
                         [](TScriptedUser& user, TFormDriver& form) {
                           form.Select("ListRep", "Comptes");
                           form.Click("BtnBrowse");
                           TPickerDriver(user).WaitSelected("comptes");
                         }};
  for (const TOpen open : boxes) {
    const auto outcome = Choose("", true, [&](TScriptedUser& user, TFormDriver& form) {
      open(user, form);
      SetTimer(MainWindow, 1, 10, ChooseAgainThenFree);
    });
    EXPECT_EQ(outcome, (TOutcome{0, 1}));
    EXPECT_TRUE(IsWindowEnabled(MainWindow));
  }
  StoreSetting("NbDirAlias", "0");
  Enter(MakeDirectory("ancien", true));
  for (int round = 0; round < 2; ++round) {
    unsigned char cancelled = 2;
    During(
        [&] {
          EXPECT_EQ(Library->VCLSelectDirList("", static_cast<unsigned char>(1), &cancelled), 0);
        },
        [&](TScriptedUser& user) {
          user.WaitForMessageBox("Avertissement");
          InHost([&] { Library->VCLFree(); });
          Answer(user, "Avertissement");
        });
    EXPECT_EQ(cancelled, 1) << "freed under the warning";
  }
}
