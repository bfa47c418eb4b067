#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

/// Items of list boxes, combo boxes (with images too) and list views, in any process.

std::vector<std::string> ItemsOf(HWND control);
/// -1 when none.
int SelectedItemOf(HWND control);
/// -1 when there is no such item; the text must be the same to the letter.
int IndexOfItem(HWND control, std::string_view item);
/// The state of an item's check box in a list view.
bool ItemChecked(HWND control, int index);

/// Scrolls the item into view. A point on it, in screen coordinates; for combo boxes the list has
/// to be open.
POINT PointOnItem(HWND control, int index);
POINT PointOnItemCheckBox(HWND control, int index);
/// The item of a combo box's open list at a place on the screen; another number when there is none.
int ItemUnder(HWND combo, POINT point);
