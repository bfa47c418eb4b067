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

/// Takes the focus out of a form that is about to hide; does nothing when it is elsewhere. The
/// window that had it before the form gets it back. Where that one cannot have it any more, the
/// first tab stop around an embedded form gets it; else the system decides.
void GiveFocusBack(HWND form, HWND before);
