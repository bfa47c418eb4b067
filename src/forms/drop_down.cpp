#include "forms/drop_down.h"

#include <commctrl.h>

#include <algorithm>

#include "forms/dpi.h"
#include "forms/text_fit.h"

namespace {

LONG HeightOf(HWND window) {
  RECT bounds{};
  GetWindowRect(window, &bounds);
  return bounds.bottom - bounds.top;
}

/// The system makes a closed box as high as its font needs. What can be set is the height of the
/// field in it; what the frame adds to that differs with theme and system.
void SetClosedHeight(HWND combo, LONG height) {
  const auto setField = [&](LONG field) {
    SendMessageW(combo, CB_SETITEMHEIGHT, static_cast<WPARAM>(-1), std::max(field, 1L));
  };
  if (HeightOf(combo) == height) return;
  setField(height);
  setField(height - (HeightOf(combo) - height));
}

}  // namespace

void TDropDown::Fit(HWND combo, LONG height, int lines) const {
  SetClosedHeight(combo, height);
  RECT closed{};
  GetWindowRect(combo, &closed);
  // The newer controls count lines, by default thirty.
  SendMessageW(combo, CB_SETMINVISIBLE, static_cast<WPARAM>(lines), 0);
  // For the older ones the height given to the window counts the open list in.
  const auto line = static_cast<int>(SendMessageW(combo, CB_GETITEMHEIGHT, 0, 0));
  // Its two borders, and a little that some kinds take off again.
  const int borders = 4 * GetSystemMetrics(SM_CYBORDER);
  SetWindowPos(combo, nullptr, 0, 0, closed.right - closed.left,
               closed.bottom - closed.top + line * lines + borders,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

bool TDropDown::Chosen(HWND combo, WORD code) {
  switch (code) {
    case CBN_DROPDOWN:
      Opening(combo);
      return false;
    case CBN_CLOSEUP:
      return Closed();
    case CBN_SELCHANGE:
      return Moved();
    case CBN_EDITCHANGE:
      // What is typed while the list is open stands.
      FIndexBefore = FControl.ItemIndex();
      FTextBefore = FControl.Text();
      FMoved = false;
      return true;
    default:
      return false;
  }
}

bool TDropDown::Moved() {
  FMoved = FOpen;
  return !FOpen;
}

void TDropDown::Opening(HWND combo) {
  FOpen = true;
  FMoved = false;
  FIndexBefore = FControl.ItemIndex();
  FTextBefore = FControl.Text();
  RECT box{};
  GetWindowRect(combo, &box);
  const RECT area = WorkAreaOf(box);
  const LONG width = std::min<LONG>(FControl.WidestItem() + GetSystemMetrics(SM_CXVSCROLL),
                                    area.right - area.left);
  SendMessageW(combo, CB_SETDROPPEDWIDTH, static_cast<WPARAM>(width), 0);
}

bool TDropDown::Closed() {
  if (!FOpen) return false;
  FOpen = false;
  if (GetKeyState(VK_ESCAPE) >= 0) return FMoved;
  if (FControl.ItemIndex() != FIndexBefore) FControl.SetItemIndex(FIndexBefore);
  if (FControl.Text() != FTextBefore) FControl.SetText(FTextBefore);
  return false;
}

std::wstring TDropDown::CutText(HWND combo, int before) const {
  COMBOBOXINFO info{};
  info.cbSize = sizeof info;
  if (FOpen || !GetComboBoxInfo(combo, &info)) return {};
  const int index = FControl.ItemIndex();
  const std::wstring text = info.hwndItem && info.hwndItem != combo ? WindowTextWide(info.hwndItem)
                            : index < 0                             ? std::wstring()
                                                                    : FControl.ItemWide(index);
  return TextUnlessFits(combo, text, info.rcItem.right - info.rcItem.left - before);
}
