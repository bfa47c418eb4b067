#pragma once

#include <windows.h>

#include <string_view>

/// Keys and mouse as the hardware gives them: they go where the system routes them, to the
/// foreground window and to what lies under the pointer.

enum TModifiers : unsigned { mdNone = 0, mdShift = 1, mdControl = 2, mdAlt = 4 };

void SendKey(WORD virtualKey, unsigned modifiers = mdNone);
/// By the keys of the keyboard's layout where it has them.
void SendText(std::wstring_view text);
void MovePointer(POINT screen);
void SendClick(POINT screen, int clicks = 1);
