#include "directories/dlg_dir_select.h"
#include "forms/while_set.h"
#include "frame/exported.h"
#include "frame/singletons.h"
#include "zefext.h"

namespace {

/// Whether a choice is going on: its boxes keep serving the host's messages.
bool choosing = false;

/// Opens a directory of the list; true when the current directory has changed.
bool ChooseDirectory(const char* name, bool showList, bool& cancelled) {
  TDiskFiles files;
  const std::string before = files.Current();
  auto& dialog = SingletonForm<TDlgDirSelect>(TFormSlot::DirectoryList);
  dialog.LoadList();
  // Loading may show a box, and the host may free the library under it.
  if (FormInSlot(TFormSlot::DirectoryList) != &dialog) {
    cancelled = true;
    return false;
  }
  if (!showList) {
    const int entry = dialog.List().IndexToOpen(name);
    const auto entering =
        entry < 0 ? TEntering::Failed : EnterDirectory(files, dialog.List().Entry(entry).Path);
    if (entering != TEntering::Failed) return entering == TEntering::Entered;
  }
  auto entering = TEntering::Failed;
  if (dialog.ShowModal() == mrOk) {
    entering = EnterDirectory(files, dialog.ChosenPath());
  } else {
    cancelled = true;
  }
  return entering == TEntering::Entered || files.Current() != before;
}

}  // namespace

int ZEFEXT_API VCLSelectDirList(const char* name, unsigned char showList,
                                unsigned char* cancelled) {
  bool leftWithoutChoice = true;
  const int changed = Exported(0, [&] {
    if (choosing) return 0;
    const TWhileSet scope(choosing);
    bool left = false;
    const int result = ChooseDirectory(OrEmpty(name), showList != 0, left) ? 1 : 0;
    // What fails on the way is no choice.
    leftWithoutChoice = left;
    return result;
  });
  if (cancelled) *cancelled = leftWithoutChoice ? 1 : 0;
  return changed;
}
