#include "syntax/dlg_syntax.h"

#include "platform/executable_search.h"

// ---- making ----

void TDlgSyntax::Bind(TFormBinder& binder) {
  TDlgBase::Bind(binder);
  binder.Control("EditLigne", EditLigne);
  binder.Control("ButUpdt", ButUpdt);
  binder.Control("EditObjet", EditObjet);
  binder.Control("UpDown", UpDown);
  binder.Control("BoxType", BoxType);
  binder.Control("EditHelpType", EditHelpType);
  binder.Control("BoxUseReturn", BoxUseReturn);
  binder.Control("ButDelete", ButDelete);
  binder.Control("EditMethod", EditMethod);
  binder.Control("BoxMethod", BoxMethod);
  binder.Control("TextReturnType", TextReturnType);
  binder.Control("EditHelpMethod", EditHelpMethod);
  binder.Control("ListParam", ListParam);
  binder.Control("EditValue", EditValue);
  binder.Control("ButValue", ButValue);
  binder.Control("ButRecall", ButRecall);
  binder.Control("RadioParam", RadioParam);
  binder.Control("TextParamType", TextParamType);
  binder.Control("TextDefVal", TextDefVal);
  binder.Control("EditParamHelp", EditParamHelp);
  binder.Handler("FormShow", [this] { FormShow(); });
  binder.Handler("FormHide", [this] { FormHide(); });
  binder.Handler("EditLigneEnter", [this] { EditLigneEnter(); });
  binder.Handler("EditLigneExit", [this] { EditLigneExit(); });
  binder.Handler("EditLigneChange", [this] { EditLigneChange(); });
  binder.Handler("ButUpdtClick", [this] { ButUpdtClick(); });
  binder.Handler("UpDownClick", [this] { UpDownClick(); });
  binder.Handler("BoxTypeChange", [this] { BoxTypeChange(); });
  binder.Handler("BoxMethodChange", [this] { BoxMethodChange(); });
  binder.Handler("ButDeleteClick", [this] { ButDeleteClick(); });
  binder.Handler("BoxUseReturnClick", [this] { BoxUseReturnClick(); });
  binder.Handler("ListParamClick", [this] { ListParamClick(); });
  binder.Handler("ListParamDblClick", [this] { ListParamDblClick(); });
  binder.Handler("ListParamClickCheck", [this] { ListParamClickCheck(); });
  binder.Handler("EditValueChange", [this] { EditValueChange(); });
  binder.Handler("ButValueClick", [this] { ButValueClick(); });
  binder.Handler("ButRecallClick", [this] { ButRecallClick(); });
  binder.Handler("RadioParamClick", [this] { RadioParamClick(); });
  binder.Handler("ButtonOKClick", [this] { ButtonOKClick(); });
}

void TDlgSyntax::InitDialog() {
  TDlgBase::InitDialog();
  ImageListMethod = TImageList({"METHOD", "", "DATA"}, Dpi());
  BoxMethod->SetImages(&ImageListMethod);
  XMLSyntax.SetFileName(FileBesideExecutable("ZEF.EXE", "VBSZEF.XML"));
  XMLSyntax.SetActive(true);
  FNames.BuildWords(*XMLSyntax.Database());
  RefreshTypeNames();
  FConst = &Adopt(CreateForm<TDlgSyntaxConst>(XMLSyntax));
  FTypes = &Adopt(CreateForm<TDlgSyntaxTypes>(XMLSyntax));
  XMLSyntax.SetActive(false);
}

// ---- running ----

bool TDlgSyntax::Run(std::optional<std::string_view> line, int cursor, std::string_view types) {
  AnalyseLine(line, cursor, types);
  FTypes->ClearTypesChanged();
  FocusFirstChoice();
  return ShowModal() == mrOk;
}

void TDlgSyntax::AnalyseLine(std::optional<std::string_view> line, int cursor,
                             std::string_view types) {
  XMLSyntax.SetActive(true);
  RefreshTypeNames();
  FModel.SetDeclared(types);
  FModel.AnalyseHostLine(Syntax(), line, cursor);
  ShowState();
  XMLSyntax.SetActive(false);
}

