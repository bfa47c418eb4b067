#include "forms/window_thread.h"

#include <windows.h>

#include <atomic>
#include <utility>

namespace {
std::atomic<DWORD> number = 0;
HANDLE thread = nullptr;  ///< while the number stands for it
}  // namespace

bool TWindowThread::IsCurrent() { return number == GetCurrentThreadId(); }

bool TWindowThread::Running() {
  // One that was terminated did not tell.
  return number != 0 && WaitForSingleObject(thread, 0) == WAIT_TIMEOUT;
}

unsigned long TWindowThread::Id() { return number; }

void TWindowThread::Claim() {
  Forget();
  thread = OpenThread(SYNCHRONIZE, FALSE, GetCurrentThreadId());
  number = GetCurrentThreadId();
}

void TWindowThread::Forget() {
  number = 0;
  if (const HANDLE before = std::exchange(thread, nullptr)) CloseHandle(before);
}

void TWindowThread::ThreadEnds() {
  if (IsCurrent()) number = 0;
}
