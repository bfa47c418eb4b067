#include "forms/theme.h"

#include <uxtheme.h>
#include <vssym32.h>

#include "platform/common_controls.h"

namespace {

template <class TFunction>
bool Find(TFunction& function, HMODULE module, const char* name) {
  function = reinterpret_cast<TFunction>(reinterpret_cast<void*>(GetProcAddress(module, name)));
  return function != nullptr;
}

bool DrawThemedFrame(HWND window, HDC dc, const RECT& area, int state) {
  // The other buttons beside it have no theme either.
  if (!CommonControls().Themed) return false;
  // Themed common controls have loaded it already.
  const HMODULE module = GetModuleHandleW(L"uxtheme.dll");
  decltype(&OpenThemeData) open = nullptr;
  decltype(&CloseThemeData) close = nullptr;
  decltype(&DrawThemeBackground) draw = nullptr;
  decltype(&DrawThemeParentBackground) drawParent = nullptr;
  if (!module || !Find(open, module, "OpenThemeData") || !Find(close, module, "CloseThemeData") ||
      !Find(draw, module, "DrawThemeBackground") ||
      !Find(drawParent, module, "DrawThemeParentBackground")) {
    return false;
  }
  const HTHEME theme = open(window, L"BUTTON");
  if (!theme) return false;
  RECT frame = area;
  drawParent(window, dc, &frame);
  draw(theme, dc, BP_PUSHBUTTON, state, &frame, nullptr);
  close(theme);
  return true;
}

}  // namespace

void DrawButtonFrame(HWND window, HDC dc, const RECT& area, bool pressed, bool enabled) {
  if (DrawThemedFrame(window, dc, area,
                      !enabled  ? PBS_DISABLED
                      : pressed ? PBS_PRESSED
                                : PBS_NORMAL)) {
    return;
  }
  RECT frame = area;
  UINT state = DFCS_BUTTONPUSH;
  if (pressed) state |= DFCS_PUSHED;
  if (!enabled) state |= DFCS_INACTIVE;
  DrawFrameControl(dc, &frame, DFC_BUTTON, state);
}
