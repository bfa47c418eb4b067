#pragma once

#include <windows.h>

#include <string>

#include "host_window.h"
#include "library.h"

/// A window with the entries of an account, which the user may filter by operation type.
class TEntriesWindow final : public THostWindow {
 public:
  TEntriesWindow(TLibrary& library, HWND owner);
  ~TEntriesWindow();

  /// Asks the user for a type, card or cheque book and shows its entries; all when they cancel.
  void Filter();

 private:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  void CreateList();
  void ShowEntries();
  void Arrange();

  TLibrary& FLibrary;
  HWND FList = nullptr;
  std::wstring FFilter;  ///< a type, card or cheque book; empty: every entry is shown
};
