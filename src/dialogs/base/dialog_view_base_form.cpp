#include "dialogs/base/dialog_view_base_form.h"

#include <algorithm>

#include "forms/modeless_keyboard.h"

void TDialogViewBaseForm::Bind(TFormBinder& binder) {
  binder.Control("HelpBtn", HelpBtn);
  binder.Handler("FormCreate", [this] { FormCreate(); });
  binder.Handler("HelpBtnClick", [this] { HelpBtnClick(); });
  binder.Handler("AnyControlChanged", [this] { AnyControlChanged(); });
}

void TDialogViewBaseForm::CreateParams(TCreateParams& params) {
  TForm::CreateParams(params);
  if (ParentWindow()) return;
  params.Style |= WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_MAXIMIZEBOX | DS_MODALFRAME;
  params.ExStyle |= WS_EX_DLGMODALFRAME;
}

void TDialogViewBaseForm::FormCreate() {
  if (ParentWindow()) {
    SetWindowPos(Handle(), nullptr, GetSystemMetrics(SM_CXFIXEDFRAME),
                 GetSystemMetrics(SM_CYFIXEDFRAME), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  } else {
    Place();
  }
  // The host may show the view by itself.
  AddModelessForm(Handle());
  // From true, or clearing would leave the marks that loading put on the edits.
  FChanged = true;
  SetChanged(false);
}

void TDialogViewBaseForm::HelpBtnClick() {
  Application().HelpCommand(HELP_CONTEXT, static_cast<ULONG_PTR>(HelpContext()));
}

bool TDialogViewBaseForm::HasChanged() {
  FChanged = FChanged || std::ranges::any_of(Components(), [](const auto& component) {
               const auto* edit = dynamic_cast<const TEdit*>(component.get());
               return edit && edit->Modified();
             });
  return FChanged;
}

void TDialogViewBaseForm::SetChanged(bool changed) {
  if (changed == FChanged) return;
  if (!changed) {
    for (const auto& component : Components()) {
      if (auto* edit = dynamic_cast<TEdit*>(component.get())) edit->SetModified(false);
    }
  }
  FChanged = changed;
}

void TDialogViewBaseForm::WindowDestroyed() {
  Application().RetireHostForm(Application().Take(*this));
}
