#pragma once

#include <utility>

#include "platform/debug_report.h"

/// Runs the body and hands out its result, or the fallback when it throws: no C++ exception may
/// cross the frames of the system or of the host. What was thrown is told to the debugger.
template <class TResult, class TBody>
TResult Guarded(TResult fallback, TBody&& body,
                const TPlace& place = std::source_location::current()) noexcept {
  try {
    return static_cast<TResult>(std::forward<TBody>(body)());
  } catch (...) {
    ReportException(place);
    return fallback;
  }
}

template <class TBody>
void Guarded(TBody&& body, const TPlace& place = std::source_location::current()) noexcept {
  try {
    std::forward<TBody>(body)();
  } catch (...) {
    ReportException(place);
  }
}
