#include "dialogs/base/dlg_base.h"
#include "frame/exported.h"
#include "zefext.h"

int ZEFEXT_API VCLInvokeModalDialog(const char* helpFile) {
  return Exported(0, [&] {
    const auto dialog = CreateForm<TDlgBase>();
    if (helpFile) dialog->SetHelpFile(helpFile);
    dialog->ShowModal();
    return dialog->Result() ? 1 : 0;
  });
}

void ZEFEXT_API VCLInvokeNonModalDialog(HWND parent, const char* helpFile, ZefDialog* dialog) {
  Exported([&] {
    if (dialog) *dialog = nullptr;
    auto form = CreateForm<TDlgBase>(parent);
    if (helpFile) form->SetHelpFile(helpFile);
    TForm& kept = Application().Keep(std::move(form));
    if (dialog) *dialog = reinterpret_cast<ZefDialog>(&kept);
    kept.Show();
  });
}

int ZEFEXT_API VCLFreeNonModalDialog(ZefDialog dialog) {
  return Exported(0, [&] {
    auto* base = dynamic_cast<TDlgBase*>(Application().FindForm(static_cast<void*>(dialog)));
    if (!base) return 0;
    const int result = base->Result() ? 1 : 0;
    Application().Retire(Application().Take(*base));
    return result;
  });
}
