#pragma once

#include <windows.h>

#include "host_window.h"
#include "library.h"

/// A window of this program with a form of the library inside: a view, which it asks whether the
/// user changed anything, or a dialog that is not modal.
class TGuestWindow final : public THostWindow {
 public:
  enum class TGuest { View, Dialog };

  TGuestWindow(TLibrary& library, TGuest guest, HWND owner);
  ~TGuestWindow();

 private:
  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  void CreateGuest();
  void FitAround(HWND guest);
  void ShowChanged();

  TLibrary& FLibrary;
  TGuest FGuest;
  ZefDialog FDialog = nullptr;
};
