#pragma once

#include <windows.h>

/// Makes an edit show what its text will read as in the host's code page: of what was just typed or
/// pasted, characters that the code page lacks become their nearest ones or "?". True when it
/// changed something, of which the edit has then told as of any change.
bool ShowInCodePage(HWND edit);
