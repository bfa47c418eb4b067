#pragma once

#include <windows.h>

#include <string>

/// Texts against the room that their controls have for them, in device pixels.

/// The width that a text takes in a window's font.
int TextWidth(HWND window, const std::wstring& text);

/// The text when it does not fit into that width together with a control's usual margins; else
/// empty.
std::wstring TextUnlessFits(HWND window, std::wstring text, int width);
