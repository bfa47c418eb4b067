#pragma once

#include <windows.h>

/// The hourglass for as long as it lives, over work that keeps the user waiting.
class TWaitCursor {
 public:
  TWaitCursor() : FBefore(SetCursor(LoadCursorW(nullptr, IDC_WAIT))) {}
  TWaitCursor(const TWaitCursor&) = delete;
  TWaitCursor& operator=(const TWaitCursor&) = delete;
  ~TWaitCursor() { SetCursor(FBefore); }

 private:
  HCURSOR FBefore;
};
