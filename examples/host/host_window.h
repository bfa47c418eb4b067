#pragma once

#include <windows.h>

/// A window of this program, whose messages go to the object behind it.
class THostWindow {
 public:
  THostWindow(const THostWindow&) = delete;
  THostWindow& operator=(const THostWindow&) = delete;

  /// Null before it is made and once it is gone.
  HWND Handle() const { return FHandle; }

 protected:
  struct TFrame {
    const wchar_t* ClassName;
    const wchar_t* Caption;
    DWORD Style;
    DWORD ExStyle = 0;
    HWND Owner = nullptr;
    HMENU Menu = nullptr;
  };

  THostWindow();
  ~THostWindow() = default;

  /// Makes the window, hidden, at a place and with a size in device pixels. False when the system
  /// refuses it.
  bool CreateHandle(const TFrame& frame, POINT place, SIZE size);
  /// For the destructors of derived classes, which are still to get its last messages.
  void DestroyHandle();
  virtual LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) = 0;
  /// Device pixels for pixels at 96 DPI.
  int Scale(int pixels) const { return MulDiv(pixels, FDpi, 96); }

 private:
  static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  HWND FHandle = nullptr;
  int FDpi;
};
