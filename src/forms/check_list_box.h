#pragma once

#include <windows.h>

#include <commctrl.h>

#include <string>
#include <vector>

#include "forms/items_control.h"

/// A list of check boxes: a native list view, so that a screen reader says the check states and the
/// space bar toggles them. An item that is not enabled cannot be toggled by the user. The rows are
/// ours and the list view asks for those it shows, so that thousands cost no more than a few.
///
/// OnClick when an item is clicked, on its box or its text, or becomes current; OnClickCheck after
/// the user toggled one (it is the current item then), before its OnClick.
class TCheckListBox : public TItemsControl {
 public:
  using TItemsControl::TItemsControl;

  int Count() const override { return static_cast<int>(FRows.size()); }
  std::wstring ItemWide(int index) const override;
  int AddItem(std::string_view text) override { return AddItem(text, true, false); }
  int AddItem(std::string_view text, bool enabled, bool checked);
  void DeleteItem(int index) override;
  void ClearItems() override;
  int ItemIndex() const override;
  void SetItemIndex(int index) override;
  int IndexOf(std::string_view text) const override;

  /// False also of an index that is no item's.
  bool Checked(int index) const;
  /// Does not raise OnClickCheck.
  void SetChecked(int index, bool checked);

  TNotifyEvent OnClickCheck;

  bool HandleNotify(const NMHDR& header, LRESULT& result) override;
  TNotifyEvent* FindEvent(std::string_view property) override;
  void SetBounds(const RECT& bounds) override;
  std::wstring CutText(POINT at) const override;

 protected:
  TWindowParams WindowParams() const override;
  void Created() override;
  LRESULT WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  struct TRow {
    std::wstring Text;
    bool Enabled;
    bool Checked;
  };
  const TRow* Row(int index) const;
  int Find(const std::wstring& text, int start, bool beginning) const;
  void ShowCount();
  void FitColumn();
  void GiveRow(LVITEMW& item) const;
  void Clicked(const NMITEMACTIVATE& click);
  void SelectAgain();
  void Toggle(int index);
  LRESULT CustomDraw(const NMLVCUSTOMDRAW& draw) const;

  std::vector<TRow> FRows;
  bool FRedraws = true;
  bool FUpdating = false;         ///< the program moves the selection, which raises no events
  int FSelectedBefore = -1;       ///< when the message of the mouse came
  bool FUnselected = false;       ///< the list view has taken the selection away since
  bool FSelectionRaised = false;  ///< the click being handled has told of itself already
};
