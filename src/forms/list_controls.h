#pragma once

#include <vector>

#include "forms/control.h"
#include "forms/image_list.h"

/// What list boxes and combo boxes have in common: items of text, found as the system finds them
/// (whole text, letter case ignored).
class TItemsControl : public TControl {
 public:
  using TControl::TControl;

  virtual int Count() const = 0;
  virtual std::string Item(int index) const = 0;
  /// Returns the item's index.
  virtual int AddItem(std::string_view text) = 0;
  virtual void DeleteItem(int index) = 0;
  virtual void ClearItems() = 0;
  /// The selected item, or -1.
  virtual int ItemIndex() const = 0;
  /// Does not raise OnClick or OnChange.
  virtual void SetItemIndex(int index) = 0;
  /// Index of the item with this text ignoring case, or -1.
  virtual int IndexOf(std::string_view text) const = 0;

  std::string SelectedText() const {
    const int index = ItemIndex();
    return index < 0 ? std::string() : Item(index);
  }

  /// Stops redrawing while many items are added.
  void BeginUpdate() { Send(WM_SETREDRAW, FALSE); }
  void EndUpdate() {
    Send(WM_SETREDRAW, TRUE);
    InvalidateRect(Handle(), nullptr, TRUE);
  }
};

/// The items of the controls whose native kinds have the same messages under different numbers.
class TNativeItemsControl : public TItemsControl {
 public:
  using TItemsControl::TItemsControl;

  int Count() const override;
  std::string Item(int index) const override;
  int AddItem(std::string_view text) override;
  /// At that index, also in a sorted list: the caller keeps the order.
  void InsertItem(int index, std::string_view text);
  void DeleteItem(int index) override;
  void ClearItems() override;
  int ItemIndex() const override;
  void SetItemIndex(int index) override;
  int IndexOf(std::string_view text) const override;

 protected:
  struct TMessages {
    UINT Count, TextLength, Text, Add, Insert, Delete, Clear, Selection, Select, Find;
  };
  virtual const TMessages& Messages() const = 0;
};

/// OnClick when the selection moves or an item is clicked.
class TListBox : public TNativeItemsControl {
 public:
  using TNativeItemsControl::TNativeItemsControl;

  void HandleCommand(WORD code) override;

 protected:
  TWindowParams WindowParams() const override;
  bool Accepts(std::string_view property) const override;
  const TMessages& Messages() const override;
};

/// A combo box; with style drop-down its text can be typed. OnChange when the user chooses or
/// types.
class TComboBox : public TNativeItemsControl {
 public:
  using TNativeItemsControl::TNativeItemsControl;

  void HandleCommand(WORD code) override;
  void SetBounds(const RECT& bounds) override;

 protected:
  TWindowParams WindowParams() const override;
  void Created() override;
  bool Accepts(std::string_view property) const override;
  const TMessages& Messages() const override;
};

/// A drop-down list with an image before each item. OnChange when the user chooses.
class TImageComboBox : public TItemsControl {
 public:
  using TItemsControl::TItemsControl;

  /// Kept alive by the caller as long as the control.
  void SetImages(const TImageList* images);

  int Count() const override;
  std::string Item(int index) const override;
  int AddItem(std::string_view text) override { return AddItem(text, 0); }
  int AddItem(std::string_view text, int image);
  void DeleteItem(int index) override;
  void ClearItems() override;
  int ItemIndex() const override;
  void SetItemIndex(int index) override;
  int IndexOf(std::string_view text) const override;

  void HandleCommand(WORD code) override;
  void SetBounds(const RECT& bounds) override;

 protected:
  TWindowParams WindowParams() const override;
  void Created() override;
  bool Accepts(std::string_view property) const override;
  LRESULT WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  HWND Inner() const;
  void TypeAhead(wchar_t typed);

  std::wstring FTyped;
  DWORD FTypedAt = 0;
};
