#pragma once

#include "forms/drop_down.h"
#include "forms/image_list.h"
#include "forms/items_control.h"

/// A drop-down list with an image before each item. OnChange when the user has chosen.
class TImageComboBox : public TItemsControl {
 public:
  using TItemsControl::TItemsControl;

  /// Kept alive by the caller as long as the control.
  void SetImages(const TImageList* images);

  int Count() const override;
  std::wstring ItemWide(int index) const override;
  int AddItem(std::string_view text) override { return AddItem(text, 0); }
  int AddItem(std::string_view text, int image);
  void DeleteItem(int index) override;
  void ClearItems() override;
  int ItemIndex() const override;
  void SetItemIndex(int index) override;
  int IndexOf(std::string_view text) const override;
  int WidestItem() const override { return TItemsControl::WidestItem() + ImageWidth(); }

  void HandleCommand(WORD code) override;
  void SetBounds(const RECT& bounds) override;
  std::wstring CutText(POINT at) const override;

 protected:
  TWindowParams WindowParams() const override;
  void Created() override;
  LRESULT WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  HWND Inner() const;
  int ImageWidth() const;
  void TypeAhead(wchar_t typed);

  TDropDown FDropDown{*this};
  std::wstring FTyped;
  DWORD FTypedAt = 0;
};
