#pragma once

#include <memory>
#include <string_view>

/// The system's web browser control, filling a window of ours. Loaded on first use.
///
/// It is silent: no script error, message, menu, new window or file download of a page reaches the
/// user, and it takes no dropped files. It goes to pages of the web only (http:, https:), and shows
/// them in its oldest mode unless they ask for the newest (X-UA-Compatible, IE=edge). What it
/// divides by zero does not reach the host. User-interface thread only.
class TWebControl {
 public:
  /// The window (an HWND) to fill; it outlives this object.
  explicit TWebControl(void* window);
  TWebControl(const TWebControl&) = delete;
  TWebControl& operator=(const TWebControl&) = delete;
  ~TWebControl();

  /// False on a machine without such a control; all else does nothing then.
  bool Usable() const { return FBrowser != nullptr; }
  /// Shows a page, without an entry in the history. The address is in the ANSI code page, blanks
  /// around it ignored; nothing is shown when it is no page of the web.
  void Navigate(std::string_view address);
  /// Fills the window again after its size has changed.
  void Resize();
  /// Gives the page the focus.
  void Activate();
  /// Offers the page a key (a MSG); true when it took it.
  bool TranslateKey(const void* message);

 private:
  class TBrowser;
  std::unique_ptr<TBrowser> FBrowser;
};
