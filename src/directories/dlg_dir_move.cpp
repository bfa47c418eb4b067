#include "directories/dlg_dir_move.h"

#include "directories/rules/directory_move.h"
#include "forms/wait_cursor.h"
#include "platform/guard.h"

namespace {

/// What is over by then needs no dialog (ms).
constexpr unsigned kUnnoticed = 250;
/// Between two looks at the thread (ms).
constexpr UINT kPeriod = 50;
constexpr UINT_PTR kTimer = 1;

/// Touches only what it owns, the disks and the settings.
class TMoveThread : public TThread {
 public:
  TMoveThread(std::string directory, std::string folder)
      : FDirectory(std::move(directory)), FFolder(std::move(folder)) {}
  ~TMoveThread() override { WaitFor(); }

  TCopyProgress Progress;
  std::optional<std::string> MovedTo;  ///< once it has ended

 protected:
  void Execute() override {
    TDiskFiles files(&Progress);
    TUserSettings settings;
    MovedTo = MoveDirectoryInto(files, settings, FDirectory, FFolder);
  }

 private:
  std::string FDirectory;
  std::string FFolder;
};

class TDlgDirMove : public TDlgBase {
 public:
  explicit TDlgDirMove(TMoveThread& thread) : FThread(thread) {}

  const char* ClassName() const override { return "TDlgDirMove"; }
  void SetDirectory(const std::string& path) { LabelPath->SetText(path); }
  void Watch() {
    SetTimer(Handle(), kTimer, kPeriod, nullptr);
    ShowModal();
    KillTimer(Handle(), kTimer);
  }

 protected:
  void Bind(TFormBinder& binder) override {
    TDlgBase::Bind(binder);
    binder.Control("LabelPath", LabelPath);
    binder.Control("ProgressBar", ProgressBar);
    binder.CloseQueryHandler("FormCloseQuery", [this] { return FormCloseQuery(); });
  }
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
    if (message != WM_TIMER || wParam != kTimer) {
      return TDlgBase::WindowProc(message, wParam, lParam);
    }
    ProgressBar->SetPosition(FThread.Progress.Percent);
    if (Ended()) SetModalResult(mrOk);
    return 0;
  }

 private:
  bool Ended() const { return FThread.Ended().Wait(0); }

  // What is half done is undone first, or finished when it has come too far.
  bool FormCloseQuery() {
    if (ModalResult() == mrCancel && !Ended()) {
      FThread.Progress.Cancelled = true;
      ButtonCancel->SetEnabled(false);
    }
    return Ended();
  }

  TMoveThread& FThread;
  TLabel* LabelPath = nullptr;
  TProgressBar* ProgressBar = nullptr;
};

}  // namespace

TMoveOutcome MoveWatched(const std::string& directory, const std::string& folder) {
  TMoveThread thread(directory, folder);
  const TWaitCursor wait;
  thread.Resume();
  if (!thread.Ended().Wait(kUnnoticed)) {
    // Whatever becomes of the dialog, how the move ended must be known.
    Guarded([&] {
      const auto dialog = CreateForm<TDlgDirMove>(thread);
      dialog->SetDirectory(directory);
      dialog->Watch();
      // The modal run ends early when the library is freed or the program quits.
      if (!thread.Ended().Wait(0)) thread.Progress.Cancelled = true;
    });
  }
  thread.WaitFor();
  return {thread.MovedTo, thread.Progress.Cancelled};
}
