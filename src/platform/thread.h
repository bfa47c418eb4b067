#pragma once

#include <memory>

#include "platform/signal.h"

/// A thread with a body, made suspended. The library stays in memory until the thread has left it;
/// this object by itself does not hold it.
///
/// A derived class waits for the end in its own destructor: the body must not outlive the members
/// that it uses.
class TThread {
 public:
  /// Throws std::runtime_error when the system has no thread to give.
  TThread();
  TThread(const TThread&) = delete;
  TThread& operator=(const TThread&) = delete;
  virtual ~TThread() = default;

  /// Lets it run; once.
  void Resume();
  /// Waits until the body has ended.
  void WaitFor() const;
  /// Set when the body has ended.
  const TSignal& Ended() const { return *FEnded; }

 protected:
  virtual void Execute() = 0;

 private:
  static unsigned long __stdcall Run(void* thread);

  std::shared_ptr<TSignal> FEnded;
  void* FModule = nullptr;  ///< the thread's own hold of the library
  TKernelHandle FHandle;
};

/// Names the calling thread for a debugger.
void NameThisThread(const char* name);
