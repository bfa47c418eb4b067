#pragma once

#include "forms/std_controls.h"

/// A multi-line edit. Line ends are CR LF; a lone LF that is set becomes one. A new text shows from
/// its top. Enter breaks the line and Ctrl+Tab writes a tab, except in read-only memos; Tab and
/// Escape are the form's.
class TMemo : public TEdit {
 public:
  using TEdit::TEdit;

  void SetText(std::string_view text) override;
  void SetTextUtf8(std::string_view text) override;
  void Clear() { SetText({}); }

 protected:
  TWindowParams WindowParams() const override;
  void Created() override;
  LRESULT WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override;
  static std::wstring WithLineEnds(std::wstring_view text);

 private:
  void Show(const std::wstring& text);
};
