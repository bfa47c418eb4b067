#include "syntax/dlg_syntax_const.h"

#include <optional>

namespace {

constexpr int kPlainImage = 0;
constexpr int kAdditiveImage = 1;

std::string Lines(const std::vector<std::string>& lines) {
  std::string text;
  for (const auto& line : lines) {
    if (!text.empty() && !text.ends_with('\n')) text += "\r\n";
    text += line;
  }
  return text;
}

}  // namespace

void TDlgSyntaxConst::Bind(TFormBinder& binder) {
  TDlgBase::Bind(binder);
  binder.Control("EditResult", EditResult);
  binder.Control("BoxCat", BoxCat);
  binder.Control("EditType", EditType);
  binder.Control("EditHelp", EditHelp);
  binder.Control("ListConst", ListConst);
  binder.Control("EditConstHelp", EditConstHelp);
  binder.Handler("EditResultChange", [this] { EditResultChange(); });
  binder.Handler("BoxCatChange", [this] { BoxCatChange(); });
  binder.Handler("ListConstClick", [this] { ListConstClick(); });
  binder.Handler("ListConstClickCheck", [this] { ListConstClickCheck(); });
  binder.Handler("ListConstDblClick", [this] { ListConstDblClick(); });
  binder.Handler("ButClearClick", [this] { ButClearClick(); });
}

void TDlgSyntaxConst::InitDialog() {
  TDlgBase::InitDialog();
  DpiChanged();
}

void TDlgSyntaxConst::DpiChanged() {
  ImageListCat = TImageList({"PLAIN", "ADDITIVE"}, Dpi());
  BoxCat->SetImages(&ImageListCat);
}

// ---- a run ----

void TDlgSyntaxConst::SetLine(std::string_view text) {
  FListFilter.clear();
  LoadCategories();
  EditResult->SetText(text);
}

void TDlgSyntaxConst::ShowForList(std::string_view listName) {
  FListFilter = listName;
  LoadCategories();
  BoxCat->SetItemIndex(FindCategory(FCategories, listName));
  FillConstants();
}

void TDlgSyntaxConst::LoadCategories() {
  FCategories = ConstantCategories(*XMLSyntax.Database(), FListFilter);
  {
    const TItemsRefill refill(*BoxCat);
    for (const auto& category : FCategories) {
      BoxCat->AddItem(category.Name, category.Additive ? kAdditiveImage : kPlainImage);
    }
  }
  FillConstants();
}

void TDlgSyntaxConst::FillConstants() {
  FChoice.Fill(*XMLSyntax.Database(), BoxCat->SelectedText());
  EditType->SetText(FChoice.Type());
  EditHelp->SetText(Lines(FChoice.Help()));
  EditConstHelp->Clear();
  {
    const TItemsRefill refill(*ListConst);
    for (int i = 0; i < FChoice.Count(); ++i) ListConst->AddItem(FChoice.Name(i));
  }
  ParseResult();
}

// ---- ticks and text ----

void TDlgSyntaxConst::ShowMarks(const std::vector<int>& changed) {
  for (const int constant : changed) ListConst->SetChecked(constant, FChoice.Ticked(constant));
}

void TDlgSyntaxConst::ParseResult() { ShowMarks(FChoice.Parse(EditResult->Text())); }

void TDlgSyntaxConst::EditResultChange() { ParseResult(); }

void TDlgSyntaxConst::TickCurrent(bool ticked) {
  ShowMarks(FChoice.Tick(ListConst->ItemIndex(), ticked));
  EditResult->SetText(FChoice.Value());
}

void TDlgSyntaxConst::ListConstClickCheck() {
  TickCurrent(ListConst->Checked(ListConst->ItemIndex()));
}

void TDlgSyntaxConst::ListConstClick() {
  const int current = ListConst->ItemIndex();
  if (current >= 0) EditConstHelp->SetText(FChoice.ConstantHelp(current));
}

void TDlgSyntaxConst::ListConstDblClick() {
  const int current = ListConst->ItemIndex();
  if (current < 0) return;
  ListConst->SetChecked(current, true);
  TickCurrent(true);
  ListConstClick();
}

void TDlgSyntaxConst::ButClearClick() {
  EditResult->SetText({});
  EditResult->SetFocus();
}
