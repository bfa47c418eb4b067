#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "dialogs/base/dlg_base.h"
#include "forms/combo_box.h"
#include "forms/list_box.h"
#include "syntax/rules/script_variables.h"
#include "syntax/xml_document.h"

/// The editor of the types of a script's variables. The variables and what may be done to them are
/// TScriptVariables'.
///
/// A run is SetVariables, ShowModal, and GetResult when that gave mrOk; the document must be open
/// meanwhile and outlive the editor.
class TDlgSyntaxTypes : public TDlgBase {
 public:
  explicit TDlgSyntaxTypes(const TXMLDocument& document) : XMLSyntax(document) {}

  const char* ClassName() const override { return "TDlgSyntaxTypes"; }

  /// Loads the variables from comma text of name=type entries; they count as unchanged.
  void SetVariables(std::string_view commaText);
  std::string GetResult() const { return FVariables.CommaText(); }

  bool TypesChanged() const { return FVariables.Changed(); }
  void ClearTypesChanged() { FVariables.ClearChanged(); }
  /// Takes other variables, as a change; what is on screen is left as it is.
  void ReplaceVariables(std::string_view commaText) { FVariables.Replace(commaText); }

 protected:
  void Bind(TFormBinder& binder) override;

 private:
  void EditNewChange();
  void BtnAddClick();
  void BoxConstClick();
  void EditModifChange();
  void BtnValidNomClick();
  void BoxTypesChange();
  void BtnDelClick();

  void RefreshLists();
  void RefreshTypes();
  void SelectVariable(std::string_view name);
  /// A default button that is disabled would leave Enter without effect.
  void DisableRename();
  void ShowButtons(const TVariablesButtons& buttons);

  TEdit* EditNew = nullptr;
  TBitBtn* BtnAdd = nullptr;
  TListBox* BoxConst = nullptr;
  TEdit* EditModif = nullptr;
  TBitBtn* BtnValidNom = nullptr;
  TComboBox* BoxTypes = nullptr;
  TBitBtn* BtnDel = nullptr;

  const TXMLDocument& XMLSyntax;
  std::shared_ptr<const TSyntaxDatabase> FTypesSource;  ///< what BoxTypes was filled from
  TScriptVariables FVariables;
};
