#pragma once

#include <string>

#include "dialogs/base/dlg_base.h"
#include "directories/bffolder.h"
#include "directories/rules/directory_list.h"
#include "directories/system_stores.h"
#include "forms/list_box.h"

/// The user's accounts directories: chooses the one to open; adds, renames, re-points, removes and
/// moves them. The list is stored only when the user confirms.
class TDlgDirSelect : public TDlgBase {
 public:
  using TDlgBase::TDlgBase;

  const char* ClassName() const override { return "TDlgDirSelect"; }
  void InitDialog() override;

  /// Takes the stored list afresh, or offers to import the data of the current directory.
  void LoadList();
  const TDirectoryList& List() const { return FList; }
  /// The path of the entry that was selected when the user confirmed.
  const std::string& ChosenPath() const { return FChosenPath; }

 protected:
  void Bind(TFormBinder& binder) override;

 private:
  void ListRepClick();
  void EditRepChange();
  void BoxDefaultClick();
  void BtnAddClick();
  void BtnRenameClick();
  void BtnDelClick();
  void BtnBrowseClick();
  void BtnMoveClick();
  void BrownseSelectionChanged(const std::string& folder);
  void ButtonOKClick();
  bool FormCloseQuery();
  void FormHide();

  int Selected() const { return ListRep->ItemIndex(); }
  /// That the list could not be read or saved, as the system says it.
  void TellError(const TUserSettings& settings);
  bool ImportCurrent();
  void FillList();
  void ClearFields();
  void EnableForSelection();

  TLabel* Label1 = nullptr;
  TListBox* ListRep = nullptr;
  TBitBtn* BtnAdd = nullptr;
  TBitBtn* BtnRename = nullptr;
  TBitBtn* BtnDel = nullptr;
  TBitBtn* BtnMove = nullptr;
  TEdit* EditRep = nullptr;
  TBitBtn* BtnBrowse = nullptr;
  TCheckBox* BoxDefault = nullptr;
  TBffolder* Brownse = nullptr;

  TDiskFiles FFiles;
  TDirectoryList FList;
  std::string FChosenPath;
  bool FUpdating = false;  ///< changes come from the dialog itself
};
