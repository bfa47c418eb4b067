#include "forms/hint_window.h"

#include <algorithm>

#include "forms/application.h"
#include "forms/dpi.h"
#include "forms/rules/text_wrap.h"
#include "forms/window_class.h"
#include "platform/guard.h"
#include "platform/handle.h"

namespace {

constexpr wchar_t kClassName[] = L"THintWindow";
constexpr int kMargin = 2;  // at 96 DPI; letters may reach into it
constexpr int kBorder = 1;
constexpr UINT_PTR kOwnerTimer = 1;
constexpr UINT kOwnerPeriod = 100;  // milliseconds

/// The font that the system gives tooltips, as high as another DPI wants it.
TFontHandle TooltipFont(int dpi) {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  LOGFONTW font = metrics.lfStatusFont;
  font.lfHeight = MulDiv(font.lfHeight, dpi, DpiOf(nullptr));
  return TFontHandle(CreateFontIndirectW(&font));
}

/// Below 65,536 pixels.
int WidthOf(HDC dc, std::wstring_view line) {
  return LOWORD(GetTabbedTextExtentW(dc, line.data(), static_cast<int>(line.size()), 0, nullptr));
}

/// How many characters of a line fit into that many pixels.
std::size_t Fitting(HDC dc, std::wstring_view line, int width) {
  // Step by step, for a long text is slow to measure, and may be wider than can be told.
  constexpr std::size_t kStep = 128;
  const auto fits = [&](std::size_t count) { return WidthOf(dc, line.substr(0, count)) <= width; };
  std::size_t fit = 0;
  std::size_t next = std::min(kStep, line.size());
  while (next > fit && fits(next)) {
    fit = next;
    next = std::min(fit + kStep, line.size());
  }
  while (next > fit + 1) {
    const std::size_t middle = (fit + next) / 2;
    (fits(middle) ? fit : next) = middle;
  }
  return fit;
}

}  // namespace

void THintWindow::Show(POINT at, int maxWidth, std::wstring_view text) {
  FText = text;
  FMaxWidth = maxWidth;
  FLines.clear();
  RegisterWindowClass(kClassName, HintProc, static_cast<int>(sizeof(THintWindow*)), nullptr);
  if (!FHandle) {
    FHandle = CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, kClassName,
                              FText.c_str(), WS_POPUP | WS_BORDER, at.x, at.y, 0, 0, FOwner,
                              nullptr, TApplication::Instance(), this);
    // Its owner is gone: without a handle, the calls below would mean every window on the screen.
    if (!FHandle) return;
    // The system makes the owner of what is inside a window that window, and takes the bubble away
    // with that one only.
    if (GetWindow(FHandle, GW_OWNER) != FOwner) {
      SetTimer(FHandle, kOwnerTimer, kOwnerPeriod, nullptr);
    }
  }
  SetWindowTextW(FHandle, FText.c_str());
  // Only where it is to stand does the window learn the DPI there.
  SetWindowPos(FHandle, nullptr, at.x, at.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  FMaxWidth = maxWidth;
  Arrange(at, DpiOf(FHandle));
}

void THintWindow::Arrange(POINT at, int dpi) {
  FDpi = dpi;
  FFont = TooltipFont(dpi);
  FMargin = MulDiv(kMargin, dpi, 96);
  const RECT area = WorkAreaOf({at.x, at.y, at.x, at.y});
  const LONG frame = 2 * (FMargin + kBorder);
  const LONG room = area.right - area.left;
  const LONG inner = std::max((FMaxWidth > 0 ? std::min<LONG>(FMaxWidth, room) : room) - frame, 1L);

  const TWindowDc dc(nullptr);
  const HGDIOBJ before = SelectObject(dc.Get(), FFont.Get());
  TEXTMETRICW metrics{};
  GetTextMetricsW(dc.Get(), &metrics);
  FLineHeight = std::max(metrics.tmHeight, 1L);
  const LONG most = std::max((area.bottom - area.top - frame) / FLineHeight, 1L);
  FLines = WrapText(FText, static_cast<std::size_t>(most),
                    [&](std::wstring_view line) { return Fitting(dc.Get(), line, inner); });
  LONG width = frame;
  for (const auto& line : FLines) width = std::max(width, WidthOf(dc.Get(), line) + frame);
  SelectObject(dc.Get(), before);

  const LONG height =
      static_cast<LONG>(std::max<std::size_t>(FLines.size(), 1)) * FLineHeight + frame;
  SetWindowPos(FHandle, HWND_TOPMOST, std::max(std::min(at.x, area.right - width), area.left),
               std::max(std::min(at.y, area.bottom - height), area.top), width, height,
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
  const HGDIOBJ before = SelectObject(dc, FFont.Get());
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, GetSysColor(COLOR_INFOTEXT));
  int top = FMargin;
  for (const auto& line : FLines) {
    TabbedTextOutW(dc, FMargin, top, line.data(), static_cast<int>(line.size()), 0, nullptr,
                   FMargin);
    top += FLineHeight;
  }
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
    case WM_DPICHANGED:
      Guarded([&] {
        const auto& place = *reinterpret_cast<const RECT*>(lParam);
        hint->FMaxWidth = MulDiv(hint->FMaxWidth, LOWORD(wParam), hint->FDpi);
        hint->Arrange({place.left, place.top}, LOWORD(wParam));
      });
      return 0;
    case WM_TIMER:
      if (!IsWindow(hint->FOwner)) hint->ReleaseHandle();
      return 0;
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
