#pragma once

#include <windows.h>

/// Takes what is below the host's own registry keys out of the way, in both hives, and puts it back
/// at the end of its life.
class TSavedSettings {
 public:
  static constexpr wchar_t Company[] = L"Software\\KAVEN";
  static constexpr wchar_t Product[] = L"Software\\KAVEN\\ZEF";

  TSavedSettings();
  TSavedSettings(const TSavedSettings&) = delete;
  TSavedSettings& operator=(const TSavedSettings&) = delete;
  ~TSavedSettings();
};
