#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "forms/component.h"
#include "forms/rules/arrangement.h"
#include "forms/rules/layout.h"

class TForm;

/// A native child window of a form: its layout, its state, its events.
///
/// Texts are in the host's ANSI code page unless a name says otherwise. Setting a text or a
/// selection from code raises OnChange only where a kind says so. User-interface thread only,
/// except that a progress bar's position may be set from a worker.
class TControl : public TComponent {
 public:
  TControl(TForm& form, const TLayoutItem& layout);
  ~TControl() override;

  HWND Handle() const { return FHandle; }
  TForm& Form() const { return FForm; }

  virtual std::string Text() const;
  virtual void SetText(std::string_view text);
  /// For our own French texts.
  virtual void SetTextUtf8(std::string_view text);

  bool Enabled() const;
  /// A focused control that is disabled gives the focus to the next one in tab order.
  void SetEnabled(bool enabled);
  bool Visible() const;
  virtual void SetVisible(bool visible);
  bool CanFocus() const;
  /// Gives the control the focus; while the form is hidden, marks it as the one to get it.
  void SetFocus();
  /// The control, or a window inside it, has the focus.
  bool Focused() const;

  /// In the form's client coordinates, device pixels.
  RECT Bounds() const;
  virtual void SetBounds(const RECT& bounds);
  int Left() const { return Bounds().left; }
  int Top() const { return Bounds().top; }
  int Height() const { return Bounds().bottom - Bounds().top; }

  const std::wstring& HintWide() const { return FHint; }
  int HelpContext() const { return FHelpContext; }

  /// Background, as a COLOR_ constant of the system.
  void SetColor(int systemColor);
  /// The pointer over the control: a system cursor (IDC_HAND), or null for the kind's own.
  void SetCursor(LPCWSTR cursor) { FCursor = cursor; }

  TNotifyEvent OnClick;
  TNotifyEvent OnDblClick;
  TNotifyEvent OnChange;
  TNotifyEvent OnEnter;
  TNotifyEvent OnExit;

  // ---- for the form and the loader ----

  /// Makes the window; bounds are in device pixels.
  void Create(const RECT& bounds, HFONT font);
  /// Notification code of a WM_COMMAND from this control.
  virtual void HandleCommand(WORD /*code*/) {}
  /// WM_NOTIFY from this control; true when the result is set.
  virtual bool HandleNotify(const NMHDR& /*header*/, LRESULT& /*result*/) { return false; }
  /// WM_HSCROLL or WM_VSCROLL from this control.
  virtual void HandleScroll() {}
  /// A key for a window of this control in a modal form, before the form looks at it; true when it
  /// is used up.
  virtual bool TranslateKey(const MSG& /*message*/) { return false; }
  /// WM_DRAWITEM for this control.
  virtual void Draw(const DRAWITEMSTRUCT& /*item*/) const {}
  virtual void SetFont(HFONT font);
  /// Called when the form's DPI changed, after font and bounds.
  virtual void DpiChanged(int /*dpi*/) {}
  /// The event slot behind an event property, or null when the kind has no such event.
  virtual TNotifyEvent* FindEvent(std::string_view property);
  /// True when that window is this control's, or one of several that make it up.
  virtual bool Owns(HWND window) const;
  int Color() const { return FColor; }
  const TLayoutItem& Layout() const { return FLayout; }
  const TAnchors& Anchors() const { return FAnchors; }
  int TabOrder() const;
  /// True when a screen reader hears the control's own text as its name.
  virtual bool NamesItself() const { return false; }
  /// The whole text of what is cut short at that place of the client area, or empty.
  virtual std::wstring CutText(POINT /*at*/) const { return {}; }

 protected:
  struct TWindowParams {
    LPCWSTR ClassName = nullptr;
    DWORD Style = 0;
    DWORD ExStyle = 0;
  };
  virtual TWindowParams WindowParams() const = 0;
  /// Called once the window is there, with the font set.
  virtual void Created() {}
  virtual void EnableWindows(bool enabled);
  /// Messages on their way to a native window of this control.
  virtual LRESULT WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  bool HasFlag(std::string_view property) const { return FLayout.Find(property) != nullptr; }
  /// First value of a property, or the fallback when it is not given.
  std::string Word(std::string_view property, std::string_view fallback) const;
  int Number(std::string_view property, int fallback) const;
  DWORD TabStopStyle() const { return HasFlag("no-tab-stop") ? 0 : WS_TABSTOP; }
  DWORD ScrollStyle() const;

  static void Raise(const TNotifyEvent& event) {
    if (event) event();
  }
  /// Passes the messages of a window inside this control through WindowProc.
  void Attach(HWND window);
  /// Gives a window the name by which tools and tests find it; taken back by WindowProc.
  static void SetWindowName(HWND window, const std::string& name);
  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendMessageW(FHandle, message, wParam, lParam);
  }

 private:
  static LRESULT CALLBACK AttachedProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  TForm& FForm;
  TLayoutItem FLayout;
  HWND FHandle = nullptr;
  std::wstring FHint;
  int FHelpContext = 0;
  TAnchors FAnchors;
  int FColor = -1;
  LPCWSTR FCursor = nullptr;
};

/// Text of any window, in the ANSI code page.
std::string WindowText(HWND window);
std::wstring WindowTextWide(HWND window);
