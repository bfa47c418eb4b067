#pragma once

#include "dialogs/base/dialog_view_base_form.h"

struct IExClass1;

/// An empty view that carries an interface of the host's.
class TExampleView : public TDialogViewBaseForm {
 public:
  using TDialogViewBaseForm::TDialogViewBaseForm;

  const char* ClassName() const override { return "TExampleView"; }

  /// Kept as a plain pointer, never called; null before the first time.
  void SetExClass(IExClass1* exClass) { FExClass = exClass; }

 private:
  IExClass1* FExClass = nullptr;
};
