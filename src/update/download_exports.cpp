#include "dialogs/base/dlg_base.h"
#include "frame/exported.h"
#include "update/dlg_dwnld.h"
#include "zefext.h"

namespace {

TDlgDwnld* FindDownload(ZefDialog dialog) {
  return Known(dynamic_cast<TDlgDwnld*>(Application().FindForm(static_cast<void*>(dialog))),
               dialog);
}

void CopyBody(const TDlgDwnld& dialog, char* buffer, int* size) {
  if (!buffer || !size || *size <= 0) return;
  *size = static_cast<int>(dialog.CopyBody({buffer, static_cast<std::size_t>(*size)}));
}

/// False, with nothing done, when the command is unknown or lacks the value that it must have.
bool Perform(TDlgDwnld& dialog, int command, const char* text, int* value) {
  switch (command) {
    case ZEF_DOWNLOAD_GET_RESULT:
      if (!value) return false;
      *value = dialog.Result() ? 1 : 0;
      return true;
    case ZEF_DOWNLOAD_DESTROY:
      Application().Retire(Application().Take(dialog));
      return true;
    case ZEF_DOWNLOAD_GET_STATUS:
      if (!value) return false;
      *value = dialog.Status();
      return true;
    case ZEF_DOWNLOAD_SET_ADDRESS:
      dialog.SetAddress(OrEmpty(text));
      return true;
    case ZEF_DOWNLOAD_SET_FILE:
      dialog.SetDestination(text ? std::optional<std::string_view>(text) : std::nullopt);
      return true;
    case ZEF_DOWNLOAD_COPY_BODY:
      // The one command that writes there; the others are given constant texts.
      CopyBody(dialog, const_cast<char*>(text), value);
      return true;
    case ZEF_DOWNLOAD_START:
      dialog.StartThread();
      return true;
    case ZEF_DOWNLOAD_SHOW:
      dialog.Show();
      return true;
    case ZEF_DOWNLOAD_WAIT:
      dialog.WaitThread();
      return true;
    case ZEF_DOWNLOAD_FETCH:
      dialog.Fetch();
      return true;
    case ZEF_DOWNLOAD_ABORT:
      dialog.Abort();
      return true;
    default:
      return false;
  }
}

}  // namespace

int ZEFEXT_API VCLNewURL(ZefDialog owner, const char* helpFile, ZefDialog* dialog) {
  if (dialog) *dialog = nullptr;
  return Exported(0, [&] {
    auto form = CreateForm<TDlgDwnld>();
    if (helpFile) form->SetHelpFile(helpFile);
    TForm& kept =
        Application().Keep(std::move(form), Application().FindForm(static_cast<void*>(owner)));
    if (dialog) *dialog = static_cast<ZefDialog>(kept.HostHandle());
    return 1;
  });
}

int ZEFEXT_API VCLCmdURL(ZefDialog dialog, signed char command, const char* text, int* value) {
  return Exported(0, [&] {
    TDlgDwnld* const found = FindDownload(dialog);
    return found && Perform(*found, command, text, value) ? 1 : 0;
  });
}
