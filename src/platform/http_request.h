#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/signal.h"

/// How far a request has come; a redirection starts again.
enum class THttpPhase { Starting, Resolving, Connecting, Sending, Receiving };

struct THttpResult {
  /// Error codes that callers tell apart; others are the system's as well.
  static constexpr unsigned long NoError = 0;
  static constexpr unsigned long TimedOut = 12002;
  static constexpr unsigned long NameNotResolved = 12007;
  static constexpr unsigned long CannotConnect = 12029;
  static constexpr unsigned long RedirectRefused = 12156;

  bool Cancelled = false;
  bool Refused = false;  ///< the sink wanted no more
  unsigned long Error = NoError;
  THttpPhase Phase = THttpPhase::Starting;  ///< where it ended
  int Status = 0;                           ///< of the answer; 0: there was none
  std::optional<std::uint64_t> Length;      ///< of the body in bytes, as the answer declares it
  std::uint64_t Received = 0;               ///< bytes of the body
};

/// Takes what a request receives, on the thread that makes the request.
class THttpSink {
 public:
  virtual ~THttpSink() = default;
  /// The answer has begun: its status, its header lines as received (ANSI, CR LF), the length of
  /// its body. False: stop here.
  virtual bool Begin(int status, std::string_view header, std::optional<std::uint64_t> length) = 0;
  /// The next bytes of the body, at least one. False: stop here.
  virtual bool Receive(std::span<const char> data) = 0;
};

/// One GET over HTTP or HTTPS through the system's client, loaded on first use: the system's proxy,
/// certificates verified, redirections followed but never from https to http.
class THttpRequest {
 public:
  /// Milliseconds that each step may take without a sign of life: name, connection, request,
  /// answer, each read.
  explicit THttpRequest(unsigned timeOut);
  THttpRequest(const THttpRequest&) = delete;
  THttpRequest& operator=(const THttpRequest&) = delete;
  ~THttpRequest();

  /// Makes the request and returns when it has ended; once per object. The address is in the ANSI
  /// code page. Returns at once after Cancel, whatever the network does: what is still under way is
  /// left to the system. What the sink throws ends the request and comes out here.
  THttpResult Get(std::string_view address, THttpSink& sink, const TSignalWait& wait);
  /// Ends the request; from any thread, also before Get.
  void Cancel();
  bool Cancelled() const;
  /// What wakes the requesting thread; set by Cancel. Work done elsewhere on the request's behalf
  /// sets it when it has ended.
  const std::shared_ptr<TSignal>& Signal() const { return FSignal; }

 private:
  class TExchange;

  unsigned long Perform(std::string_view address, THttpSink& sink, const TSignalWait& wait,
                        THttpResult& result);
  unsigned long ReceiveBody(THttpSink& sink, const TSignalWait& wait, THttpResult& result);

  unsigned FTimeOut;
  std::shared_ptr<TSignal> FSignal;
  std::shared_ptr<TExchange> FExchange;
};
