#pragma once

#include <string>
#include <string_view>

#include "dialogs/base/dlg_base.h"
#include "filter/rules/type_filter.h"
#include "forms/list_box.h"

/// The operation type filter: a type, and for the type of cards and cheques one of those. What the
/// choice means is decided by TTypeFilter.
class TDlgSelectTypOp : public TDlgBase {
 public:
  const char* ClassName() const override { return "TDlgSelectTypOp"; }

  /// Starts afresh on what the host offers, with what was chosen before selected.
  void Offer(TTypeFilter filter, std::string_view previous);
  std::string ChosenValue() const { return FFilter.ChosenValue(); }

 protected:
  void Bind(TFormBinder& binder) override;

 private:
  void ListTypOpClick();
  void ShowChoice();

  TListBox* ListTypOp = nullptr;
  TListBox* ListCB = nullptr;
  TTypeFilter FFilter;
};
