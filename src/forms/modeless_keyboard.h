#pragma once

#include <windows.h>

/// Dialog keys for forms inside the host's own message loop, through a message hook of the thread
/// that lives only while such a form does. Keys that the form has a use for are taken: Tab, arrows
/// and mnemonics of its own, Enter and Escape where a control or a button of it answers them. All
/// others stay the host's. Of an embedded form, Tab beyond either end is left to the host as well;
/// where that does not move the focus, it goes round inside the form.
/// User-interface thread only.
void AddModelessForm(HWND form);
void RemoveModelessForm(HWND form);
