#pragma once

#include <windows.h>

#include "forms/items_control.h"

/// The list that a combo box drops, for every kind of combo box: as many lines high as the layout
/// says, as wide as its longest item, and without effect when it is left by Escape. What is walked
/// over in the open list counts as chosen when it closes.
class TDropDown {
 public:
  explicit TDropDown(TItemsControl& control) : FControl(control) {}
  TDropDown(const TDropDown&) = delete;
  TDropDown& operator=(const TDropDown&) = delete;

  /// Gives the closed box its height, in device pixels, and the list that of its lines. The combo
  /// box has its place, its font and its images.
  void Fit(HWND combo, LONG height, int lines) const;
  /// Takes a notification of the combo box. True when the user has chosen.
  bool Chosen(HWND combo, WORD code);
  /// The user has moved the selection. True when that is a choice already.
  bool Moved();

  /// The text shown by the closed box when it is cut, else empty. What stands before the text
  /// (an image) takes the given pixels.
  std::wstring CutText(HWND combo, int before) const;

 private:
  void Opening(HWND combo);
  bool Closed();

  TItemsControl& FControl;
  bool FOpen = false;
  bool FMoved = false;
  int FIndexBefore = -1;
  std::string FTextBefore;
};
