#pragma once

#include <windows.h>

/// Tells when a thread has dealt with all input sent before: a marker key follows the input, and
/// by the time that the thread takes it from its queue, it is done with what came earlier (or waits
/// in a nested message loop that this input led to). The marker itself reaches no window.
class TInputBarrier {
 public:
  /// On the thread to be watched. One at a time.
  TInputBarrier();
  TInputBarrier(const TInputBarrier&) = delete;
  TInputBarrier& operator=(const TInputBarrier&) = delete;
  ~TInputBarrier();

  /// On another thread: sends a marker and waits a moment for it. False when it was not met: the
  /// thread is busy still, or its windows lost the keyboard; then try again.
  bool Pass();

 private:
  static LRESULT CALLBACK HookProc(int code, WPARAM wParam, LPARAM lParam);

  DWORD FThread;
  HHOOK FHook;
  WORD FMarker = 0;
};
