#pragma once

#include <windows.h>

#include <commctrl.h>

#include <string>

class TControl;
class TForm;

/// The tips of a form's controls while the pointer rests on them: a control's hint, whether it is
/// enabled or not, and over a text that is cut short the whole text instead.
class TFormTips {
 public:
  explicit TFormTips(const TForm& form);
  TFormTips(const TFormTips&) = delete;
  TFormTips& operator=(const TFormTips&) = delete;
  /// While the controls are there: tooltips that go after them leave memory behind.
  ~TFormTips();

  /// The control was moved, shown, hidden, enabled or disabled.
  void Show(const TControl& control) const;
  /// The pointer moved in a window of the control, to a place in its client area.
  void PointerMoved(const TControl& control, HWND window, POINT at);
  /// WM_NOTIFY to the form; true when it was the tips'.
  bool HandleNotify(NMHDR& header);

 private:
  static BOOL CALLBACK AddTool(HWND child, LPARAM self);
  TTTOOLINFOW Tool() const;
  TTTOOLINFOW AreaOf(const TControl& control) const;
  static std::wstring TextAt(const TControl& control, POINT screen);

  const TForm& FForm;
  HWND FWindow;
  std::wstring FText;  ///< of the tip last shown
};
