#include "update/dwld_thread.h"

#include "update/dlg_dwnld.h"

void TDwldThread::Execute() {
  NameThisThread("Dwld");
  FDialog.FetchInBackground();
}
