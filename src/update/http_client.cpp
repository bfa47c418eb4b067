#include "update/http_client.h"

#include <exception>

#include "platform/module_hold.h"

namespace {

bool WriteWhole(const std::wstring& path, std::string_view text) {
  TReplacementFile file(path);
  return file.Create() && file.Write(text) && file.Flush() && file.Replace();
}

}  // namespace

void THttpClient::Prepare(std::string_view address) {
  FRequest = std::make_shared<THttpRequest>(TimeOut);
  FAddress = address;
  FToFile = InputFileMode;
  FBodyPath = FToFile && !Body.empty() ? FullPath(Body) : std::wstring();
  FHeaderPath = FToFile && !Header.empty() ? FullPath(Header) : std::wstring();
  FReceived = 0;
  FTotal = 0;
  FKept.Clear();
}

void THttpClient::Cancel() {
  if (FRequest) FRequest->Cancel();
}

void THttpClient::Get(const TSignalWait& wait) {
  TFetchOutcome outcome = TFetchOutcome::Failure;
  try {
    outcome = Transfer(wait);
  } catch (const std::exception&) {
    // Out of memory, as a rule: the body is larger than what the process can hold.
  }
  FFile.reset();
  FReceiving.Clear();
  FHeaderReceived.clear();
  Report(outcome);
}

TFetchOutcome THttpClient::Transfer(const TSignalWait& wait) {
  const TFetchOutcome outcome = OutcomeOf(FRequest->Get(FAddress, *this, wait));
  if (outcome != TFetchOutcome::Success || Store(wait)) return outcome;
  return FRequest->Cancelled() ? TFetchOutcome::None : TFetchOutcome::Failure;
}

bool THttpClient::Begin(int status, std::string_view header, std::optional<std::uint64_t> length) {
  if (!BodyWanted(status)) return false;
  FTotal = length.value_or(0);
  if (!FToFile) return true;
  FHeaderReceived = header;
  FFile = std::make_shared<TReplacementFile>(FBodyPath);
  return FFile->Create();
}

bool THttpClient::Receive(std::span<const char> data) {
  if (FToFile) {
    if (!FFile->Write(data)) return false;
  } else {
    FReceiving.Append(data);
  }
  FReceived += data.size();
  if (OnPacketRecvd) OnPacketRecvd();
  return true;
}

bool THttpClient::Store(const TSignalWait& wait) {
  if (!FToFile) {
    FKept = std::move(FReceiving);
    return true;
  }
  // The header first: an older body survives whatever fails.
  return Flush(wait) && (FHeaderPath.empty() || WriteWhole(FHeaderPath, FHeaderReceived)) &&
         FFile->Replace();
}

bool THttpClient::Flush(const TSignalWait& wait) {
  // A disk may need longer for a large file than an abort may take: then the flush goes on alone,
  // and the file goes with it.
  enum TState { Busy, Failed, Done };
  const auto state = std::make_shared<std::atomic<int>>(Busy);
  RunInBackground([file = FFile, state, signal = FRequest->Signal()] {
    *state = file->Flush() ? Done : Failed;
    signal->Set();
  });
  while (*state == Busy && !FRequest->Cancelled()) wait(*FRequest->Signal(), TimeOut);
  return *state == Done && !FRequest->Cancelled();
}

void THttpClient::Report(TFetchOutcome outcome) const {
  const auto raise = [](const TNotifyEvent& event) {
    if (event) event();
  };
  switch (outcome) {
    case TFetchOutcome::None:
      break;
    case TFetchOutcome::Success:
      raise(OnSuccess);
      break;
    case TFetchOutcome::ConnectionFailed:
      raise(OnConnectionFailed);
      break;
    case TFetchOutcome::Failure:
      raise(OnFailure);
      break;
    case TFetchOutcome::InvalidHost:
      raise(OnInvalidHost);
      break;
  }
  raise(OnDisconnect);
}
