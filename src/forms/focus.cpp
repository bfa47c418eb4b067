#include "forms/focus.h"

namespace {

bool IsInside(HWND form, HWND window) { return window == form || IsChild(form, window); }

bool IsEmbedded(HWND form) { return (GetWindowLongW(form, GWL_STYLE) & WS_CHILD) != 0; }

HWND HostOf(HWND form) {
  return IsEmbedded(form) ? GetAncestor(form, GA_ROOT) : GetWindow(form, GW_OWNER);
}

struct TTabStopSearch {
  HWND Leaving;
  HWND Found = nullptr;
};

BOOL CALLBACK IsNoTabStop(HWND window, LPARAM data) {
  // Not by GetNextDlgTabItem, which may search for ever among windows that are just being hidden.
  auto& search = *reinterpret_cast<TTabStopSearch*>(data);
  const bool stop = (GetWindowLongW(window, GWL_STYLE) & WS_TABSTOP) != 0;
  if (stop && !IsInside(search.Leaving, window) && CanHaveFocus(window)) search.Found = window;
  return search.Found == nullptr;
}

}  // namespace

bool CanHaveFocus(HWND window) {
  if (!IsWindowVisible(window)) return false;
  while (window && IsWindowEnabled(window) && !IsIconic(window)) {
    if (!IsEmbedded(window)) return true;
    window = GetParent(window);
  }
  return false;
}

bool IsOfHost(HWND form, HWND window) {
  return window && !IsInside(form, window) && GetAncestor(window, GA_ROOT) == HostOf(form);
}

bool HasFocus(HWND form) {
  const HWND focus = GetFocus();
  return focus && IsInside(form, focus);
}

void GiveFocusBack(HWND form, HWND before) {
  const HWND host = HostOf(form);
  if (GetActiveWindow() != host) return;
  if (CanHaveFocus(before)) {
    SetFocus(before);
  } else if (IsEmbedded(form)) {
    TTabStopSearch search{form};
    EnumChildWindows(host, IsNoTabStop, reinterpret_cast<LPARAM>(&search));
    if (search.Found) SetFocus(search.Found);
  }
}
