#include "filter/dlg_select_typ_op.h"

#include <utility>

namespace {

void Fill(TListBox& list, const std::vector<std::string>& items) {
  const TItemsRefill refill(list);
  for (const auto& item : items) list.AddItem(item);
}

}  // namespace

void TDlgSelectTypOp::Bind(TFormBinder& binder) {
  TDlgBase::Bind(binder);
  binder.Control("ListTypOp", ListTypOp);
  binder.Control("ListCB", ListCB);
  binder.Handler("ListTypOpClick", [this] { ListTypOpClick(); });
}

void TDlgSelectTypOp::Offer(TTypeFilter filter, std::string_view previous) {
  FFilter = std::move(filter);
  FFilter.Preselect(previous);
  Fill(*ListTypOp, FFilter.Types());
  Fill(*ListCB, FFilter.Cards());
  ShowChoice();
}

void TDlgSelectTypOp::ListTypOpClick() {
  FFilter.Choose(ListTypOp->ItemIndex(), ListCB->ItemIndex());
  ShowChoice();
}

void TDlgSelectTypOp::ShowChoice() {
  if (ListTypOp->ItemIndex() != FFilter.Type()) ListTypOp->SetItemIndex(FFilter.Type());
  if (ListCB->ItemIndex() != FFilter.Card()) ListCB->SetItemIndex(FFilter.Card());
  ListCB->SetEnabled(FFilter.CardsEnabled());
}
