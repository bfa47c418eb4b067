#include "forms/modal_world.h"

#include "platform/window_list.h"

TModalWorld::TModalWorld(HWND form) : FActive(GetActiveWindow()) {
  for (const HWND window : WindowsOfThread(GetCurrentThreadId())) {
    if (window == form || !IsWindowVisible(window) || !IsWindowEnabled(window)) continue;
    FDisabled.push_back(window);
  }
  // Not before all are known: nobody would enable them again.
  for (const HWND window : FDisabled) EnableWindow(window, FALSE);
}

TModalWorld::~TModalWorld() {
  for (const HWND window : FDisabled) {
    if (IsWindow(window)) EnableWindow(window, TRUE);
  }
}
