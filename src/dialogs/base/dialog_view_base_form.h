#pragma once

#include "forms/buttons.h"
#include "forms/form.h"
#include "forms/std_controls.h"

/// The base of views: forms that the host embeds in a window of its own and asks whether the user
/// changed anything. Held by Application().Keep; a view goes when its window is destroyed, usually
/// with the host's window around it.
class TDialogViewBaseForm : public TForm {
 public:
  /// With a parent that is no window, the view is a hidden window of its own.
  explicit TDialogViewBaseForm(HWND parent) : TForm(IsWindow(parent) ? parent : nullptr) {}

  const char* ClassName() const override { return "TDialogViewBaseForm"; }

  /// Whether the user edited anything since the view was made or cleared.
  bool HasChanged();
  /// Clearing also takes the modified marks from the edits; on a clear view it does nothing.
  void SetChanged(bool changed);

 protected:
  void Bind(TFormBinder& binder) override;
  void CreateParams(TCreateParams& params) override;
  void WindowDestroyed() override;

  void FormCreate();
  void HelpBtnClick();
  /// For the change events of a derived view's controls.
  void AnyControlChanged() { FChanged = true; }

  TBitBtn* HelpBtn = nullptr;

 private:
  bool FChanged = false;
};
