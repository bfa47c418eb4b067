#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "forms/application.h"
#include "forms/control.h"
#include "forms/form_binder.h"
#include "forms/form_placement.h"
#include "forms/form_tips.h"
#include "platform/handle.h"

/// Modal results, as the buttons of a layout name them by number.
enum TModalResult { mrNone = 0, mrOk = 1, mrCancel = 2 };

class TButton;
class TModalRun;

/// A window described by the layout resource of its class. Its window class bears the class's name.
///
/// Made by CreateForm, which builds the object, loads its layout and makes its windows (hidden),
/// then calls InitDialog. When the system destroys the window under it (the host destroyed its
/// owner), the object lives on without one: HasWindow tells. User-interface thread only.
class TForm : public TComponent {
 public:
  /// With a parent window, the form is a child of that window; else the host's main window owns it.
  explicit TForm(HWND parentWindow = nullptr) : FParentWindow(parentWindow) {
    Application().FForms.push_back(this);
  }
  ~TForm() override;

  /// What the host knows the form by while Application().Keep holds it: a number that no other form
  /// ever gets. Null before.
  void* HostHandle() const { return FHostHandle; }

  virtual const char* ClassName() const = 0;

  HWND Handle() const { return FHandle; }
  bool HasWindow() const { return FHandle != nullptr; }

  // ---- running ----

  /// Runs the form until its modal result is set and its close query agrees; the other windows of
  /// the thread are disabled meanwhile. Returns the result; mrCancel when the window is destroyed,
  /// the program quits or the library is freed under it.
  int ShowModal();
  /// A form that is shown anew gets the focus if the user can see it. It stands in the middle the
  /// first time, and always when it is modal; else where the user left it.
  void Show();
  /// The focus, if the form has it, goes back to where it came from.
  void Hide();
  /// As the close box: cancels when modal, else hides if the close query agrees.
  void Close();
  void Minimize() { ShowWindow(FHandle, SW_MINIMIZE); }
  void BringToFront();
  /// On screen, as far as the windows around it are.
  bool Visible() const { return FHandle && IsWindowVisible(FHandle); }
  /// Shown in itself: a window around it may be hidden.
  bool Shown() const;
  bool Modal() const { return FModalRun != nullptr; }

  int ModalResult() const { return FModalResult; }
  void SetModalResult(int result) { FModalResult = result; }

  // ---- properties ----

  void SetCaption(std::string_view text);
  int HelpContext() const { return FHelpContext; }

  const std::string& HelpFile() const { return FHelpFile; }
  void SetHelpFile(std::string_view path) { FHelpFile = path; }

  /// The control that has or is to get the focus; null: the first in tab order.
  void SetActiveControl(TControl* control) { FActiveControl = control; }

  RECT WindowBounds() const;
  SIZE ClientSize() const { return FPlacement.ClientSize(); }
  const TLayoutItem& Layout() const { return FLayout; }
  HFONT Font() const { return FFont.Get(); }
  /// Device pixels for pixels at 96 DPI.
  int Scaled(int pixels) const { return MulDiv(pixels, FDpi, 96); }
  int Dpi() const { return FDpi; }
  /// Controls in the order of the layout.
  const std::vector<TControl*>& Controls() const { return FControls; }
  TControl* FindControl(std::string_view name) const;
  /// True for the dialogs that the form made for itself and adopted.
  bool Owns(const TForm& dialog) const;
  /// The control that this window, or one of its parents, belongs to, or null.
  TControl* FindControl(HWND window) const;
  /// Repaints at once.
  void Update() { UpdateWindow(FHandle); }

  TNotifyEvent OnClick;
  TNotifyEvent OnDblClick;
  TNotifyEvent OnClose;
  TNotifyEvent OnPaint;
  TNotifyEvent OnShow;
  TNotifyEvent OnHide;
  TNotifyEvent OnCreate;
  TFormBinder::TCloseQueryEvent OnCloseQuery;
  TFormBinder::THelpEvent OnHelp;

  /// A help request for this form: its help event first, then, if that asks for it, the help
  /// system. True when the request was dealt with.
  bool Help(UINT command, int data);
  /// Asks the help system for this form: here, with the main window and the main help file.
  virtual void AskHelp(UINT command, int data) const;

  // ---- for CreateForm and the framework ----

