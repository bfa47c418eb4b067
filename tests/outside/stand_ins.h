#pragma once

#include <windows.h>

#include <string>
#include <vector>

// What tests stand in for, in place of functions of the system that the library imports.

/// What the library asked of the system's help programs.
struct THelpRequest {
  HWND Window;
  std::string File;
  unsigned Command;
  int Data;
  bool Compiled = false;  ///< asked of HTML Help, not of WinHelp
  bool operator==(const THelpRequest&) const = default;

  static std::vector<THelpRequest> All;
};

/// What the library told a debugger since the last time; it is printed as well, so that what was
/// swallowed stands in the log of the test that saw the effect. Any thread.
std::string TakeDebugLines();

void StandInFor(HMODULE library);
