#pragma once

#include <utility>

#include "forms/application.h"
#include "platform/guard.h"

/// Whether a call from this thread may come in. Everything belongs to the one thread that the
/// library's windows belong to: while that runs, a call from another is refused, since it would
/// race with it and leave windows that answer nobody. Windows whose thread has ended are forgotten.
bool Admitted(const TPlace& place) noexcept;

/// The body of an export: no C++ exception reaches the host, and what the body retired is destroyed
/// when the outermost call into the library ends. A call from the wrong thread gives the fallback
/// without running the body: out arguments are set before.
template <class TResult, class TBody>
TResult Exported(TResult fallback, TBody&& body,
                 const TPlace& place = std::source_location::current()) noexcept {
  if (!Admitted(place)) return fallback;
  const TCallScope scope(place.Function);
  return Guarded(fallback, std::forward<TBody>(body), place);
}

template <class TBody>
void Exported(TBody&& body, const TPlace& place = std::source_location::current()) noexcept {
  if (!Admitted(place)) return;
  const TCallScope scope(place.Function);
  Guarded(std::forward<TBody>(body), place);
}

/// Tells the debugger of a handle of the host's with nothing behind it: freed, foreign or random.
/// Null is no news, nor is one that the host asks about again and again.
void ReportRefused(const void* handle) noexcept;

/// What was found behind a handle of the host's, if anything.
template <class T>
T* Known(T* found, const void* handle) noexcept {
  if (!found) ReportRefused(handle);
  return found;
}

/// A text argument of an export: null reads as empty.
inline const char* OrEmpty(const char* text) { return text ? text : ""; }
