#pragma once

#include "forms/items_control.h"

/// OnClick when the selection moves or an item is clicked, OnDblClick when one is clicked twice.
class TListBox : public TNativeItemsControl {
 public:
  using TNativeItemsControl::TNativeItemsControl;

  void HandleCommand(WORD code) override;
  std::wstring CutText(POINT at) const override;

 protected:
  TWindowParams WindowParams() const override;
  const TMessages& Messages() const override;

 private:
  /// The item at a place of the client area, or -1.
  int ItemAt(POINT at) const;
};
