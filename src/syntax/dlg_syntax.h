#pragma once

#include <memory>
#include <optional>
#include <source_location>
#include <string>
#include <string_view>
#include <vector>

#include "dialogs/base/dlg_base.h"
#include "forms/check_list_box.h"
#include "forms/combo_box.h"
#include "forms/image_combo_box.h"
#include "forms/memo.h"
#include "forms/radio_group.h"
#include "syntax/dlg_syntax_const.h"
#include "syntax/dlg_syntax_types.h"
#include "syntax/rules/assistant_model.h"
#include "syntax/xml_document.h"

/// The object assistant: shows the expression of one script line as object, type, member and
/// parameters, and rewrites it as the user picks.
///
/// What is right is decided by TAssistantModel; the handlers only carry values between it and the
/// controls.
class TDlgSyntax : public TDlgBase {
 public:
  const char* ClassName() const override { return "TDlgSyntax"; }
  void InitDialog() override;

  /// Those of the database as it was when the instance was made, or else when it could first be
  /// read after that.
  const TSyntaxNames& Names();
  TDlgSyntaxConst& ConstantPicker() { return *FConst; }
  TDlgSyntaxTypes& TypesEditor() { return *FTypes; }
  TXMLDocument& Document() { return XMLSyntax; }

  /// Runs the assistant on a line, which may be absent, with the cursor at a byte index and the
  /// script's variables as comma text. True when the user confirmed; ResultLine and ResultCursor
  /// then hold the outcome. The place is for the debugger.
  bool Run(std::optional<std::string_view> line, int cursor, std::string_view types,
           const std::source_location& place = std::source_location::current());
  std::string ResultLine() const { return FModel.Result(); }
  int ResultCursor() const { return FModel.ResultCursor(); }

 protected:
  void Bind(TFormBinder& binder) override;
  void DpiChanged() override;

 private:
  void FormHide() { ShowLineFocus(false); }
  void EditLigneEnter() { ShowLineFocus(true); }
  void EditLigneExit();
  void EditLigneChange();
  void ButUpdtClick() { LeaveLineBox(); }
  void UpDownClick();
  void BoxTypeChange();
  void BoxMethodChange();
  void ButDeleteClick();
  void BoxUseReturnClick();
  void ListParamEnter();
  void ListParamClick();
  void ListParamDblClick();
  void ListParamClickCheck();
  void EditValueChange();
  void ButValueClick();
  void ButRecallClick();
  void RadioParamClick();
  void ButtonOKClick();

  TSyntaxView Syntax() const { return {*XMLSyntax.Database(), FNames}; }
  void RefreshNames();
  void LeaveLineBox();
  void PickConstant();
  void FocusFirstChoice();

  // From the model into the controls.
  void ShowState();
  void ShowLineFocus(bool focused);
  void ShowLine(unsigned changes);
  void ShowType();
  void ShowMember(unsigned changes);
  void ShowParams(unsigned changes);
  void ShowParamRows();
  void ShowParamPanel(unsigned changes);

  TEdit* EditLigne = nullptr;
  TSpeedButton* ButUpdt = nullptr;
  TEdit* EditObjet = nullptr;
  TUpDown* UpDown = nullptr;
  TComboBox* BoxType = nullptr;
  TMemo* EditHelpType = nullptr;
  TCheckBox* BoxUseReturn = nullptr;
  TSpeedButton* ButDelete = nullptr;
  TEdit* EditMethod = nullptr;
  TImageComboBox* BoxMethod = nullptr;
  TStaticText* TextReturnType = nullptr;
  TMemo* EditHelpMethod = nullptr;
  TCheckListBox* ListParam = nullptr;
  TEdit* EditValue = nullptr;
  TSpeedButton* ButValue = nullptr;
  TSpeedButton* ButRecall = nullptr;
  TRadioGroup* RadioParam = nullptr;
  TStaticText* TextParamType = nullptr;
  TStaticText* TextDefVal = nullptr;
  TMemo* EditParamHelp = nullptr;

  TXMLDocument XMLSyntax;
  TImageList ImageListMethod;
  TSyntaxNames FNames;
  bool FWordsKnown = false;  ///< the word lists are a database's that was read
  ULONGLONG FWordsTriedAt = 0;
  std::shared_ptr<const TSyntaxDatabase> FNamesSource;  ///< what the type names were made from
  TAssistantModel FModel;
  std::vector<TParamRow> FShownRows;  ///< what ListParam shows
  TDlgSyntaxConst* FConst = nullptr;
  TDlgSyntaxTypes* FTypes = nullptr;
  bool FLineFocused = false;
  bool FShowing = false;  ///< the assistant itself is writing its controls
};
