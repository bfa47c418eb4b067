#include "frame/exported.h"
#include "update/dlg_ask_dwld.h"
#include "zefext.h"

int ZEFEXT_API VCLAskForDownload(const char* current, const char* offered,
                                 const char* information) {
  return Exported<int>(ZEF_OFFER_LATER, [&]() -> int {
    const auto dialog = CreateForm<TDlgAskDwld>();
    dialog->SetOffer(OrEmpty(current), OrEmpty(offered), OrEmpty(information));
    dialog->ShowModal();
    if (dialog->Ignore()) return ZEF_OFFER_IGNORE;
    return dialog->Result() ? ZEF_OFFER_DOWNLOAD : ZEF_OFFER_LATER;
  });
}
