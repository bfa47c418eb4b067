#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "dialogs/base/dlg_base.h"
#include "update/dwld_thread.h"
#include "update/http_client.h"
#include "zefext.h"

/// A small window with a progress bar that fetches one file at a time over HTTP, in the caller's
/// thread or in a worker. User-interface thread only, but for what the worker calls.
///
/// The worker waits for nobody: it posts to the progress bar and reports through atomic flags. So
/// this thread may wait for it in any state.
class TDlgDwnld : public TDlgBase {
 public:
  using TDlgBase::TDlgBase;
  ~TDlgDwnld() override;

  const char* ClassName() const override { return "TDlgDwnld"; }
  void InitDialog() override;
  void Retired() override;

  /// ZEF_DOWNLOAD_RUNNING while a worker runs, else how the last fetch ended. Shows the progress of
  /// a worker to a host that only asks and serves no messages.
  ZefDownloadStatus Status();
  void SetAddress(std::string_view address) { FAddress = address; }
  /// A file name, from then on; nothing: keep bodies in memory. For the next fetch.
  void SetDestination(std::optional<std::string_view> fileName);
  /// Copies the start of the body kept in memory; returns how many bytes. None while a worker runs.
  std::size_t CopyBody(std::span<char> target) const;

  /// Fetches now; the windows stay painted. Nothing when a fetch runs already.
  void Fetch();
  /// Starts a worker, unless a fetch runs already.
  void StartThread();
  /// Returns when no worker runs any more; the windows stay painted.
  void WaitThread();
  /// Stops the worker, if any, and makes the dialog ready for the next fetch.
  void Abort();

  /// The worker's part.
  void FetchInBackground();

 protected:
  void Bind(TFormBinder& binder) override;
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  bool Prepare();
  void StopThread();

  void HTTPClientPacketRecvd();
  void HTTPClientSuccess() { FStatus = ZEF_DOWNLOAD_RECEIVED; }
  void HTTPClientFailure() { FStatus = ZEF_DOWNLOAD_FAILED; }
  void HTTPClientConnectionFailed() { FStatus = ZEF_DOWNLOAD_NO_CONNECTION; }
  void HTTPClientInvalidHost() { FStatus = ZEF_DOWNLOAD_UNKNOWN_HOST; }
  void HTTPClientDisconnect() {}

  TProgressBar* ProgressBar = nullptr;
  THttpClient HTTPClient{"HTTPClient"};

  std::string FAddress;
  std::int32_t FLastPercent = 0;  ///< of the fetching thread
  bool FFetchingHere = false;
  std::atomic<bool> FCancelRequested = false;
  std::atomic<bool> FRunning = false;
  std::atomic<ZefDownloadStatus> FStatus = ZEF_DOWNLOAD_NONE;
  /// Shared with a wait in progress, during which a message may bring an abort.
  std::shared_ptr<TDwldThread> FThread;
};
