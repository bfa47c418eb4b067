#pragma once

#include <cstdint>
#include <string>

/// Asks for a topic of a help file: by WinHelp, or by HTML Help when the file is a compiled one
/// (".chm"), for WinHelp shows nothing on Windows 10 and 11. There a pop-up is the topic in the
/// help window, and context 0 the file's first page.
///
/// The owner is a window handle, possibly null. The command is WinHelp's; only HELP_CONTEXT and
/// HELP_CONTEXTPOPUP, whose data is a help context, have a counterpart in HTML Help, others are not
/// asked for there. User-interface thread.
void AskForHelp(void* owner, const std::string& file, unsigned command, std::uintptr_t data);
