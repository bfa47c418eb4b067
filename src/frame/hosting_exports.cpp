#include "dialogs/base/dlg_base.h"
#include "dialogs/base/example_view.h"
#include "frame/exported.h"
#include "zefext.h"

namespace {

/// The live form of that class behind a handle of the host's, or null.
template <class T>
T* FormOf(const void* handle) {
  return Known(dynamic_cast<T*>(Application().FindForm(handle)), handle);
}

}  // namespace

/// What every decorated name of CreateExampleView stands for. The host's reference is a pointer
/// here, as it is in the call: hosts that bind the name themselves may pass null.
extern "C" HWND ZEFEXT_API MakeExampleView(void* parent, const char* helpFile, IUnknown** view);

int ZEFEXT_API VCLInvokeModalDialog(const char* helpFile) {
  return Exported(0, [&] {
    const auto dialog = CreateForm<TDlgBase>();
    if (helpFile) dialog->SetHelpFile(helpFile);
    dialog->ShowModal();
    return dialog->Result() ? 1 : 0;
  });
}

void ZEFEXT_API VCLInvokeNonModalDialog(HWND parent, const char* helpFile, ZefDialog* dialog) {
  if (dialog) *dialog = nullptr;
  Exported([&] {
    auto form = CreateForm<TDlgBase>(parent);
    if (helpFile) form->SetHelpFile(helpFile);
    TForm& kept = Application().Keep(std::move(form));
    if (dialog) *dialog = static_cast<ZefDialog>(kept.HostHandle());
    const TFormPin pin(kept);
    kept.Show();
  });
}

int ZEFEXT_API VCLFreeNonModalDialog(ZefDialog dialog) {
  return Exported(0, [&] {
    auto* base = FormOf<TDlgBase>(dialog);
    if (!base) return 0;
    const int result = base->Result() ? 1 : 0;
    Application().RetireHostForm(Application().Take(*base));
    return result;
  });
}

void ZEFEXT_API VCLDialogShow(ZefDialog dialog) {
  Exported([&] {
    auto* view = FormOf<TDialogViewBaseForm>(dialog);
    if (!view) return;
    const TFormPin pin(*view);
    view->Show();
  });
}

int ZEFEXT_API VCLDialogHasChanged(ZefDialog dialog) {
  return Exported(0, [&] {
    auto* view = FormOf<TDialogViewBaseForm>(dialog);
    if (!view) return 0;
    const TFormPin pin(*view);
    return view->HasChanged() ? 1 : 0;
  });
}

void ZEFEXT_API VCLDialogClearHasChanged(ZefDialog dialog) {
  Exported([&] {
    auto* view = FormOf<TDialogViewBaseForm>(dialog);
    if (!view) return;
    const TFormPin pin(*view);
    view->SetChanged(false);
  });
}

extern "C" HWND ZEFEXT_API MakeExampleView(void* parent, const char* helpFile, IUnknown** view) {
  if (view) *view = nullptr;
  return Exported<HWND>(nullptr, [&] {
    TForm& form = Application().Keep(CreateForm<TExampleView>(static_cast<HWND>(parent)));
    if (view) *view = static_cast<IUnknown*>(form.HostHandle());
    // For every dialog made from now on, not for this view alone: hosts count on it.
    if (helpFile) Application().SetHelpFile(helpFile);
    return form.Handle();
  });
}

void* ZEFEXT_API VCLExDlgDlwdGive(IExClass1* exClass, void* view) {
  return Exported<void*>(nullptr, [&]() -> void* {
    auto* example = FormOf<TExampleView>(view);
    if (!example) return nullptr;
    example->SetExClass(exClass);
    return view;
  });
}
