#include "update/rules/fetch_outcome.h"

TFetchOutcome OutcomeOf(unsigned long error, THttpPhase phase) {
  switch (error) {
    case THttpError::NameNotResolved:
      return TFetchOutcome::InvalidHost;
    case THttpError::CannotConnect:
      return TFetchOutcome::ConnectionFailed;
    case THttpError::TimedOut:
      return phase == THttpPhase::Connecting ? TFetchOutcome::ConnectionFailed
                                             : TFetchOutcome::Failure;
    default:
      return TFetchOutcome::Failure;
  }
}
