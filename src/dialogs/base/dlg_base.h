#pragma once

#include <memory>

#include "forms/buttons.h"
#include "forms/form.h"
#include "forms/hint_window.h"
#include "forms/std_controls.h"

/// The dialog that all others derive from: OK, Cancel and Help buttons, help from the question mark
/// and F1, and the result that its export hands to the host.
class TDlgBase : public TForm {
 public:
  using TForm::TForm;

  const char* ClassName() const override { return "TDlgBase"; }

  /// Called once, after the layout is loaded; overrides call the inherited one first.
  void InitDialog() override;

  /// The outcome for the host: false until a derived dialog says otherwise.
  bool Result() const { return FResult; }

  /// Whether context help shows in a bubble of our own, or as the help system's pop-up.
  void SetContextHints(bool inWindow) { FContextHints = inWindow; }

  /// With this dialog's window and its own help file.
  void AskHelp(UINT command, int data) const override;

 protected:
  void Bind(TFormBinder& binder) override;
  // The bubble belongs to the window around an embedded dialog, and would outlive it.
  void WindowDestroyed() override { HideHint(); }

  virtual void ButtonHelpClick();
  bool FormHelp(UINT command, int data, bool& callHelp);
  void FormClick() { HideHint(); }
  void FormPaint() { HideHint(); }
  void FormClose() { HideHint(); }

  TButton* ButtonOK = nullptr;
  TButton* ButtonCancel = nullptr;
  TButton* ButtonHelp = nullptr;
  bool FResult = false;

 private:
  void HideHint();
  void ShowHintOf(const TControl& control);

  std::unique_ptr<THintWindow> FHint;
  bool FHintShown = false;
  bool FContextHints = true;
};
