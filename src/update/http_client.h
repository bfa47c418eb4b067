#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "forms/component.h"
#include "update/fetch.h"

/// The HTTP client of a download dialog: one GET at a time, to a file or to memory.
///
/// Properties are set, and Prepare called, on the user-interface thread while no transfer runs. Get
/// runs on any one thread; the events come on that thread. Cancel may come from any thread.
class THttpClient : public TComponent {
 public:
  using TComponent::TComponent;

  // ---- properties ----

  unsigned TimeOut = 10000;  ///< milliseconds without a sign of life, at each step
  /// Body and header go to the files named, else the body is kept in memory.
  bool InputFileMode = true;
  std::string Body = "Default.htm";
  std::string Header = "Head.txt";  ///< empty: the header is not kept

  // ---- events: packets have come; then one of the outcomes, unless cancelled; then the end ----

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

  /// Of the transfer, so far; a total of 0 is unknown.
  std::uint64_t BytesRecvd() const { return FFetch->Received(); }
  std::uint64_t BytesTotal() const { return FFetch->Total(); }
  /// Copies the start of the body of the last transfer to memory that succeeded; returns how many
  /// bytes. Not while one runs.
  std::size_t CopyBody(std::span<char> target) const;

 private:
  void Report(TFetchOutcome outcome) const;

  std::shared_ptr<TFetch> FFetch;
};
