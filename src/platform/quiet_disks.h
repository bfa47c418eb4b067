#pragma once

#include <windows.h>

/// A drive without a disk counts as not there for as long as this lives, instead of asking the
/// user for one.
class TQuietDisks {
 public:
  TQuietDisks() { SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &FBefore); }
  TQuietDisks(const TQuietDisks&) = delete;
  TQuietDisks& operator=(const TQuietDisks&) = delete;
  ~TQuietDisks() { SetThreadErrorMode(FBefore, nullptr); }

 private:
  DWORD FBefore = 0;
};
