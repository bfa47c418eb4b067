#pragma once

#include <windows.h>

#include <set>
#include <string>

/// What a process holds, to find out what a piece of work left behind.
struct TCensus {
  std::set<HWND> Windows;  ///< without those that the system makes for itself
  std::set<DWORD> Threads;
  int GdiObjects;

  static TCensus Take();
  /// One line for each window and thread here that the earlier census does not know; empty when
  /// there is none.
  std::string NewSince(const TCensus& earlier) const;
};
