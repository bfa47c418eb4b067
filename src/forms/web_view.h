#pragma once

#include <memory>

#include "forms/control.h"
#include "platform/web_control.h"

/// A web page, shown by the system's browser control; an empty frame on a machine without one.
class TWebView : public TControl {
 public:
  using TControl::TControl;

  /// The address is in the ANSI code page. Failures show in the page, if at all.
  void Navigate(std::string_view address);

  bool TranslateKey(const MSG& message) override;

 protected:
  TWindowParams WindowParams() const override;
  void Created() override;
  LRESULT WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  std::unique_ptr<TWebControl> FWeb;
};
