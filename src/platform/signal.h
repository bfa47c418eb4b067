#pragma once

#include <functional>
#include <memory>

#include "platform/owned.h"

/// As a time to wait: for ever.
constexpr unsigned kForEver = ~0u;

/// A flag that threads can wait for. Any thread.
class TSignal {
 public:
  enum class TReset {
    ByWait,  ///< a wait that ends takes it back
    Never    ///< once set, every wait ends
  };
  /// Throws std::runtime_error when the system has none to give.
  explicit TSignal(TReset reset);

  void Set() const;
  /// False when the time (milliseconds) is over.
  bool Wait(unsigned ms) const;
  /// The system's handle.
  void* Handle() const { return FHandle.Get(); }

 private:
  TKernelHandle FHandle;
};

/// How to wait for a signal: as TSignal::Wait does, or while doing something useful.
using TSignalWait = std::function<bool(const TSignal&, unsigned ms)>;
