#pragma once

#include <windows.h>

/// Rules for moving the keyboard focus between our forms and the host's windows. Call them on the
/// thread of the windows.

/// The user could type into that window: it and all around it are visible and enabled, and none of
/// them is minimised.
bool CanHaveFocus(HWND window);

/// The window is of the host's: in the main window that owns the form, or, for an embedded form,
/// elsewhere in the window around it. Not in another dialog of ours, nor in a message box.
bool IsOfHost(HWND form, HWND window);

/// The focus is in that form.
bool HasFocus(HWND form);

/// Gives the focus that a form has (an embedded one, about to hide) or had (one with a window of
/// its own, hidden now) to the host's window that had it before. Where that one cannot have it any
/// more, the first tab stop around an embedded form gets it. Which window is active is left to the
/// system.
void GiveFocusBack(HWND form, HWND before);
