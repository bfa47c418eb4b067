#include "directories/dlg_dir_select.h"

#include "directories/dlg_dir_move.h"
#include "directories/rules/directory_move.h"
#include "forms/input_box.h"
#include "forms/message_box.h"
#include "forms/while_set.h"
#include "platform/code_page.h"
#include "platform/system_message.h"

namespace {

constexpr char kBrowserCaption[] = "Rechercher un dossier";

void ShowError(const std::string& text) { ShowMessageBox(TMessageKind::Error, text); }

void ShowNameExists(const std::string& name) {
  ShowError("Erreur, " + name + Utf8ToAnsi(" existe déja !"));
}

}  // namespace

void TDlgDirSelect::Bind(TFormBinder& binder) {
  TDlgBase::Bind(binder);
  binder.Control("Label1", Label1);
  binder.Control("ListRep", ListRep);
  binder.Control("BtnAdd", BtnAdd);
  binder.Control("BtnRename", BtnRename);
  binder.Control("BtnDel", BtnDel);
  binder.Control("BtnMove", BtnMove);
  binder.Control("EditRep", EditRep);
  binder.Control("BtnBrowse", BtnBrowse);
  binder.Control("BoxDefault", BoxDefault);
  binder.Handler("ListRepClick", [this] { ListRepClick(); });
  binder.Handler("EditRepChange", [this] { EditRepChange(); });
  binder.Handler("BoxDefaultClick", [this] { BoxDefaultClick(); });
  binder.Handler("BtnAddClick", [this] { BtnAddClick(); });
  binder.Handler("BtnRenameClick", [this] { BtnRenameClick(); });
  binder.Handler("BtnDelClick", [this] { BtnDelClick(); });
  binder.Handler("BtnBrowseClick", [this] { BtnBrowseClick(); });
  binder.Handler("BtnMoveClick", [this] { BtnMoveClick(); });
  binder.Handler("ButtonOKClick", [this] { ButtonOKClick(); });
  binder.Handler("FormHide", [this] { FormHide(); });
  binder.CloseQueryHandler("FormCloseQuery", [this] { return FormCloseQuery(); });
}

void TDlgDirSelect::InitDialog() {
  using enum TBffOption;
  TDlgBase::InitDialog();
  Brownse = &Adopt(std::make_unique<TBffolder>("Brownse"));
  Brownse->SetOptions({bffReturnOnlyFSDirs, bffStatusText, bffEditBox, bffNewDialogStyle});
  Brownse->SetCaption(kBrowserCaption);
  Brownse->OnSelectionChanged = [this](const std::string& folder) {
    BrownseSelectionChanged(folder);
  };
}

// ---- the list ----

void TDlgDirSelect::LoadList() {
  {
    const TWhileSet update(FUpdating);
    TUserSettings settings;
    SettleMove(FFiles, settings);
    FList.Load(settings);
    const bool imported = ImportCurrent();
    FillList();
    ClearFields();
    if (settings.ReadFailed()) TellError(settings);
    if (imported) {
      ShowMessageBox(
          TMessageKind::Warning,
          Utf8ToAnsi("ZEF a importé l'ancien répertoire de lancement comme répertoire des comptes. "
                     "Il est recommandé de déplacer le répertoire dans le répertoire 'Mes "
                     "Documents' à l'aide du menu 'Fichier' puis 'Répertoire des comptes'..."));
    }
    ListRep->SetItemIndex(FList.IndexOfPath(FFiles.Current()));
  }
  EnableForSelection();
  ListRepClick();
}

void TDlgDirSelect::TellError(const TUserSettings& settings) {
  ShowError(Label1->Text() + " " + SystemMessage(settings.Error()));
}

bool TDlgDirSelect::ImportCurrent() {
  const std::string current = FFiles.Current();
  if (!FList.NothingStored() || !FFiles.HoldsData(current)) return false;
  FList.Import(Utf8ToAnsi("Répertoire par défaut"), current);
  return true;
}

void TDlgDirSelect::FillList() {
  const TItemsRefill refill(*ListRep);
  for (int i = 0; i < FList.Count(); ++i) ListRep->InsertItem(i, FList.Entry(i).Name);
}

void TDlgDirSelect::ClearFields() {
  EditRep->SetText({});
  BoxDefault->SetChecked(false);
  EnableForSelection();
}

// Not those of the edit and OK: a path can be looked for, and OK says what is missing.
void TDlgDirSelect::EnableForSelection() {
  const bool selected = Selected() >= 0;
  EditRep->SetEnabled(selected);
  BoxDefault->SetEnabled(selected);
  for (TBitBtn* button : {BtnRename, BtnDel, BtnMove}) button->SetEnabled(selected);
}

void TDlgDirSelect::ListRepClick() {
  const int selected = Selected();
  if (FUpdating || selected < 0) return;
  EnableForSelection();
  const TWhileSet update(FUpdating);
  EditRep->SetText(FList.Entry(selected).Path);
  BoxDefault->SetChecked(FList.IsDefault(selected));
}

