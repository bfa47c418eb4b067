#pragma once

#include "forms/control.h"
#include "forms/image_list.h"

/// A text beside a field.
class TLabel : public TControl {
 public:
  using TControl::TControl;

 protected:
  TWindowParams WindowParams() const override;
  bool Accepts(std::string_view property) const override;
};

/// A text that stands for a value, in a sunken frame when the layout says so.
class TStaticText : public TLabel {
 public:
  using TLabel::TLabel;

 protected:
  TWindowParams WindowParams() const override;
};

/// A push button. A click sets the form's modal result first, then raises OnClick.
class TButton : public TControl {
 public:
  using TControl::TControl;

  /// Makes it the form's default button, and no other.
  void SetDefault();
  bool IsDefault() const;
  int ModalResult() const { return Number("result", 0); }
  void Click();

  void HandleCommand(WORD code) override;

 protected:
  TWindowParams WindowParams() const override;
  bool Accepts(std::string_view property) const override;
};

/// A push button with a glyph before its caption.
class TBitBtn : public TButton {
 public:
  using TButton::TButton;

  void DpiChanged(int dpi) override;
  void Draw(const DRAWITEMSTRUCT& item) const override;

 protected:
  TWindowParams WindowParams() const override;
  void Created() override;
  bool Accepts(std::string_view property) const override;

 private:
  TImageList FImages;
};

/// A button with a glyph that leaves the focus where it is when it is clicked with the mouse.
class TSpeedButton : public TBitBtn {
 public:
  using TBitBtn::TBitBtn;

 protected:
  TWindowParams WindowParams() const override;
  LRESULT WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  bool FPressed = false;
};

/// A one-line edit. OnChange is raised for changes from code as well.
class TEdit : public TControl {
 public:
  using TControl::TControl;

  bool Modified() const;
  void SetModified(bool modified);
  /// Selection as bytes of Text(): start and length.
  void SetSelection(int start, int length);
  /// Selection in characters of the control: start and end.
  std::pair<DWORD, DWORD> SelectionUnits() const;
  void SetSelectionUnits(DWORD start, DWORD end);

  void HandleCommand(WORD code) override;

 protected:
  TWindowParams WindowParams() const override;
  void Created() override;
  bool Accepts(std::string_view property) const override;
};

/// A multi-line edit. Line ends are CR LF; a lone LF that is set becomes one. A new text shows from
/// its top. Enter breaks the line, except in read-only memos.
class TMemo : public TEdit {
 public:
  using TEdit::TEdit;

  void SetText(std::string_view text) override;
  void SetTextUtf8(std::string_view text) override;
  void Clear() { SetText({}); }

 protected:
  TWindowParams WindowParams() const override;
  void Created() override;
  bool Accepts(std::string_view property) const override;
  static std::wstring WithLineEnds(std::wstring_view text);

 private:
  void Show(const std::wstring& text);
};

/// A check box of two or three states.
class TCheckBox : public TControl {
 public:
  using TControl::TControl;

  enum class TState { Unchecked, Checked, Grayed };
  TState State() const;
  /// Does not raise OnClick.
  void SetState(TState state);
  bool Checked() const { return State() == TState::Checked; }
  void SetChecked(bool checked) { SetState(checked ? TState::Checked : TState::Unchecked); }

  void HandleCommand(WORD code) override;

 protected:
  TWindowParams WindowParams() const override;
  void Created() override;
  bool Accepts(std::string_view property) const override;
};

/// Radio buttons in a frame; its items stand in columns.
class TRadioGroup : public TControl {
 public:
  using TControl::TControl;

  int ItemIndex() const { return FItemIndex; }
  /// Does not raise OnClick.
  void SetItemIndex(int index);

  void SetEnabled(bool enabled) override;
  void SetVisible(bool visible) override;
  void SetFont(HFONT font) override;
  bool Owns(HWND window) const override;
  void SetBounds(const RECT& bounds) override;
  /// One of its radio buttons was clicked.
  void ItemClicked(HWND item);

 protected:
  TWindowParams WindowParams() const override;
  void Created() override;
  bool Accepts(std::string_view property) const override;

 private:
  void Arrange();

  std::vector<HWND> FItems;
  int FItemIndex = -1;
};

/// Small arrows that step a position.
class TUpDown : public TControl {
 public:
  using TControl::TControl;

  int Position() const;
  void SetPosition(int position);

  void HandleScroll() override;

 protected:
  TWindowParams WindowParams() const override;
  void Created() override;
  bool Accepts(std::string_view property) const override;
  LRESULT WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  void Step(int delta);
};

/// A progress bar; the position may be set from any thread.
class TProgressBar : public TControl {
 public:
  using TControl::TControl;

  int Position() const;
  void SetPosition(int position);

 protected:
  TWindowParams WindowParams() const override;
  void Created() override;
  bool Accepts(std::string_view property) const override;
};
