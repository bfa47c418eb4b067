#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

/// Windows seen from outside, whichever thread or process they belong to. Texts are UTF-8. Nothing
/// here waits longer than a moment for a window whose thread does not answer.

std::string Utf8(std::wstring_view text);
std::wstring Wide(std::string_view utf8);
/// UTF-8 in the ANSI code page, as a host hands it to the library, and back.
std::string Ansi(std::string_view utf8);
std::string FromAnsi(std::string_view text);

std::string ClassOf(HWND window);
std::string TextOf(HWND window);
/// The name that the library gives each control window, or empty.
std::string NameOf(HWND window);
/// The window of that name inside another, or null.
HWND ControlNamed(HWND form, std::string_view name);
/// In screen coordinates.
RECT BoundsOf(HWND window);
/// Visible, and inside visible parents.
inline bool Shown(HWND window) { return IsWindowVisible(window) != FALSE; }
DWORD ProcessOf(HWND window);

/// In the system's order, topmost first.
std::vector<HWND> TopWindows(DWORD process);
std::vector<HWND> Descendants(HWND window);

/// Sends a message; the fallback when the window is gone or its thread is stuck.
LRESULT Ask(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0, LRESULT fallback = 0);

/// One line a window: class, name, text, bounds, disabled, hidden. What is inside a hidden one is
/// left out.
std::string WindowTree(DWORD process);
