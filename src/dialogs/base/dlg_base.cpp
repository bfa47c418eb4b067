#include "dialogs/base/dlg_base.h"

#include <cstdlib>

#include "platform/help.h"

void TDlgBase::Bind(TFormBinder& binder) {
  binder.Control("ButtonOK", ButtonOK);
  binder.Control("ButtonCancel", ButtonCancel);
  binder.Control("ButtonHelp", ButtonHelp);
  binder.Handler("ButtonHelpClick", [this] { ButtonHelpClick(); });
  binder.Handler("FormClick", [this] { FormClick(); });
  binder.Handler("FormPaint", [this] { FormPaint(); });
  binder.Handler("FormClose", [this] { FormClose(); });
  binder.HelpHandler("FormHelp", [this](UINT command, int data, bool& callHelp) {
    return FormHelp(command, data, callHelp);
  });
}

void TDlgBase::InitDialog() {
  FResult = false;
  FHint = std::make_unique<THintWindow>(Handle());
  FHintShown = false;
  FContextHints = true;
  SetHelpFile(Application().HelpFile());
}

void TDlgBase::ButtonHelpClick() { AskHelp(HELP_CONTEXT, HelpContext()); }

bool TDlgBase::FormHelp(UINT command, int data, bool& callHelp) {
  HideHint();
  if (command != HELP_CONTEXTPOPUP) {
    callHelp = true;
    return true;
  }
  callHelp = false;
  if (data == HelpContext()) return true;
  if (!FContextHints) {
    // A negative context counts from the dialog's own topic.
    AskHelp(HELP_CONTEXTPOPUP, data < 0 ? HelpContext() - data : data);
    return true;
  }
  if (!FHint) return false;
  // Only the form's own children: what stands inside another control explains itself there.
  for (const TControl* control : Controls()) {
    if (control->HelpContext() == data) ShowHintOf(*control);
  }
  return true;
}

void TDlgBase::ShowHintOf(const TControl& control) {
  const RECT form = WindowBounds();
  const RECT place = control.Bounds();
  FHintShown = true;
  FHint->SetColor(COLOR_INFOBK);
  // Just under the control, with the caption bar counted in.
  const LONG frame = form.bottom - form.top - ClientSize().cy;
  FHint->Show({place.left + form.left, place.bottom + form.top + frame},
              (form.right - form.left) / 2, control.HintWide());
}

void TDlgBase::HideHint() {
  if (!FHintShown) return;
  FHint->ReleaseHandle();
  FHintShown = false;
}

void TDlgBase::AskHelp(UINT command, int data) const {
  AskForHelp(Handle(), HelpFile(), command, static_cast<std::uintptr_t>(data));
}
