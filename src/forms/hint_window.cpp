#include "forms/hint_window.h"

#include <algorithm>

#include "forms/application.h"
#include "forms/dpi.h"
#include "forms/handles.h"
#include "forms/window_class.h"
#include "platform/guard.h"

namespace {

constexpr wchar_t kClassName[] = L"THintWindow";
constexpr int kMargin = 3;
constexpr UINT kTextFormat = DT_LEFT | DT_WORDBREAK | DT_NOPREFIX | DT_EXPANDTABS;

/// The font that the system gives tooltips.
TFontHandle TooltipFont() {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  return TFontHandle(CreateFontIndirectW(&metrics.lfStatusFont));
}

}  // namespace

RECT THintWindow::CalcHintRect(int maxWidth, std::wstring_view text) const {
  const TFontHandle font = TooltipFont();
  const TWindowDc dc(nullptr);
  const HGDIOBJ before = SelectObject(dc.Get(), font.Get());
  RECT bounds{0, 0, std::max(maxWidth - 2 * kMargin, 1), 0};
  DrawTextW(dc.Get(), text.data(), static_cast<int>(text.size()), &bounds,
            kTextFormat | DT_CALCRECT);
  SelectObject(dc.Get(), before);
  return {0, 0, bounds.right + 2 * kMargin, bounds.bottom + 2 * kMargin};
}

void THintWindow::ActivateHint(const RECT& bounds, std::wstring_view text) {
  FText = text;
  RegisterWindowClass(kClassName, HintProc, static_cast<int>(sizeof(THintWindow*)), nullptr);
  if (!FHandle) {
    FHandle = CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, kClassName,
                              FText.c_str(), WS_POPUP | WS_BORDER, 0, 0, 0, 0, FOwner, nullptr,
                              TApplication::Instance(), this);
    // Its owner is gone: without a handle, the calls below would mean every window on the screen.
    if (!FHandle) return;
  }
  SetWindowTextW(FHandle, FText.c_str());
  const RECT area = WorkAreaOf(bounds);
  const LONG width = bounds.right - bounds.left;
  const LONG height = bounds.bottom - bounds.top;
  SetWindowPos(FHandle, HWND_TOPMOST,
               std::max(std::min(bounds.left, area.right - width), area.left),
               std::max(std::min(bounds.top, area.bottom - height), area.top), width, height,
               SWP_NOACTIVATE | SWP_SHOWWINDOW);
  InvalidateRect(FHandle, nullptr, TRUE);
  UpdateWindow(FHandle);
}

void THintWindow::ReleaseHandle() {
  if (FHandle) DestroyWindow(FHandle);
}

void THintWindow::Paint(HDC dc) const {
  RECT client{};
  GetClientRect(FHandle, &client);
  FillRect(dc, &client, GetSysColorBrush(FColor));
  const TFontHandle font = TooltipFont();
  const HGDIOBJ before = SelectObject(dc, font.Get());
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, GetSysColor(COLOR_INFOTEXT));
  InflateRect(&client, 1 - kMargin, 1 - kMargin);
  DrawTextW(dc, FText.c_str(), static_cast<int>(FText.size()), &client, kTextFormat);
  SelectObject(dc, before);
}

LRESULT CALLBACK THintWindow::HintProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    const auto* create = reinterpret_cast<CREATESTRUCTW*>(lParam);
    SetWindowLongPtrW(window, 0, reinterpret_cast<LONG_PTR>(create->lpCreateParams));
  }
  auto* hint = reinterpret_cast<THintWindow*>(GetWindowLongPtrW(window, 0));
  switch (message) {
    case WM_PAINT: {
      PAINTSTRUCT paint;
      const HDC dc = BeginPaint(window, &paint);
      Guarded([&] { hint->Paint(dc); });
      EndPaint(window, &paint);
      return 0;
    }
    case WM_NCHITTEST:
      return HTTRANSPARENT;
    case WM_MOUSEACTIVATE:
      return MA_NOACTIVATE;
    case WM_NCDESTROY:
      if (hint) hint->FHandle = nullptr;
      break;
    default:
      break;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}
