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
  binder.Handler("ListParamEnter", [this] { ListParamEnter(); });
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
  DpiChanged();
  XMLSyntax.SetFileName(FileBesideExecutable("ZEF.EXE", "VBSZEF.XML"));
  const TOpenDocument open(XMLSyntax);
  RefreshNames();
  FConst = &Adopt(CreateForm<TDlgSyntaxConst>(XMLSyntax));
  FTypes = &Adopt(CreateForm<TDlgSyntaxTypes>(XMLSyntax));
}

void TDlgSyntax::DpiChanged() {
  ImageListMethod = TImageList({"METHOD", "", "DATA"}, Dpi());
  BoxMethod->SetImages(&ImageListMethod);
}

// ---- words ----

const TSyntaxNames& TDlgSyntax::Names() {
  constexpr ULONGLONG kRetryMs = 1000;  // an editor asks for every word of every repaint
  if (!FWordsKnown && GetTickCount64() - FWordsTriedAt >= kRetryMs) {
    const TOpenDocument open(XMLSyntax);
    RefreshNames();
  }
  return FNames;
}

void TDlgSyntax::RefreshNames() {
  if (!FWordsKnown) {
    FNames.BuildWords(*XMLSyntax.Database());
    FWordsKnown = XMLSyntax.Known();
    FWordsTriedAt = GetTickCount64();
  }
  if (FNamesSource == XMLSyntax.Database()) return;
  FNamesSource = XMLSyntax.Database();
  FNames.BuildTypes(*FNamesSource);
  const TItemsRefill refill(*BoxType);
  for (int i = 0; i < FNames.Types.Count(); ++i) BoxType->AddItem(FNames.Types.At(i));
}

// ---- running ----

bool TDlgSyntax::Run(std::optional<std::string_view> line, int cursor, std::string_view types,
                     const std::source_location& place) {
  const TOpenDocument open(XMLSyntax, place);
  RefreshNames();
  FModel.SetDeclared(types);
  FModel.AnalyseHostLine(Syntax(), line, cursor);
  ShowState();
  FTypes->ClearTypesChanged();
  FocusFirstChoice();
  return ShowModal() == mrOk;
}

void TDlgSyntax::FocusFirstChoice() {
  if (BoxMethod->CanFocus()) {
    BoxMethod->SetFocus();
  } else {
    BoxType->SetFocus();
  }
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

void TDlgSyntax::ListParamEnter() {
  // By a click the focus comes on its way to a row.
  const bool byMouse = GetKeyState(VK_LBUTTON) < 0;
  if (byMouse || FModel.SelectedParam() >= 0) return;
  FModel.SelectParam(Syntax(), 0);
  ShowState();
}

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
  const int index = ListParam->ItemIndex();
  FShownRows.at(static_cast<std::size_t>(index)).Checked = ListParam->Checked(index);
  FModel.ToggleParamCheck(Syntax(), index);
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
