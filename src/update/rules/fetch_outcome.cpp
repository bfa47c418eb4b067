#include "update/rules/fetch_outcome.h"

TFetchOutcome OutcomeOf(const THttpResult& result) {
  if (result.Cancelled) return TFetchOutcome::None;
  switch (result.Error) {
    case THttpResult::NoError:
      break;
    case THttpResult::NameNotResolved:
      return TFetchOutcome::InvalidHost;
    case THttpResult::CannotConnect:
      return TFetchOutcome::ConnectionFailed;
    case THttpResult::TimedOut:
      return result.Phase == THttpPhase::Connecting ? TFetchOutcome::ConnectionFailed
                                                    : TFetchOutcome::Failure;
    default:
      return TFetchOutcome::Failure;
  }
  const bool whole = !result.Length || result.Received >= *result.Length;
  return whole && !result.Refused ? TFetchOutcome::Success : TFetchOutcome::Failure;
}
