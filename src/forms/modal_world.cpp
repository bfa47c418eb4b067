#include "forms/modal_world.h"

TModalWorld::TModalWorld(HWND form) : FForm(form), FActive(GetActiveWindow()) {
  EnumThreadWindows(GetCurrentThreadId(), Disable, reinterpret_cast<LPARAM>(this));
}

TModalWorld::~TModalWorld() {
  for (const HWND window : FDisabled) {
    if (IsWindow(window)) EnableWindow(window, TRUE);
  }
}

BOOL CALLBACK TModalWorld::Disable(HWND window, LPARAM self) {
  auto* world = reinterpret_cast<TModalWorld*>(self);
  if (window != world->FForm && IsWindowVisible(window) && IsWindowEnabled(window)) {
    EnableWindow(window, FALSE);
    world->FDisabled.push_back(window);
  }
  return TRUE;
}
