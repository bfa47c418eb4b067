#pragma once

#include <windows.h>

#include <set>

/// What a process holds, to find out what a piece of work left behind.
struct TCensus {
  std::set<HWND> Windows;  ///< without those that the system makes for itself
  std::set<DWORD> Threads;
  int GdiObjects;

  static TCensus Take();
};
