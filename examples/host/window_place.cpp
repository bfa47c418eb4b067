#include "window_place.h"

#include <cstdio>
#include <string>

namespace {

constexpr char Setting[] = "FenetrePrincipale";

}  // namespace

int PutBackPlace(TLibrary& library, HWND window, int show) {
  WINDOWPLACEMENT placement = {};
  placement.length = sizeof placement;
  RECT& place = placement.rcNormalPosition;
  int maximized = 0;
  const std::string kept = library.Setting(Setting);
  if (std::sscanf(kept.c_str(), "%ld,%ld,%ld,%ld,%d", &place.left, &place.top, &place.right,
                  &place.bottom, &maximized) != 5 ||
      !MonitorFromRect(&place, MONITOR_DEFAULTTONULL)) {
    return show;
  }
  placement.showCmd = SW_HIDE;
  SetWindowPlacement(window, &placement);
  return maximized && show == SW_SHOWNORMAL ? SW_SHOWMAXIMIZED : show;
}

void KeepPlace(TLibrary& library, HWND window) {
  WINDOWPLACEMENT placement = {};
  placement.length = sizeof placement;
  if (!GetWindowPlacement(window, &placement)) return;
  const RECT& place = placement.rcNormalPosition;
  const bool maximized =
      placement.showCmd == SW_SHOWMAXIMIZED ||
      (placement.showCmd == SW_SHOWMINIMIZED && (placement.flags & WPF_RESTORETOMAXIMIZED) != 0);
  std::string text;
  for (const LONG edge : {place.left, place.top, place.right, place.bottom})
    text += std::to_string(edge) + ',';
  library.KeepSetting(Setting, text + (maximized ? '1' : '0'));
}
