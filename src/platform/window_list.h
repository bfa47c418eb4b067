#pragma once

#include <windows.h>

#include <vector>

/// The windows of a thread without those inside them, or all that are inside a window, in the
/// system's order. To be gone through in plain loops: what is thrown from within a function that
/// the system calls for each window would end the host.
std::vector<HWND> WindowsOfThread(DWORD thread);
std::vector<HWND> WindowsWithin(HWND window);
