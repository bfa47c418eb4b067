#pragma once

#include <windows.h>

/// Dialog keys (Tab, arrows, Enter, Escape, mnemonics) for modeless forms inside the host's own
/// message loop, through a message hook of the thread that lives only while such a form does.
/// User-interface thread only.
void AddModelessForm(HWND form);
void RemoveModelessForm(HWND form);