  void Load();
  virtual void InitDialog() {}
  /// The pointer is over the form: tips are made now, for most dialogs are used without.
  void PointerArrived();
  /// See TFormTips.
  void ShowTips(const TControl& control) const {
    if (FTips) FTips->Show(control);
  }
  void PointerMoved(const TControl& control, HWND window, POINT at) {
    if (FTips) FTips->PointerMoved(control, window, at);
  }
  /// The control got the focus, from that window or null.
  void ControlFocused(TControl& control, HWND from);
  /// What a key of the dialog would press, or null.
  TButton* DefaultButton() const { return FDefaultButton; }
  TButton* CancelButton() const { return FCancelButton; }
  /// A number that no other control of the form bears.
  int NextControlId() { return FNextControlId++; }
  void SetDefaultButton(TButton& button);
  /// Ends a modal run as soon as it gets the word: used when the form is freed under its caller.
  void Abandon();
  /// The form is no longer live, but calls in progress may put its destruction off: what runs on
  /// its behalf is to stop now.
  virtual void Retired() {}

 protected:
  struct TCreateParams {
    DWORD Style = 0;
    DWORD ExStyle = 0;
    HWND Parent = nullptr;
    bool Centred = true;
  };
  /// Ties the layout to the class; overrides call the inherited one first.
  virtual void Bind(TFormBinder& binder) = 0;
  virtual void CreateParams(TCreateParams& params);
  virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
  /// After the window's final destroy message; the form may retire itself here.
  virtual void WindowDestroyed() {}
  /// After the form's DPI changed: pictures that it made for its controls are to be made anew.
  virtual void DpiChanged() {}
  TControl& Child(std::string_view name) const;
  HWND ParentWindow() const { return FParentWindow; }
  /// Moves a form with a window of its own to where its layout says.
  void Place() {
    if (FCentred) FPlacement.Place();
  }

 private:
  friend class TFormPlacement;
  friend class TModalRun;
  friend class TApplication;
  friend class TFormPin;

  static LRESULT CALLBACK FormProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void CreateFormWindow();
  void CreateControls(const TLayout& layout);
  TNotifyEvent* FindEvent(std::string_view property);
  void BindEvents(const TFormBinder& binder);
  TFontHandle MakeFont() const;
  /// Fonts and pictures follow; places do not.
  void SetDpi(int dpi);
  void FocusFirst(TControl* first);
  void FocusArrived(HWND from);
  bool TranslateKey(const MSG& message) const;
  bool CloseQuery() { return !OnCloseQuery || OnCloseQuery(); }
  bool HandleMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
  void HandleCommand(WPARAM wParam, LPARAM lParam);
  void HandleHelp(const HELPINFO& info);
  bool ControlColor(HDC dc, HWND window, LRESULT& result);
  void WindowGone();
  /// Its window went without a message, with the thread that it belonged to.
  void LoseWindow();
  bool Pinned() const { return FPins > 0; }

  HWND FParentWindow;
  HWND FHandle = nullptr;
  std::optional<TFormTips> FTips;
  TLayoutItem FLayout;
  std::vector<TControl*> FControls;
  TFormPlacement FPlacement{*this};
  bool FCentred = true;
  int FNextControlId = 0;
  bool FPlaced = false;
  bool FActivating = false;
  HWND FFocusBefore = nullptr;  ///< the host's window that the focus last came from
  bool FDying = false;
  int FDpi = 96;
  TFontHandle FFont;
  TControl* FActiveControl = nullptr;
  TControl* FFirstActive = nullptr;
  TControl* FEntered = nullptr;
  TButton* FDefaultButton = nullptr;
  TButton* FCancelButton = nullptr;
  int FHelpContext = 0;
  std::string FHelpFile;
  int FModalResult = mrNone;
  TModalRun* FModalRun = nullptr;
  void* FHostHandle = nullptr;
  int FPins = 0;
};

/// Stands around code that uses a form which that very code may free: it goes only afterwards.
class TFormPin {
 public:
  explicit TFormPin(TForm& form) : FForm(form) { ++FForm.FPins; }
  TFormPin(const TFormPin&) = delete;
  TFormPin& operator=(const TFormPin&) = delete;
  ~TFormPin() { --FForm.FPins; }

 private:
  TForm& FForm;
  TUnwindNotice FNotice{[](void* self) { --static_cast<TFormPin*>(self)->FForm.FPins; }, this};
};

/// Builds a form, loads its layout, makes its windows and lets it initialise itself.
template <class T, class... TArgs>
std::unique_ptr<T> CreateForm(TArgs&&... args) {
  auto form = std::make_unique<T>(std::forward<TArgs>(args)...);
  form->Load();
  form->InitDialog();
  return form;
}
