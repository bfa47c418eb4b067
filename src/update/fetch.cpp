#include "update/fetch.h"

#include <algorithm>
#include <exception>

#include "platform/code_page.h"
#include "platform/debug_report.h"
#include "platform/module_hold.h"

namespace {

constexpr int kMostRedirections = 10;
/// Milliseconds that a fetch given up gets to finish putting its files in place.
constexpr unsigned kLastMoment = 500;

/// Told to the debugger, since the host learns only that the fetch has failed.
bool NotWritable(const std::wstring& path) {
  DebugReport("VCLCmdURL cannot write the file " + ToUtf8(path));
  return false;
}

bool WriteWhole(TReplacementFile& file, std::string_view text) {
  return file.Create() && file.Write(text) && file.Flush();
}

}  // namespace

void TFetch::Start() {
  RunInBackground([self = shared_from_this()] { self->Run(); });
}

bool TFetch::Await(const TSignalWait& wait) {
  const auto over = [&] { return FStage == TStage::Ended || FStage == TStage::Cancelled; };
  if (over()) return false;
  const bool woken = wait(FSignal, FGivenUp ? kLastMoment : kForEver);
  return !over() && (woken || !FGivenUp);
}

void TFetch::Cancel() {
  // A file that is not in use just now goes at once.
  std::unique_ptr<TReplacementFile> file;
  const std::lock_guard lock(FLock);
  if (FStage == TStage::Fetching) {
    FStage = TStage::Cancelled;
    file = std::move(FFile);
  }
  FGivenUp = true;
  if (FExchange) FExchange->Cancel();
  FSignal.Set();
}

bool TFetch::BeginStoring() {
  const std::lock_guard lock(FLock);
  if (FStage == TStage::Cancelled) return false;
  FStage = TStage::Storing;
  return true;
}

void TFetch::Run() {
  TFetchOutcome outcome = TFetchOutcome::Failure;
  try {
    outcome = Fetch();
  } catch (const std::exception&) {
    // Out of memory, as a rule: the body is larger than what the process can hold.
  }
  if (outcome != TFetchOutcome::Success) FDocument.Clear();
  End(outcome);
}

void TFetch::End(TFetchOutcome outcome) {
  // Both are given up outside the lock: that may take its time.
  std::shared_ptr<THttpExchange> exchange;
  std::unique_ptr<TReplacementFile> file;
  {
    const std::lock_guard lock(FLock);
    exchange = std::move(FExchange);
    file = std::move(FFile);
  }
  file.reset();
  const std::lock_guard lock(FLock);
  if (FStage != TStage::Cancelled) {
    FOutcome = outcome;
    FStage = TStage::Ended;
  }
  FSignal.Set();
}

bool TFetch::Use(std::shared_ptr<THttpExchange> exchange) {
  const std::lock_guard lock(FLock);
  FExchange.swap(exchange);
  return FStage != TStage::Cancelled;
}

TFetchOutcome TFetch::Fetch() {
  auto address = ParseWebAddress(ToUtf8(ToWide(FOrder.Address)));
  const auto session = OpenHttpSession(FOrder.TimeOut);
  for (int hops = 0; address && session && hops <= kMostRedirections; ++hops) {
    const auto exchange = std::make_shared<THttpExchange>(session, FOrder.TimeOut);
    if (!Use(exchange)) return TFetchOutcome::None;
    if (const auto error = exchange->Ask(
            {address->Secure, address->Host, address->Port, address->Target}, FHeader)) {
      return OutcomeOf(error, exchange->Phase());
    }
    const auto head = ParseResponseHead(FHeader);
    if (!head) return TFetchOutcome::Failure;
    switch (AnswerOf(head->Status)) {
      case TAnswer::Document:
        return Receive(*exchange, *head);
      case TAnswer::Redirection:
        address = FollowLocation(*address, head->Location);
        break;
      case TAnswer::Refusal:
        return TFetchOutcome::Failure;
    }
  }
  return TFetchOutcome::Failure;
}

TFetchOutcome TFetch::Receive(THttpExchange& exchange, const TResponseHead& head) {
  if (!Begin(head)) return TFetchOutcome::Failure;
  std::uint64_t missing = head.Length.value_or(UINT64_MAX);
  while (missing > 0) {
    std::span<const char> data;
    if (const auto error = exchange.Receive(data)) return OutcomeOf(error, exchange.Phase());
    if (data.empty()) break;
    // What follows the declared length is no part of the body.
    if (data.size() > missing) data = data.first(static_cast<std::size_t>(missing));
    missing -= data.size();
    if (!Take(data)) return TFetchOutcome::Failure;
  }
  const bool whole = !head.Length || missing == 0;
  return whole && Store() ? TFetchOutcome::Success : TFetchOutcome::Failure;
}

bool TFetch::Begin(const TResponseHead& head) {
  FTotal = head.Length.value_or(0);
  if (!FOrder.ToFile) return FTotal <= TBodyBuffer::kMost;
  auto file = std::make_unique<TReplacementFile>(FOrder.BodyPath);
  if (!file->Create()) return NotWritable(FOrder.BodyPath);
  const std::lock_guard lock(FLock);
  if (FStage != TStage::Cancelled) FFile = std::move(file);
  return FFile != nullptr;
}

template <class TBody>
bool TFetch::WithFile(TBody&& body) {
  std::unique_ptr<TReplacementFile> file;
  {
    const std::lock_guard lock(FLock);
    file = std::move(FFile);
  }
  if (!file || !body(file)) return false;
  const std::lock_guard lock(FLock);
  if (FStage == TStage::Cancelled) return false;
  FFile = std::move(file);
  return true;
}

bool TFetch::Take(std::span<const char> data) {
  const bool taken =
      FOrder.ToFile
          ? WithFile([&](auto& file) { return file->Write(data) || NotWritable(FOrder.BodyPath); })
          : FDocument.Append(data);
  if (!taken) return false;
  FReceived += data.size();
  FSignal.Set();
  return true;
}

bool TFetch::Store() {
  if (!FOrder.ToFile) return BeginStoring();
  return WithFile([&](auto& body) {
    TReplacementFile header(FOrder.HeaderPath);
    const bool withHeader = !FOrder.HeaderPath.empty();
    if (withHeader && !WriteWhole(header, FHeader)) return NotWritable(FOrder.HeaderPath);
    if (!body->Flush()) return NotWritable(FOrder.BodyPath);
    if (!BeginStoring()) return false;
    const bool stored = withHeader ? ReplaceBoth(header, *body) : body->Replace();
    return stored || NotWritable(FOrder.BodyPath);
  });
}
