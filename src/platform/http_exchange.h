#pragma once

#include <memory>
#include <span>
#include <string>

#include "platform/signal.h"

/// How far a request has come.
enum class THttpPhase { Starting, Resolving, Connecting, Sending, Receiving };

/// Errors that callers tell apart; others are the system's as well. 0 is none.
struct THttpError {
  static constexpr unsigned long TimedOut = 12002;
  static constexpr unsigned long BadAddress = 12005;
  static constexpr unsigned long NameNotResolved = 12007;
  static constexpr unsigned long CannotConnect = 12029;
  static constexpr unsigned long BadAnswer = 12152;
  static constexpr unsigned long RedirectRefused = 12156;
};

class THttpSession;

/// What the exchanges of one fetch share. Null when this machine has no HTTP client.
std::shared_ptr<THttpSession> OpenHttpSession(unsigned timeOut);

/// Where a request goes.
struct THttpTarget {
  bool Secure = false;
  std::string Host;  ///< UTF-8; an IPv6 address in brackets
  unsigned short Port = 0;
  std::string Path;  ///< with the query; ASCII, escaped
};

/// One GET and its answer through the system's client: certificates verified, no redirection
/// followed, no connection kept. One thread makes it; Cancel may come from any other one.
///
/// The system's client may hold the making thread for as long as the time-out, against its own
/// documentation; so nobody waits for that thread who may not wait so long.
class THttpExchange {
 public:
  /// Milliseconds that each step may take without a sign of life.
  THttpExchange(std::shared_ptr<THttpSession> session, unsigned timeOut);
  THttpExchange(const THttpExchange&) = delete;
  THttpExchange& operator=(const THttpExchange&) = delete;
  /// Leaves to the system what it is still doing.
  ~THttpExchange();

  /// Asks, and receives the header: its lines as they came, CR LF. An error, or 0.
  unsigned long Ask(const THttpTarget& target, std::string& header);
  /// Receives the next bytes of the body, which stay until the next call; none at its end. An
  /// error, or 0.
  unsigned long Receive(std::span<const char>& data);
  /// Ends the step in progress and all later ones with an error.
  void Cancel();
  THttpPhase Phase() const;

 private:
  class TState;
  const std::shared_ptr<TState> FState;
};
