#pragma once

#include <windows.h>

#include <string>

/// Registers a window class of this library under a name, once; later calls with the name do
/// nothing. `extra` is the number of bytes kept with each window.
void RegisterWindowClass(const std::wstring& name, WNDPROC proc, int extra, HBRUSH background);

/// Unregisters every class registered so far; for the unloading library, whose code the classes
/// point into.
void UnregisterWindowClasses();

/// Leaves the windows of this library that a thread still has to the system, which destroys them:
/// at once in that thread itself, else when it serves its next messages. None of them runs into the
/// library's code again. False when there were none. Any thread.
bool LeaveWindows(DWORD thread);
