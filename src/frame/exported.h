#pragma once

#include <utility>

#include "forms/application.h"
#include "platform/guard.h"

/// The body of an export: no C++ exception reaches the host, and what the body retired is destroyed
/// when the outermost call into the library ends.
template <class TResult, class TBody>
TResult Exported(TResult fallback, TBody&& body) noexcept {
  const TCallScope scope;
  return Guarded(fallback, std::forward<TBody>(body));
}

template <class TBody>
void Exported(TBody&& body) noexcept {
  const TCallScope scope;
  Guarded(std::forward<TBody>(body));
}

/// A text argument of an export: null reads as empty.
inline const char* OrEmpty(const char* text) { return text ? text : ""; }
