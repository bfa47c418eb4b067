#pragma once

#include <windows.h>

#include <string>

#include "library.h"

/// A window with the entries of an account, which the user may filter by operation type.
class TEntriesWindow {
 public:
  TEntriesWindow(TLibrary& library, HWND owner);
  ~TEntriesWindow();
  TEntriesWindow(const TEntriesWindow&) = delete;
  TEntriesWindow& operator=(const TEntriesWindow&) = delete;

  /// Null once the user closed it.
  HWND Handle() const { return FHandle; }

  /// Asks the user for a type, card or cheque book and shows its entries; all when they cancel.
  void Filter();

 private:
  static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void CreateList();
  void ShowEntries();
  void Arrange();

  TLibrary& FLibrary;
  HWND FHandle = nullptr;
  HWND FList = nullptr;
  int FDpi = 96;
  std::wstring FFilter;  ///< a type, card or cheque book; empty: every entry is shown
};
