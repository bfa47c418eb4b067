#pragma once

#include <windows.h>

#include <vector>

/// Disables the other windows of the thread for as long as it lives; knows which one was active.
class TModalWorld {
 public:
  /// All but this form; null: all.
  explicit TModalWorld(HWND form);
  TModalWorld(const TModalWorld&) = delete;
  TModalWorld& operator=(const TModalWorld&) = delete;
  // Before the form hides: with no enabled window left, the system would activate another program.
  ~TModalWorld();

  HWND Active() const { return FActive; }

 private:
  HWND FActive;
  std::vector<HWND> FDisabled;
};
