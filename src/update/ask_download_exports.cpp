#include "frame/exported.h"
#include "update/dlg_ask_dwld.h"
#include "zefext.h"

int ZEFEXT_API VCLAskForDownload(const char* current, const char* offered,
                                 const char* information) {
  return Exported(0, [&] {
    const auto dialog = CreateForm<TDlgAskDwld>();
    dialog->SetOffer(OrEmpty(current), OrEmpty(offered), OrEmpty(information));
    dialog->ShowModal();
    if (dialog->Ignore()) return -1;
    return dialog->Result() ? 1 : 0;
  });
}
