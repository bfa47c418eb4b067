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
  if (!Visible() && !FGoneWithOwner) Show();
}

LRESULT TDlgDebug::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  const LRESULT result = TDlgBase::WindowProc(message, wParam, lParam);
  // With the main window the system takes it off the screen, and puts it back. Noted afterwards: it
  // is hidden, and told so once more, on the way.
  if (message == WM_SHOWWINDOW) FGoneWithOwner = !wParam && lParam == SW_PARENTCLOSING;
  return result;
}

void TDlgDebug::ClearClick() {
  Memo->Clear();
  FLineCount = 0;
}
