#pragma once

#include "platform/http_exchange.h"

/// What a fetch reports to its client's events when it has ended.
enum class TFetchOutcome {
  None,  ///< cancelled
  Success,
  ConnectionFailed,
  Failure,
  InvalidHost
};

/// Of a request that the system ended with an error, in the phase it had reached.
TFetchOutcome OutcomeOf(unsigned long error, THttpPhase phase);
