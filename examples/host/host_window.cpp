#include "host_window.h"

THostWindow::THostWindow() {
  const HDC screen = GetDC(nullptr);
  FDpi = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
}

bool THostWindow::CreateHandle(const TFrame& frame, POINT place, SIZE size) {
  WNDCLASSEXW windowClass = {};
  windowClass.cbSize = sizeof windowClass;
  windowClass.lpfnWndProc = WindowProc;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  windowClass.lpszClassName = frame.ClassName;
  RegisterClassExW(&windowClass);
  return CreateWindowExW(frame.ExStyle, frame.ClassName, frame.Caption, frame.Style, place.x,
                         place.y, size.cx, size.cy, frame.Owner, frame.Menu, windowClass.hInstance,
                         this) != nullptr;
}

void THostWindow::DestroyHandle() {
  if (FHandle) DestroyWindow(FHandle);
}

LRESULT CALLBACK THostWindow::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    auto* made =
        static_cast<THostWindow*>(reinterpret_cast<const CREATESTRUCTW*>(lParam)->lpCreateParams);
    made->FHandle = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(made));
  }
  auto* self = reinterpret_cast<THostWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (!self) return DefWindowProcW(window, message, wParam, lParam);
  const LRESULT result = self->HandleMessage(message, wParam, lParam);
  if (message == WM_NCDESTROY) self->FHandle = nullptr;
  return result;
}
