#include "forms/window_thread.h"

#include <windows.h>

#include <atomic>

#include "platform/kept.h"
#include "platform/owned.h"

namespace {
std::atomic<DWORD> number = 0;

/// While the number stands for it.
struct TRunningThread {
  TKernelHandle Handle;
};
}  // namespace

bool TWindowThread::IsCurrent() { return number == GetCurrentThreadId(); }

bool TWindowThread::Running() {
  // One that was terminated did not tell.
  return number != 0 && WaitForSingleObject(Kept<TRunningThread>().Handle.Get(), 0) == WAIT_TIMEOUT;
}

unsigned long TWindowThread::Id() { return number; }

void TWindowThread::Claim() {
  Forget();
  Kept<TRunningThread>().Handle =
      TKernelHandle(OpenThread(SYNCHRONIZE, FALSE, GetCurrentThreadId()));
  number = GetCurrentThreadId();
}

void TWindowThread::Forget() { number = 0; }

void TWindowThread::ThreadEnds() {
  if (IsCurrent()) number = 0;
}
