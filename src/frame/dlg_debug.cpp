#include "frame/dlg_debug.h"

#include <cstdio>

void TDlgDebug::Bind(TFormBinder& binder) {
  TDlgBase::Bind(binder);
  binder.Control("Memo", Memo);
  binder.Handler("ClearClick", [this] { ClearClick(); });
  binder.Handler("ButtonOKClick", [this] { ButtonOKClick(); });
  binder.Handler("ButtonCancelClick", [this] { ButtonCancelClick(); });
}

void TDlgDebug::InitDialog() {
  TDlgBase::InitDialog();
  FLineCount = 0;
  Memo->Clear();
}

void TDlgDebug::ShowText(std::string_view text) {
  char number[16];
  std::snprintf(number, sizeof number, "%04d : ", ++FLineCount);
  Memo->AddLine(std::string(number).append(text));
  if (!Visible()) Show();
}

void TDlgDebug::ClearClick() {
  Memo->Clear();
  FLineCount = 0;
}
