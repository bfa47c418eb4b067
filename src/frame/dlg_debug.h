#pragma once

#include "dialogs/base/dlg_base.h"
#include "forms/log_memo.h"

/// The debug window: numbered lines of text, on top of all windows. OK hides it, Cancel minimises
/// it.
class TDlgDebug : public TDlgBase {
 public:
  using TDlgBase::TDlgBase;

  const char* ClassName() const override { return "TDlgDebug"; }
  void InitDialog() override;

  /// Adds a line under the next number; shows the window when it is hidden, but not while it is so
  /// only because the main window is minimised.
  void ShowText(std::string_view text);

 protected:
  void Bind(TFormBinder& binder) override;
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
  void ClearClick();
  void ButtonOKClick() { Hide(); }
  void ButtonCancelClick() { Minimize(); }

 private:
  TLogMemo* Memo = nullptr;
  int FLineCount = 0;
  bool FGoneWithOwner = false;
};
