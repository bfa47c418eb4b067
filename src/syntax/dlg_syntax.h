#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "dialogs/base/dlg_base.h"
#include "forms/list_controls.h"
#include "syntax/dlg_syntax_const.h"
#include "syntax/dlg_syntax_types.h"
#include "syntax/rules/assistant_model.h"
#include "syntax/xml_document.h"

/// The object assistant: shows the expression of one script line as object, type, member and
/// parameters, and rewrites it as the user picks.
///
/// What is right is decided by TAssistantModel; the handlers only carry values between it and the
/// controls. The word lists are those of the database when the instance was made.
class TDlgSyntax : public TDlgBase {
 public:
  const char* ClassName() const override { return "TDlgSyntax"; }
  void InitDialog() override;

  const TSyntaxNames& Names() const { return FNames; }
  TDlgSyntaxConst& ConstantPicker() { return *FConst; }
  TDlgSyntaxTypes& TypesEditor() { return *FTypes; }
  TXMLDocument& Document() { return XMLSyntax; }

  /// Runs the assistant on a line, which may be absent, with the cursor at a byte index and the
  /// script's variables as comma text. True when the user confirmed; ResultLine and ResultCursor
  /// then hold the outcome.
  bool Run(std::optional<std::string_view> line, int cursor, std::string_view types);
  std::string ResultLine() const { return FModel.Result(); }
  int ResultCursor() const { return FModel.ResultCursor(); }

 protected:
  void Bind(TFormBinder& binder) override;

 private:
  void FormShow();
  void FormHide();
  void EditLigneEnter() { ShowLineFocus(true); }
  void EditLigneExit();
  void EditLigneChange();
  void ButUpdtClick() { LeaveLineBox(); }
  void UpDownClick();
  void BoxTypeChange();
  void BoxMethodChange();
  void ButDeleteClick();
  void BoxUseReturnClick();
  void ListParamClick();
  void ListParamDblClick();
  void ListParamClickCheck();
  void EditValueChange();
  void ButValueClick();
  void ButRecallClick();
  void RadioParamClick();
  void ButtonOKClick();

  void AnalyseLine(std::optional<std::string_view> line, int cursor, std::string_view types);
  TSyntaxView Syntax() const { return {*XMLSyntax.Database(), FNames}; }
  void RefreshTypeNames();
  void LeaveLineBox();
  void PickConstant();
  void FocusFirstChoice();

  // From the model into the controls.
  void ShowState();
  void ShowLineFocus(bool focused);
  void ShowLine(unsigned changes);
  void ShowType(unsigned changes);
  void ShowMember(unsigned changes);
  void ShowParams(unsigned changes);
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
  std::shared_ptr<const TSyntaxDatabase> FNamesSource;  ///< what the type names were made from
  TAssistantModel FModel;
  TDlgSyntaxConst* FConst = nullptr;
  TDlgSyntaxTypes* FTypes = nullptr;
  bool FLineFocused = false;
  bool FShowing = false;  ///< the assistant itself is writing its controls
};