void TDlgDirSelect::EditRepChange() {
  if (FUpdating || Selected() < 0) return;
  FList.SetPath(Selected(), EditRep->Text());
}

void TDlgDirSelect::BoxDefaultClick() {
  if (FUpdating) return;
  if (!BoxDefault->Checked()) {
    FList.ClearDefault();
  } else if (Selected() >= 0) {
    FList.SetDefault(Selected());
  }
}

// ---- the buttons beside it ----

void TDlgDirSelect::BtnAddClick() {
  const std::string name = InputBox("Nom du répertoire", "Nouveau répertoire", {}).value_or("");
  if (name.empty()) return;
  const auto added = FList.Add(name);
  if (!added) return ShowNameExists(name);
  const TWhileSet update(FUpdating);
  ListRep->InsertItem(*added, name);
  ListRep->SetItemIndex(*added);
  EditRep->SetText({});
  // The first entry, and no other, is the default one from the start.
  BoxDefault->SetChecked(FList.Entry(*added).Number == 0);
  EnableForSelection();
  EditRep->SetFocus();
}

void TDlgDirSelect::BtnRenameClick() {
  const int selected = Selected();
  if (selected < 0) return;
  const std::string before = FList.Entry(selected).Name;
  const std::string name =
      InputBox("Changement du nom d'un répertoire", "Nouveau Nom", before).value_or(before);
  // An entry without a name could not be stored.
  if (name == before || name.empty()) return;
  const auto renamed = FList.Rename(selected, name);
  if (!renamed) return ShowNameExists(name);
  const TWhileSet update(FUpdating);
  ListRep->DeleteItem(selected);
  ListRep->InsertItem(*renamed, name);
  ListRep->SetItemIndex(*renamed);
}

void TDlgDirSelect::BtnDelClick() {
  const int selected = Selected();
  if (selected < 0) return;
  const std::string& name = FList.Entry(selected).Name;
  if (!AskYesNo("Confirmes vous la suppresion de " + name + " ?")) return;
  FList.Remove(selected);
  const TWhileSet update(FUpdating);
  ListRep->DeleteItem(selected);
  // The button that was pressed is about to be disabled.
  ListRep->SetFocus();
  ClearFields();
}

void TDlgDirSelect::BtnBrowseClick() {
  Brownse->SetSelectedDir(EditRep->Text());
  // Shown until the first selection; users know the picker with this word.
  Brownse->SetStatusText("test");
  if (Brownse->Execute()) EditRep->SetText(Brownse->SelectedDir());
  BringToFront();
}

void TDlgDirSelect::BrownseSelectionChanged(const std::string& folder) {
  if (FFiles.HoldsData(folder)) {
    Brownse->SetCaption("Rechercher un dossier (ZEF)");
    Brownse->SetStatusText(Utf8ToAnsi("Contient des données ZEF"));
  } else {
    Brownse->SetStatusText({});
    Brownse->SetCaption(kBrowserCaption);
  }
}

void TDlgDirSelect::BtnMoveClick() {
  const int selected = Selected();
  if (selected < 0) return;
  const std::string path = FList.Entry(selected).Path;
  Brownse->SetSelectedDir(path);
  if (!Brownse->Execute() || !FFiles.DirectoryExists(Brownse->SelectedDir())) {
    return BringToFront();
  }
  const TMoveOutcome outcome = MoveWatched(path, Brownse->SelectedDir());
  if (outcome.MovedTo) {
    FList.Repoint(path, *outcome.MovedTo);
    const TWhileSet update(FUpdating);
    EditRep->SetText(*outcome.MovedTo);
  } else if (!outcome.Cancelled) {
    ShowError(Utf8ToAnsi("Erreur, impossible de déplacer !"));
  }
  BringToFront();
}

// ---- leaving ----

void TDlgDirSelect::ButtonOKClick() {
  FChosenPath.clear();
  TUserSettings settings;
  if (!FList.Save(settings)) TellError(settings);
  if (Selected() >= 0) FChosenPath = FList.Entry(Selected()).Path;
}

bool TDlgDirSelect::FormCloseQuery() {
  if (ModalResult() == mrCancel) return true;
  switch (CanOpen(FFiles, FList, Selected())) {
    case TOpening::Allowed:
      return true;
    case TOpening::NothingSelected:
      ShowError(Utf8ToAnsi("Vous devez choisir un répertoire !"));
      return false;
    case TOpening::DirectoryMissing:
      ShowError(Utf8ToAnsi("Le répertoire ") + FList.Entry(Selected()).Path + " n'existe pas !");
      return false;
  }
  return false;
}

// Freed under its picker: that must not stay behind alone.
void TDlgDirSelect::FormHide() { Brownse->Cancel(); }
