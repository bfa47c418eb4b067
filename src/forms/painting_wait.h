#pragma once

#include <windows.h>

#include "platform/signal.h"

/// Waits as TSignal::Wait does, on the user-interface thread, whose windows are repainted meanwhile
/// and which answers what other threads send; progress that workers report to our bars is shown.
/// Input and all else stay in the queue.
bool WaitPainting(const TSignal& signal, unsigned ms);

/// Moves the bars of a window, and of those inside it, to where workers have said by now.
void ServeProgress(HWND window);
