#include "syntax/dlg_syntax_types.h"

#include "syntax/rules/syntax_names.h"

void TDlgSyntaxTypes::Bind(TFormBinder& binder) {
  TDlgBase::Bind(binder);
  binder.Control("EditNew", EditNew);
  binder.Control("BtnAdd", BtnAdd);
  binder.Control("BoxConst", BoxConst);
  binder.Control("EditModif", EditModif);
  binder.Control("BtnValidNom", BtnValidNom);
  binder.Control("BoxTypes", BoxTypes);
  binder.Control("BtnDel", BtnDel);
  binder.Handler("EditNewChange", [this] { EditNewChange(); });
  binder.Handler("BtnAddClick", [this] { BtnAddClick(); });
  binder.Handler("BoxConstClick", [this] { BoxConstClick(); });
  binder.Handler("EditModifChange", [this] { EditModifChange(); });
  binder.Handler("BtnValidNomClick", [this] { BtnValidNomClick(); });
  binder.Handler("BoxTypesChange", [this] { BoxTypesChange(); });
  binder.Handler("BtnDelClick", [this] { BtnDelClick(); });
}

// ---- loading ----

void TDlgSyntaxTypes::SetVariables(std::string_view commaText) {
  FVariables.Load(commaText);
  RefreshLists();
  EditModif->SetText({});
  EditNew->SetText({});
  BtnAdd->SetEnabled(false);
  DisableRename();
  BtnDel->SetEnabled(false);
  EditModif->SetEnabled(false);
}

void TDlgSyntaxTypes::RefreshLists() {
  {
    const TItemsRefill refill(*BoxConst);
    for (const auto& name : FVariables.Names()) BoxConst->AddItem(name);
  }
  RefreshTypes();
  BoxTypes->SetItemIndex(-1);
}

void TDlgSyntaxTypes::RefreshTypes() {
  if (FTypesSource == XMLSyntax.Database()) return;
  FTypesSource = XMLSyntax.Database();
  TStringList names({.Sorted = true});
  CollectTypeNames(*FTypesSource, names);
  const TItemsRefill refill(*BoxTypes);
  for (int i = 0; i < names.Count(); ++i) BoxTypes->AddItem(names.At(i));
}

// ---- the list of variables ----

void TDlgSyntaxTypes::BoxConstClick() {
  const bool selected = BoxConst->ItemIndex() >= 0;
  EditModif->SetText(BoxConst->SelectedText());
  BtnDel->SetEnabled(selected);
  EditModif->SetEnabled(selected);
  // The name shown is the variable's own.
  DisableRename();
  if (!selected) return;
  // The first item of either list is left alone here, as everywhere in this dialog: hosts have
  // always seen it so.
  const std::string type(FVariables.Type(BoxConst->SelectedText()));
  const int found = type.empty() ? -1 : BoxTypes->IndexOf(type);
  if (found > 0) {
    BoxTypes->SetItemIndex(found);
    BoxTypesChange();
  }
}

void TDlgSyntaxTypes::SelectVariable(std::string_view name) {
  const int found = BoxConst->IndexOf(name);
  if (found <= 0) return;
  BoxConst->SetItemIndex(found);
  BoxConstClick();
}

void TDlgSyntaxTypes::BoxTypesChange() {
  if (BoxConst->ItemIndex() >= 0) FVariables.SetType(BoxConst->SelectedText(), BoxTypes->Text());
}

void TDlgSyntaxTypes::BtnAddClick() {
  const std::string name = EditNew->Text();
  FVariables.Add(name);
  BoxConst->AddItem(name);
  SelectVariable(name);
  EditNew->SetText({});
  BtnAdd->SetEnabled(false);
  DisableRename();
}

void TDlgSyntaxTypes::BtnValidNomClick() {
  const std::string newName = EditModif->Text();
  if (BoxConst->ItemIndex() < 0 || newName.empty()) return;
  FVariables.Rename(BoxConst->SelectedText(), newName);
  RefreshLists();
  EditModif->SetText({});
  DisableRename();
  SelectVariable(newName);
}

void TDlgSyntaxTypes::BtnDelClick() {
  if (BoxConst->ItemIndex() < 0) return;
  FVariables.Delete(BoxConst->SelectedText());
  RefreshLists();
  EditModif->SetText({});
  DisableRename();
}

// ---- buttons ----

void TDlgSyntaxTypes::DisableRename() {
  BtnValidNom->SetEnabled(false);
  if (DefaultButton() == BtnValidNom) ButtonOK->SetDefault();
}

void TDlgSyntaxTypes::EditNewChange() {
  const std::string newName = EditNew->Text();
  const std::string otherName = EditModif->Text();
  ShowButtons(ButtonsAfterNewName(FVariables, {newName, BoxConst->ItemIndex() >= 0, otherName}));
}

void TDlgSyntaxTypes::EditModifChange() {
  const std::string newName = EditNew->Text();
  const std::string otherName = EditModif->Text();
  ShowButtons(ButtonsAfterOtherName(FVariables, {newName, BoxConst->ItemIndex() >= 0, otherName}));
}

void TDlgSyntaxTypes::ShowButtons(const TVariablesButtons& buttons) {
  if (buttons.AddEnabled) BtnAdd->SetEnabled(*buttons.AddEnabled);
  if (buttons.RenameEnabled) BtnValidNom->SetEnabled(*buttons.RenameEnabled);
  TButton* const defaults[] = {ButtonOK, BtnAdd, BtnValidNom};
  defaults[static_cast<std::size_t>(buttons.Default)]->SetDefault();
}
