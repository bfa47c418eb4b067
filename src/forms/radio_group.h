#pragma once

#include <vector>

#include "forms/control.h"

/// Radio buttons in a frame; its items stand in columns.
class TRadioGroup : public TControl {
 public:
  using TControl::TControl;

  int ItemIndex() const { return FItemIndex; }
  /// Does not raise OnClick.
  void SetItemIndex(int index);

  void SetVisible(bool visible) override;
  void SetFont(HFONT font) override;
  bool Owns(HWND window) const override;
  bool NamesItself() const override { return true; }
  void SetBounds(const RECT& bounds) override;
  /// One of its radio buttons was clicked. A handler that sets another item (a group that only
  /// shows does) keeps the focus there.
  void ItemClicked(HWND item);

 protected:
  TWindowParams WindowParams() const override;
  void Created() override;
  void EnableWindows(bool enabled) override;

 private:
  void Arrange();

  std::vector<HWND> FItems;
  int FItemIndex = -1;
};
