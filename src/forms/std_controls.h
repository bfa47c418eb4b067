#pragma once

#include "forms/control.h"

/// A text beside a field.
class TLabel : public TControl {
 public:
  using TControl::TControl;

  bool NamesItself() const override { return true; }

 protected:
  TWindowParams WindowParams() const override;
};

/// A text that stands for a value, in a sunken frame when the layout says so.
class TStaticText : public TLabel {
 public:
  using TLabel::TLabel;

  std::wstring CutText(POINT at) const override;

 protected:
  TWindowParams WindowParams() const override;
};

/// A one-line edit. It shows what its text reads as in the host's code page, whatever is typed or
/// pasted. OnChange is raised for changes from code as well.
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
};

/// A check box of two or three states.
class TCheckBox : public TControl {
 public:
  using TControl::TControl;

  bool NamesItself() const override { return true; }

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
};

/// What shows a position within a range: that of the layout, or 0 to 100.
class TRangeControl : public TControl {
 protected:
  using TControl::TControl;

  /// By the control's own message for it.
  void SetRange(UINT message) const;
};

/// Small arrows that step a position. OnClick when the user changed it.
class TUpDown : public TRangeControl {
 public:
  using TRangeControl::TRangeControl;

  int Position() const;
  void SetPosition(int position);

  void HandleScroll() override;

 protected:
  TWindowParams WindowParams() const override;
  void Created() override;
  LRESULT WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  void Step(int delta);

  int FTold = 0;  ///< the position that is known outside
};

/// A progress bar; the position may be set from any thread.
class TProgressBar : public TRangeControl {
 public:
  using TRangeControl::TRangeControl;

  int Position() const;
  void SetPosition(int position);

 protected:
  TWindowParams WindowParams() const override;
  void Created() override;
};
