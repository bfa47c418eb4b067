#include "update/dlg_dwnld.h"

#include "forms/painting_wait.h"
#include "forms/while_set.h"
#include "platform/guard.h"
#include "update/rules/download_progress.h"

TDlgDwnld::~TDlgDwnld() { StopThread(); }

void TDlgDwnld::Bind(TFormBinder& binder) {
  TDlgBase::Bind(binder);
  binder.Control("ProgressBar", ProgressBar);
}

void TDlgDwnld::InitDialog() {
  TDlgBase::InitDialog();
  HTTPClient.OnPacketRecvd = [this] { HTTPClientPacketRecvd(); };
  HTTPClient.OnSuccess = [this] { HTTPClientSuccess(); };
  HTTPClient.OnFailure = [this] { HTTPClientFailure(); };
  HTTPClient.OnConnectionFailed = [this] { HTTPClientConnectionFailed(); };
  HTTPClient.OnInvalidHost = [this] { HTTPClientInvalidHost(); };
  HTTPClient.OnDisconnect = [this] { HTTPClientDisconnect(); };
}

LRESULT TDlgDwnld::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  // The host destroyed the window's owner: the progress bar goes, so the worker must go first.
  if (message == WM_DESTROY) Abort();
  return TDlgBase::WindowProc(message, wParam, lParam);
}

// Destruction may have to wait for calls in progress, which in turn may wait for the worker.
void TDlgDwnld::Retired() { StopThread(); }

void TDlgDwnld::SetDestination(std::optional<std::string_view> fileName) {
  HTTPClient.InputFileMode = fileName.has_value();
  HTTPClient.Body = fileName.value_or("");
  HTTPClient.Header.clear();
}

std::size_t TDlgDwnld::CopyBody(std::span<char> target) const {
  return FRunning || FFetchingHere ? 0 : HTTPClient.CopyBody(target);
}

ZefDownloadStatus TDlgDwnld::Status() {
  if (HasWindow()) {
    ServeProgress(Handle());
    Update();
  }
  return FRunning ? ZEF_DOWNLOAD_RUNNING : FStatus.load();
}

// ---- fetching ----

bool TDlgDwnld::Prepare() {
  // Calls may come in while another waits, for the windows answer messages meanwhile.
  if (FRunning || FFetchingHere || FCancelRequested) return false;
  FThread.reset();
  HTTPClient.Prepare(FAddress);
  FLastPercent = 0;
  FStatus = ZEF_DOWNLOAD_NONE;
  return true;
}

void TDlgDwnld::Fetch() {
  if (!Prepare()) return;
  const TWhileSet fetching(FFetchingHere);
  HTTPClient.Get(WaitPainting);
}

void TDlgDwnld::StartThread() {
  if (!Prepare()) return;
  FThread = std::make_shared<TDwldThread>(*this);
  FRunning = true;
  FThread->Resume();
}

void TDlgDwnld::FetchInBackground() {
  Guarded(
      [&] { HTTPClient.Get([](const TSignal& signal, unsigned ms) { return signal.Wait(ms); }); });
  // The last that the worker does with this object.
  FRunning = false;
}

void TDlgDwnld::WaitThread() {
  const auto thread = FThread;
  if (FRunning && thread) WaitPainting(thread->Ended(), kForEver);
}

void TDlgDwnld::StopThread() {
  FCancelRequested = true;
  HTTPClient.Cancel();
  if (FThread) FThread->WaitFor();
  FThread.reset();
}

void TDlgDwnld::Abort() {
  if (FFetchingHere) return;
  StopThread();
  FCancelRequested = false;
}

void TDlgDwnld::HTTPClientPacketRecvd() {
  if (FRunning && FCancelRequested) HTTPClient.Cancel();
  const auto percent = PercentReceived(HTTPClient.BytesRecvd(), HTTPClient.BytesTotal());
  if (!percent || *percent == FLastPercent) return;
  FLastPercent = *percent;
  if (!HasWindow()) return;
  ProgressBar->SetPosition(*percent);
  // A worker leaves the repaint to the window's thread, which may be waiting for it.
  if (!FRunning) Update();
}
