#pragma once

#include <windows.h>

/// DPI at which a window shows, in the awareness of the calling thread; null: the primary screen's.
int DpiOf(HWND window);
/// The work area of the monitor that holds most of a rectangle of screen coordinates.
RECT WorkAreaOf(const RECT& bounds);
