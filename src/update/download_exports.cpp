#include "dialogs/base/dlg_base.h"
#include "frame/exported.h"
#include "update/dlg_dwnld.h"
#include "update/rules/download_command.h"
#include "zefext.h"

namespace {

TDlgDwnld* FindDownload(ZefDialog dialog) {
  return dynamic_cast<TDlgDwnld*>(Application().FindForm(static_cast<void*>(dialog)));
}

void CopyBody(const TDlgDwnld& dialog, char* buffer, int* size) {
  if (!buffer || !size || *size <= 0) return;
  *size = static_cast<int>(dialog.CopyBody({buffer, static_cast<std::size_t>(*size)}));
}

void Perform(TDlgDwnld& dialog, TDownloadCommand command, char* text, int* value) {
  switch (command) {
    case TDownloadCommand::Result:
      *value = dialog.Result() ? 1 : 0;
      break;
    case TDownloadCommand::Destroy:
      Application().Retire(Application().Take(dialog));
      break;
    case TDownloadCommand::Status:
      *value = dialog.Status();
      break;
    case TDownloadCommand::Address:
      dialog.SetAddress(OrEmpty(text));
      break;
    case TDownloadCommand::Destination:
      dialog.SetDestination(text ? std::optional<std::string_view>(text) : std::nullopt);
      break;
    case TDownloadCommand::CopyBody:
      CopyBody(dialog, text, value);
      break;
    case TDownloadCommand::Start:
      dialog.StartThread();
      break;
    case TDownloadCommand::Show:
      dialog.Show();
      break;
    case TDownloadCommand::Wait:
      dialog.WaitThread();
      break;
    case TDownloadCommand::Fetch:
      dialog.Fetch();
      break;
    case TDownloadCommand::Abort:
      dialog.Abort();
      break;
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
    if (!found || !CommandAccepted(command, value != nullptr)) return 0;
    Perform(*found, static_cast<TDownloadCommand>(command), const_cast<char*>(text), value);
    return 1;
  });
}
