#pragma once

#include "platform/thread.h"

class TDlgDwnld;

/// The worker of a download dialog: makes one fetch for it. Its destructor waits for the end.
class TDwldThread : public TThread {
 public:
  explicit TDwldThread(TDlgDwnld& dialog) : FDialog(dialog) {}
  ~TDwldThread() override { WaitFor(); }

 protected:
  void Execute() override;

 private:
  TDlgDwnld& FDialog;
};
