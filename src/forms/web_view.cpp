#include "forms/web_view.h"

#include <windows.h>

#include <commctrl.h>

TControl::TWindowParams TWebView::WindowParams() const {
  return {WC_STATICW, WS_CLIPCHILDREN | TabStopStyle(), WS_EX_CLIENTEDGE};
}

void TWebView::Created() {
  FWeb = std::make_unique<TWebControl>(Handle());
  // Nothing to stop at.
  if (!FWeb->Usable()) SetEnabled(false);
}

void TWebView::Navigate(std::string_view address) {
  if (FWeb) FWeb->Navigate(address);
}

bool TWebView::TranslateKey(const MSG& message) {
  // Escape and what is typed with Alt are the dialog's.
  return message.message == WM_KEYDOWN && message.wParam != VK_ESCAPE && FWeb &&
         FWeb->TranslateKey(&message);
}

LRESULT TWebView::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_SETFOCUS: {
      const LRESULT result = TControl::WindowProc(window, message, wParam, lParam);
      if (FWeb) FWeb->Activate();
      return result;
    }
    case WM_SIZE:
      if (FWeb) FWeb->Resize();
      break;
    case WM_DESTROY:
      FWeb.reset();
      break;
    default:
      break;
  }
  return TControl::WindowProc(window, message, wParam, lParam);
}
