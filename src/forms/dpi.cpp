#include "forms/dpi.h"

#include "platform/handle.h"

int DpiOf(HWND window) {
  // Only newer systems know a DPI for each window.
  using TGetDpiForWindow = UINT(WINAPI*)(HWND);
  static const auto getDpiForWindow = reinterpret_cast<TGetDpiForWindow>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow")));
  if (getDpiForWindow && IsWindow(window)) {
    if (const UINT dpi = getDpiForWindow(window)) return static_cast<int>(dpi);
  }
  return GetDeviceCaps(TWindowDc(nullptr).Get(), LOGPIXELSX);
}

RECT WorkAreaOf(const RECT& bounds) {
  MONITORINFO info{};
  info.cbSize = sizeof info;
  GetMonitorInfoW(MonitorFromRect(&bounds, MONITOR_DEFAULTTONEAREST), &info);
  return info.rcWork;
}
