#pragma once

#include "forms/drop_down.h"
#include "forms/items_control.h"

/// A combo box; with style drop-down its text can be typed. OnChange when the user has chosen or
/// types.
class TComboBox : public TNativeItemsControl {
 public:
  using TNativeItemsControl::TNativeItemsControl;

  void HandleCommand(WORD code) override;
  void SetBounds(const RECT& bounds) override;
  std::wstring CutText(POINT at) const override;

 protected:
  TWindowParams WindowParams() const override;
  const TMessages& Messages() const override;

 private:
  bool Typed() const { return Word("style", "drop-down") == "drop-down"; }

  TDropDown FDropDown{*this};
};
