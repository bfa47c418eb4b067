#pragma once

#include <windows.h>

/// Draws the frame and face of a push button as the other buttons of the library look.
void DrawButtonFrame(HWND window, HDC dc, const RECT& area, bool pressed, bool enabled);
