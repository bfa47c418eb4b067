// The assistant's controls, written from its model.

#include <algorithm>

#include "forms/while_set.h"
#include "platform/code_page.h"
#include "syntax/dlg_syntax.h"

namespace {

/// Writes only a text that differs: an edit keeps its caret and a memo its place that way.
void ShowText(TControl& control, std::string_view text) {
  if (control.Text() != text) control.SetText(text);
}

void ShowHelp(TMemo& memo, const TAssistantHelp& help) {
  if (help.Own != TAssistantText::None) {
    const std::string_view own = Utf8Text(help.Own);
    if (memo.Text() != Utf8ToAnsi(own)) memo.SetTextUtf8(own);
    return;
  }
  std::string text = help.Text;
  if (help.Returned) {
    text += Utf8ToAnsi(Utf8Text(TAssistantText::ReturnedValue)) + *help.Returned;
  }
  ShowText(memo, text);
}

TCheckBox::TState BoxState(TCheckState state) {
  switch (state) {
    case TCheckState::Checked:
      return TCheckBox::TState::Checked;
    case TCheckState::Greyed:
      return TCheckBox::TState::Grayed;
    case TCheckState::Unchecked:
      break;
  }
  return TCheckBox::TState::Unchecked;
}

}  // namespace

void TDlgSyntax::ShowState() {
  const TWhileSet showing(FShowing);
  const unsigned changes = FModel.TakeChanges();
  ShowLine(changes);
  ShowType();
  ShowMember(changes);
  ShowParams(changes);
  ShowParamPanel(changes);
}

void TDlgSyntax::ShowLine(unsigned changes) {
  const TLineAnalysis& line = FModel.Analysis();
  if ((changes & TAssistantModel::LineChanged) && EditLigne->Text() != line.Expression()) {
    // While the user types in it, his caret stays where it is.
    const auto [start, end] = EditLigne->SelectionUnits();
    EditLigne->SetText(line.Expression());
    if (FLineFocused) EditLigne->SetSelectionUnits(start, end);
  }
  if (!FLineFocused) EditLigne->SetSelection(line.ObjectRange().Start, line.ObjectRange().Length);
  ShowText(*EditObjet, line.ObjectText());
  UpDown->SetPosition(line.Position());
}

void TDlgSyntax::ShowLineFocus(bool focused) {
  FLineFocused = focused;
  EditLigne->SetColor(focused ? COLOR_WINDOW : COLOR_GRADIENTINACTIVECAPTION);
  EditLigne->SetCursor(focused ? nullptr : reinterpret_cast<LPCWSTR>(IDC_HAND));
  ButUpdt->SetEnabled(focused);
}

void TDlgSyntax::ShowType() {
  BoxType->SetEnabled(FModel.TypeBoxEnabled());
  const auto& type = FModel.SelectedType();
  if (BoxType->SelectedText() != type) {
    BoxType->SetItemIndex(type.empty() ? -1 : BoxType->IndexOf(type));
  }
  ShowHelp(*EditHelpType, FModel.TypeHelp());
}

void TDlgSyntax::ShowMember(unsigned changes) {
  if (changes & TAssistantModel::MemberItemsChanged) {
    const TMemberItems& items = FModel.MemberItems();
    const TItemsRefill refill(*BoxMethod);
    for (int i = 0; i < items.Count(); ++i) BoxMethod->AddItem(items.Text(i), items.Image(i));
  }
  BoxMethod->SetEnabled(FModel.MemberBoxEnabled());
  BoxMethod->SetColor(FModel.MemberBoxEnabled() ? COLOR_WINDOW : COLOR_INACTIVECAPTIONTEXT);
  if (BoxMethod->ItemIndex() != FModel.SelectedItem()) {
    BoxMethod->SetItemIndex(FModel.SelectedItem());
  }
  ButDelete->SetEnabled(FModel.DeleteEnabled());
  ShowText(*EditMethod, FModel.Analysis().MemberText());
  ShowText(*TextReturnType, FModel.ReturnType());
  ShowHelp(*EditHelpMethod, FModel.MemberHelp());
  const TUseReturnBox useReturn = FModel.UseReturnBox();
  BoxUseReturn->SetState(BoxState(useReturn.State));
  BoxUseReturn->SetEnabled(useReturn.Enabled);
}

void TDlgSyntax::ShowParams(unsigned changes) {
  if (changes & TAssistantModel::ParamRowsChanged) ShowParamRows();
  if (ListParam->ItemIndex() != FModel.SelectedParam()) {
    ListParam->SetItemIndex(FModel.SelectedParam());
  }
}

void TDlgSyntax::ShowParamRows() {
  const auto& rows = FModel.ParamRows();
  const auto sameButForMark = [](const TParamRow& shown, const TParamRow& row) {
    return shown.Text == row.Text && shown.Enabled == row.Enabled;
  };
  if (std::ranges::equal(FShownRows, rows, sameButForMark)) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
      if (FShownRows[i].Checked == rows[i].Checked) continue;
      ListParam->SetChecked(static_cast<int>(i), rows[i].Checked);
      FShownRows[i].Checked = rows[i].Checked;
    }
  } else {
    const TItemsRefill refill(*ListParam);
    for (const auto& row : rows) ListParam->AddItem(row.Text, row.Enabled, row.Checked);
    FShownRows = rows;
  }
}

void TDlgSyntax::ShowParamPanel(unsigned changes) {
  const TParamPanel& panel = FModel.ParamPanel();
  const bool selected = FModel.SelectedParam() >= 0;
  RadioParam->SetItemIndex(static_cast<int>(panel.Kind));
  RadioParam->SetEnabled(selected);
  ShowText(*TextParamType, panel.Type);
  ShowText(*TextDefVal, panel.Default);
  ShowText(*EditParamHelp, panel.Help);
  if (changes & TAssistantModel::ValueChanged) ShowText(*EditValue, FModel.Value());
  EditValue->SetEnabled(selected);
  ButValue->SetEnabled(selected && !panel.List.empty());
  ButRecall->SetEnabled(selected);
}
