#pragma once

#include "forms/control.h"
#include "forms/image_list.h"

/// A push button. A click sets the form's modal result first, then raises OnClick.
class TButton : public TControl {
 public:
  using TControl::TControl;

  /// Makes it the form's default button, and no other.
  void SetDefault();
  int ModalResult() const { return Number("result", 0); }
  void Click();

  bool NamesItself() const override { return true; }
  void HandleCommand(WORD code) override;

 protected:
  TWindowParams WindowParams() const override;
};

/// A push button with a glyph before its caption. Without a caption it is all picture, its hint is
/// its text, and it draws itself.
class TBitBtn : public TButton {
 public:
  using TButton::TButton;

  void DpiChanged(int dpi) override;
  void Draw(const DRAWITEMSTRUCT& item) const override;

 protected:
  TWindowParams WindowParams() const override;
  void Created() override;
  LRESULT WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  bool AllPicture() const { return !HasFlag("caption"); }

  TImageList FImages;
  bool FLooksDefault = false;
};

/// A button with a glyph that leaves the focus where it is when it is clicked with the mouse.
class TSpeedButton : public TBitBtn {
 public:
  using TBitBtn::TBitBtn;

 protected:
  LRESULT WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  bool FPressed = false;
};
