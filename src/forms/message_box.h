#pragma once

#include <string_view>

/// The system's message boxes, owned by the topmost dialog that runs, else by the active window or
/// the host's main window.
/// Texts are in the host's ANSI code page.
enum class TMessageKind { Warning, Error };

/// OK only, captions "Avertissement" and "Erreur".
void ShowMessageBox(TMessageKind kind, std::string_view text);
/// Yes and No, caption "Confirmation"; true for Yes.
bool AskYesNo(std::string_view text);
