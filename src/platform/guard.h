#pragma once

#include <utility>

/// Runs the body and hands out its result, or the fallback when it throws: no C++ exception may
/// cross the frames of the system or of the host.
template <class TResult, class TBody>
TResult Guarded(TResult fallback, TBody&& body) noexcept {
  try {
    return static_cast<TResult>(std::forward<TBody>(body)());
  } catch (...) {
    return fallback;
  }
}

template <class TBody>
void Guarded(TBody&& body) noexcept {
  try {
    std::forward<TBody>(body)();
  } catch (...) {
  }
}
