#pragma once

#include "platform/http_request.h"

/// What a fetch reports to its client's events when it has ended.
enum class TFetchOutcome {
  None,  ///< cancelled
  Success,
  ConnectionFailed,
  Failure,
  InvalidHost
};

TFetchOutcome OutcomeOf(const THttpResult& result);

/// False for an answer that is the server's word on a failure: a sink refuses its body.
constexpr bool BodyWanted(int status) { return status < 400; }

/// The status codes that the host reads.
enum TDownloadStatus {
  dsNone = -1,  ///< no outcome yet
  dsRunning = 0,
  dsReceived = 1,
  dsConnectionFailed = -2,
  dsFailed = -3,
  dsInvalidHost = -4
};
