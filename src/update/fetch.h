#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <string>

#include "platform/http_exchange.h"
#include "platform/replacement_file.h"
#include "platform/signal.h"
#include "update/rules/body_buffer.h"
#include "update/rules/fetch_outcome.h"
#include "update/rules/response_head.h"
#include "update/rules/web_address.h"

/// What to fetch, and where to.
struct TFetchOrder {
  std::string Address;      ///< in the ANSI code page
  unsigned TimeOut = 0;     ///< milliseconds without a sign of life, at each step
  bool ToFile = false;      ///< else to memory
  std::wstring BodyPath;    ///< a full path
  std::wstring HeaderPath;  ///< a full path; empty: the header is not kept
};

/// One fetch: a GET, its redirections, and the document put where it was ordered.
///
/// Network and disk are dealt with on a thread of the system's that nobody waits for: each may hold
/// a thread for as long as it likes. Whoever waits for the fetch waits for its signal, and may give
/// it up at any moment.
class TFetch : public std::enable_shared_from_this<TFetch> {
 public:
  explicit TFetch(TFetchOrder order) : FOrder(std::move(order)) {}
  TFetch(const TFetch&) = delete;
  TFetch& operator=(const TFetch&) = delete;

  /// Begins, once, unless cancelled.
  void Start();
  /// Waits until it has received more, or has ended. False once there is nothing more to wait for.
  bool Await(const TSignalWait& wait);
  /// Gives it up; from any thread, also before it begins. Nothing is put in place after that; what
  /// is being put in place at this very moment may still get there.
  void Cancel();

  /// When nothing is left to wait for: how it ended.
  TFetchOutcome Outcome() const { return FOutcome; }
  /// Bytes of the body so far, and of all of it (0: unknown).
  std::uint64_t Received() const { return FReceived; }
  std::uint64_t Total() const { return FTotal; }
  /// The document of a fetch to memory that succeeded.
  const TBodyBuffer& Document() const { return FDocument; }

 private:
  enum class TStage { Fetching, Storing, Ended, Cancelled };

  void Run();
  void End(TFetchOutcome outcome);
  /// False when the fetch is cancelled.
  bool Use(std::shared_ptr<THttpExchange> exchange);
  bool BeginStoring();
  TFetchOutcome Fetch();
  TFetchOutcome Receive(THttpExchange& exchange, const TResponseHead& head);
  bool Begin(const TResponseHead& head);
  bool Take(std::span<const char> data);
  bool Store();
  /// Calls the body for the new file, if that is there; nobody else has it meanwhile.
  template <class TBody>
  bool WithFile(TBody&& body);

  const TFetchOrder FOrder;
  const TSignal FSignal{TSignal::TReset::ByWait};
  std::atomic<std::uint64_t> FReceived = 0;
  std::atomic<std::uint64_t> FTotal = 0;
  std::atomic<TFetchOutcome> FOutcome = TFetchOutcome::None;
  std::atomic<TStage> FStage = TStage::Fetching;
  std::atomic<bool> FGivenUp = false;

  // Of the system's thread; read by others after the end.
  std::string FHeader;
  TBodyBuffer FDocument;

  std::mutex FLock;  ///< held for moments
  std::shared_ptr<THttpExchange> FExchange;
  std::unique_ptr<TReplacementFile> FFile;
};
