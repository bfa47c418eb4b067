#include "update/http_client.h"

#include "platform/full_path.h"

void THttpClient::Prepare(std::string_view address) {
  TFetchOrder order;
  order.Address = address;
  order.TimeOut = TimeOut;
  order.ToFile = InputFileMode;
  if (InputFileMode && !Body.empty()) order.BodyPath = FullPath(Body);
  if (InputFileMode && !Header.empty()) order.HeaderPath = FullPath(Header);
  FFetch = std::make_shared<TFetch>(std::move(order));
}

void THttpClient::Cancel() {
  if (FFetch) FFetch->Cancel();
}

void THttpClient::Get(const TSignalWait& wait) {
  std::uint64_t told = 0;
  const auto tell = [&] {
    const std::uint64_t received = FFetch->Received();
    if (received != told && OnPacketRecvd) OnPacketRecvd();
    told = received;
  };
  FFetch->Start();
  while (FFetch->Await(wait)) tell();
  const TFetchOutcome outcome = FFetch->Outcome();
  if (outcome != TFetchOutcome::None) tell();
  Report(outcome);
}

std::size_t THttpClient::CopyBody(std::span<char> target) const {
  return FFetch && FFetch->Outcome() == TFetchOutcome::Success ? FFetch->Document().CopyTo(target)
                                                               : 0;
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
