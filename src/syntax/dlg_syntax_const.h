#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "dialogs/base/dlg_base.h"
#include "forms/check_list_box.h"
#include "forms/image_combo_box.h"
#include "forms/memo.h"
#include "syntax/rules/constant_value.h"
#include "syntax/xml_document.h"

/// The constant picker: composes a value from the named constants of the syntax database. What the
/// ticks and the text mean to each other is decided by TConstantChoice.
///
/// A run is SetLine, perhaps ShowForList, ShowModal, and GetResult when that gave mrOk; the
/// document must be open meanwhile and outlive the picker.
class TDlgSyntaxConst : public TDlgBase {
 public:
  explicit TDlgSyntaxConst(const TXMLDocument& document) : XMLSyntax(document) {}

  const char* ClassName() const override { return "TDlgSyntaxConst"; }
  void InitDialog() override;

  /// Starts from a text, with every category on offer and none selected.
  void SetLine(std::string_view text);
  /// Offers only the categories whose name occurs in the list's name, and selects the list itself.
  void ShowForList(std::string_view listName);
  std::string GetResult() const { return EditResult->Text(); }

 protected:
  void Bind(TFormBinder& binder) override;
  void DpiChanged() override;

 private:
  void EditResultChange();
  void BoxCatChange() { FillConstants(); }
  void ListConstClick();
  void ListConstClickCheck();
  void ListConstDblClick();
  void ButClearClick();

  void LoadCategories();
  void FillConstants();
  void ParseResult();
  void TickCurrent(bool ticked);
  void ShowMarks(const std::vector<int>& changed);

  TEdit* EditResult = nullptr;
  TImageComboBox* BoxCat = nullptr;
  TEdit* EditType = nullptr;
  TMemo* EditHelp = nullptr;
  TCheckListBox* ListConst = nullptr;
  TMemo* EditConstHelp = nullptr;

  const TXMLDocument& XMLSyntax;
  TImageList ImageListCat;
  std::string FListFilter;
  std::vector<TConstantCategory> FCategories;
  TConstantChoice FChoice;
};
