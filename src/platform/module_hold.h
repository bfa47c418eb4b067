#pragma once

#include <functional>

/// Keeps this library in memory while it lives, and a moment longer: the thread that gives it up,
/// or one that it has just dealt with, may still be on its way out of the library's code. Any
/// thread.
class TModuleHold {
 public:
  TModuleHold();
  TModuleHold(const TModuleHold&) = delete;
  TModuleHold& operator=(const TModuleHold&) = delete;
  ~TModuleHold();

 private:
  void* FModule = nullptr;
};

/// Runs a job on a thread of the system, with the library held. What the job throws is dropped.
/// Runs it at once, here, when the system has no thread to give.
void RunInBackground(std::function<void()> job);
