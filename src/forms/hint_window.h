#pragma once

#include <windows.h>

#include <string>
#include <string_view>

/// A tooltip-like bubble that shows one text: it never takes the focus nor the activation, and
/// stays inside the work area of its monitor. User-interface thread only.
class THintWindow {
 public:
  /// The bubble belongs to a window; null: to none.
  explicit THintWindow(HWND owner) : FOwner(owner) {}
  THintWindow(const THintWindow&) = delete;
  THintWindow& operator=(const THintWindow&) = delete;
  ~THintWindow() { ReleaseHandle(); }

  /// A COLOR_ constant of the system; the tooltip background by default.
  void SetColor(int systemColor) { FColor = systemColor; }
  /// The rectangle that the text needs, its left top at 0, wrapped at maxWidth device pixels.
  RECT CalcHintRect(int maxWidth, std::wstring_view text) const;
  /// Shows the text in a rectangle of screen coordinates.
  void ActivateHint(const RECT& bounds, std::wstring_view text);
  /// Takes the bubble off the screen and destroys its window.
  void ReleaseHandle();

  HWND Handle() const { return FHandle; }

 private:
  static LRESULT CALLBACK HintProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void Paint(HDC dc) const;

  HWND FOwner;
  HWND FHandle = nullptr;
  int FColor = COLOR_INFOBK;
  std::wstring FText;
};
