#pragma once

#include <windows.h>

/// The user's settings of the product are out of the way, in both hives, while a program that uses
/// its dialogs has an object of this kind; then they are there again. Also when a program before
/// this one crashed meanwhile.
class TSavedSettings {
 public:
  static constexpr wchar_t Company[] = L"Software\\KAVEN";
  static constexpr wchar_t Product[] = L"Software\\KAVEN\\ZEF";

  TSavedSettings();
  TSavedSettings(const TSavedSettings&) = delete;
  TSavedSettings& operator=(const TSavedSettings&) = delete;
  ~TSavedSettings();
};
