#pragma once

#include <windows.h>

#include "library.h"

/// A window of this program with a form of the library inside: a view, which it asks whether the
/// user changed anything, or a dialog that is not modal.
class TGuestWindow {
 public:
  enum class TGuest { View, Dialog };

  TGuestWindow(TLibrary& library, TGuest guest, HWND owner);
  ~TGuestWindow();
  TGuestWindow(const TGuestWindow&) = delete;
  TGuestWindow& operator=(const TGuestWindow&) = delete;

  /// Null once the user closed it.
  HWND Handle() const { return FHandle; }

 private:
  static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void CreateGuest();
  void FitAround(HWND guest);
  void ShowChanged();

  TLibrary& FLibrary;
  TGuest FGuest;
  HWND FHandle = nullptr;
  ZefDialog FDialog = nullptr;
};
