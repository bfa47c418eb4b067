#pragma once

#include <windows.h>

#include "library.h"

/// Moves the window to where the user last left it, if a screen still shows that place. Returns how
/// to show it: as asked for, or maximized as it was.
int PutBackPlace(TLibrary& library, HWND window, int show);

/// Keeps the window's place for the next run.
void KeepPlace(TLibrary& library, HWND window);
