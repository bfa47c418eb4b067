#pragma once

#include "forms/control.h"

/// What list boxes and combo boxes have in common: items of text, found as the system finds them
/// (whole text, letter case ignored).
class TItemsControl : public TControl {
 public:
  using TControl::TControl;

  virtual int Count() const = 0;
  /// As the control holds it.
  virtual std::wstring ItemWide(int index) const = 0;
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

  std::string Item(int index) const;
  /// The width of the longest item's row, in device pixels.
  virtual int WidestItem() const;

  std::string SelectedText() const {
    const int index = ItemIndex();
    return index < 0 ? std::string() : Item(index);
  }
};

/// What a drop-down list shows at once when the layout does not say.
constexpr int kDropDownLines = 8;

/// Holds the redrawing of a list back while many of its items change.
class TItemsUpdate {
 public:
  explicit TItemsUpdate(const TItemsControl& list) : FList(list) { Redraw(FALSE); }
  TItemsUpdate(const TItemsUpdate&) = delete;
  TItemsUpdate& operator=(const TItemsUpdate&) = delete;
  ~TItemsUpdate() {
    Redraw(TRUE);
    InvalidateRect(FList.Handle(), nullptr, TRUE);
  }

 private:
  void Redraw(BOOL on) const {
    SendMessageW(FList.Handle(), WM_SETREDRAW, static_cast<WPARAM>(on), 0);
  }

  const TItemsControl& FList;
};

/// Empties a list, which is then filled anew and redrawn once, when this goes.
class TItemsRefill : public TItemsUpdate {
 public:
  explicit TItemsRefill(TItemsControl& list) : TItemsUpdate(list) { list.ClearItems(); }
};

/// The items of the controls whose native kinds have the same messages under different numbers.
class TNativeItemsControl : public TItemsControl {
 public:
  using TItemsControl::TItemsControl;

  int Count() const override;
  std::wstring ItemWide(int index) const override;
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