void TDlgSyntax::RefreshTypeNames() {
  if (FNamesSource == XMLSyntax.Database()) return;
  FNamesSource = XMLSyntax.Database();
  FNames.BuildTypes(*FNamesSource);
  BoxType->BeginUpdate();
  BoxType->ClearItems();
  for (int i = 0; i < FNames.Types.Count(); ++i) BoxType->AddItem(FNames.Types.At(i));
  BoxType->EndUpdate();
}

void TDlgSyntax::FocusFirstChoice() {
  if (BoxMethod->CanFocus()) {
    BoxMethod->SetFocus();
  } else {
    BoxType->SetFocus();
  }
}

void TDlgSyntax::FormShow() {
  XMLSyntax.SetActive(true);
  RefreshTypeNames();
  ShowState();
}

void TDlgSyntax::FormHide() {
  XMLSyntax.SetActive(false);
  ShowLineFocus(false);
}

// ---- the line ----

void TDlgSyntax::EditLigneExit() {
  ShowLineFocus(false);
  FModel.LeaveLine(Syntax());
  ShowState();
}

void TDlgSyntax::LeaveLineBox() {
  if (!EditLigne->Focused()) return;
  EditObjet->SetFocus();
  EditObjet->SetSelection(0, 0);
}

void TDlgSyntax::EditLigneChange() {
  if (FShowing) return;
  FModel.EditLine(Syntax(), EditLigne->Text());
  ShowState();
}

void TDlgSyntax::UpDownClick() {
  FModel.Step(Syntax(), UpDown->Position());
  ShowState();
  LeaveLineBox();
}

// ---- type and member ----

void TDlgSyntax::BoxTypeChange() {
  FModel.ChooseType(Syntax(), BoxType->SelectedText());
  ShowState();
}

void TDlgSyntax::BoxMethodChange() {
  FModel.ChooseMember(Syntax(), BoxMethod->ItemIndex());
  ShowState();
}

void TDlgSyntax::ButDeleteClick() {
  FModel.DeleteMember(Syntax());
  ShowState();
  LeaveLineBox();
}

void TDlgSyntax::BoxUseReturnClick() {
  FModel.ClickUseReturn(Syntax());
  ShowState();
}

// ---- parameters ----

void TDlgSyntax::ListParamClick() {
  FModel.SelectParam(Syntax(), ListParam->ItemIndex());
  ShowState();
}

void TDlgSyntax::ListParamDblClick() {
  ListParamClick();
  EditValue->SetFocus();
  PickConstant();
}

void TDlgSyntax::ListParamClickCheck() {
  FModel.ToggleParamCheck(Syntax(), ListParam->ItemIndex());
  ShowState();
}

void TDlgSyntax::EditValueChange() {
  if (FShowing) return;
  FModel.SetValue(Syntax(), EditValue->Text());
  ShowState();
}

void TDlgSyntax::ButValueClick() {
  LeaveLineBox();
  PickConstant();
}

void TDlgSyntax::PickConstant() {
  const std::string list = FModel.ParamPanel().List;
  if (list.empty()) return;
  FConst->SetLine(EditValue->Text());
  FConst->ShowForList(list);
  if (FConst->ShowModal() == mrOk) EditValue->SetText(FConst->GetResult());
}

void TDlgSyntax::ButRecallClick() {
  LeaveLineBox();
  const auto nested = CreateForm<TDlgSyntax>();
  if (nested->Run(EditValue->Text(), 0, {})) EditValue->SetText(nested->ResultLine());
}

void TDlgSyntax::RadioParamClick() {
  RadioParam->SetItemIndex(static_cast<int>(FModel.ParamPanel().Kind));
}

// ---- confirming ----

void TDlgSyntax::ButtonOKClick() {
  // Enter confirms from inside the line box, which then never loses the focus.
  FModel.LeaveLine(Syntax());
  if (const auto types = FModel.RecordUndeclaredType(Syntax())) FTypes->ReplaceVariables(*types);
}
