#pragma once

#include <windows.h>

#include "platform/handle.h"

/// Keeps out other threads and processes of the user's session that take a lock of the same name,
/// for as long as it lives. One that dies lets go. Given back by the thread that took it.
class TNamedLock {
 public:
  /// Waits at most so long (milliseconds).
  TNamedLock(const wchar_t* name, DWORD ms) : FMutex(CreateMutexW(nullptr, FALSE, name)) {
    const DWORD waited = FMutex ? WaitForSingleObject(FMutex.Get(), ms) : WAIT_FAILED;
    FTaken = waited == WAIT_OBJECT_0 || waited == WAIT_ABANDONED;
  }
  TNamedLock(const TNamedLock&) = delete;
  TNamedLock& operator=(const TNamedLock&) = delete;
  ~TNamedLock() {
    if (FTaken) ReleaseMutex(FMutex.Get());
  }

  bool Taken() const { return FTaken; }

 private:
  TKernelHandle FMutex;
  bool FTaken;
};
