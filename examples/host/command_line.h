#pragma once

#include <optional>
#include <string>

#include "script_editor.h"

/// ZEF.EXE [--script N] [--line L] [--column C] [--assist] [--log FILE]
/// Script, line and column count from 1, as the window shows them.
struct TCommandLine {
  int Script = 0;                                    ///< counts from 0 here
  std::optional<TScriptEditor::TPosition> Position;  ///< nothing: where the macro says
  bool Assist = false;                               ///< open the assistant at that place
  std::wstring LogFile;
};

/// Nothing when an argument is unknown or lacks its value.
std::optional<TCommandLine> ParseCommandLine(int count, const wchar_t* const* arguments);
