#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

#include "platform/handle.h"

/// A tooltip-like bubble that shows one text: it never takes the focus nor the activation, and
/// stays inside the work area of its monitor, at that monitor's DPI. User-interface thread only.
class THintWindow {
 public:
  /// The bubble belongs to a window, which may be inside another one, and goes when that does;
  /// null: to none.
  explicit THintWindow(HWND owner) : FOwner(owner) {}
  THintWindow(const THintWindow&) = delete;
  THintWindow& operator=(const THintWindow&) = delete;
  ~THintWindow() { ReleaseHandle(); }

  /// A COLOR_ constant of the system; the tooltip background by default.
  void SetColor(int systemColor) { FColor = systemColor; }
  /// Shows the text with the bubble's left top at a point of the screen, as far as the monitor
  /// there has room. The bubble is no wider than maxWidth device pixels, in one letter's width at
  /// least; 0 or less: than the monitor. Of a text too high for the monitor the end is left out.
  void Show(POINT at, int maxWidth, std::wstring_view text);
  /// Takes the bubble off the screen and destroys its window.
  void ReleaseHandle();

  HWND Handle() const { return FHandle; }

 private:
  static LRESULT CALLBACK HintProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  /// Breaks the text for that DPI, and shows it there.
  void Arrange(POINT at, int dpi);
  void Paint(HDC dc) const;

  HWND FOwner;
  HWND FHandle = nullptr;
  int FColor = COLOR_INFOBK;
  int FDpi = 96;
  int FMaxWidth = 0;  ///< device pixels at FDpi
  std::wstring FText;
  TFontHandle FFont;
  int FMargin = 0;
  int FLineHeight = 0;
  std::vector<std::wstring> FLines;
};
