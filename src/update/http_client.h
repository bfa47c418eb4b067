#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "forms/component.h"
#include "platform/http_request.h"
#include "platform/replacement_file.h"
#include "update/rules/body_buffer.h"
#include "update/rules/fetch_outcome.h"

/// The HTTP client of a download dialog: one GET at a time, to a file or to memory.
///
/// Properties are set, and Prepare called, on the user-interface thread while no transfer runs. Get
/// runs on any one thread; the events come on that thread. Cancel may come from any thread.
class THttpClient : public TComponent, private THttpSink {
 public:
  using TComponent::TComponent;

  // ---- properties ----

  unsigned TimeOut = 10000;  ///< milliseconds without a sign of life, at each step
  /// Body and header go to the files named, else the body is kept in memory.
  bool InputFileMode = true;
  std::string Body = "Default.htm";
  std::string Header = "Head.txt";  ///< empty: the header is not kept

  // ---- events: a packet has come; then one of the outcomes, unless cancelled; then the end ----

  TNotifyEvent OnPacketRecvd;
  TNotifyEvent OnSuccess;
  TNotifyEvent OnFailure;
  TNotifyEvent OnConnectionFailed;
  TNotifyEvent OnInvalidHost;
  TNotifyEvent OnDisconnect;

  /// Takes over what the next transfer needs, so that neither properties nor current directory
  /// matter to it any more, and forgets the last body.
  void Prepare(std::string_view address);
  /// Makes the prepared transfer; returns when it has ended.
  void Get(const TSignalWait& wait);
  /// Ends the prepared transfer, also one that has not begun; without effect on the next.
  void Cancel();

  /// Of the current packet's transfer; a total of 0 is unknown.
  std::uint64_t BytesRecvd() const { return FReceived; }
  std::uint64_t BytesTotal() const { return FTotal; }
  /// The body of the last transfer to memory that succeeded; empty while one runs.
  const TBodyBuffer& BodyKept() const { return FKept; }

 private:
  bool Begin(int status, std::string_view header, std::optional<std::uint64_t> length) override;
  bool Receive(std::span<const char> data) override;
  TFetchOutcome Transfer(const TSignalWait& wait);
  bool Store(const TSignalWait& wait);
  bool Flush(const TSignalWait& wait);
  void Report(TFetchOutcome outcome) const;

  std::shared_ptr<THttpRequest> FRequest;
  std::string FAddress;
  bool FToFile = false;
  std::wstring FBodyPath;
  std::wstring FHeaderPath;

  std::uint64_t FReceived = 0;
  std::uint64_t FTotal = 0;
  std::string FHeaderReceived;
  /// Shared with a flush that outlasts a cancelled transfer.
  std::shared_ptr<TReplacementFile> FFile;
  TBodyBuffer FReceiving;
  TBodyBuffer FKept;
};
