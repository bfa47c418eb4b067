#pragma once

#include <windows.h>

/// Draws the frame and face of a push button as the host's own buttons look.
void DrawButtonFrame(HWND window, HDC dc, const RECT& area, bool pressed, bool enabled);
