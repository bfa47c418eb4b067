#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/module_hold.h"
#include "platform/unwind_notice.h"

class TForm;
class TModalRun;

/// What the forms share as long as the library is loaded: the host's main window, its help file,
/// the live forms. User-interface thread only.
class TApplication {
 public:
  HWND Handle() const { return FHandle; }
  void SetHandle(HWND mainWindow) { FHandle = mainWindow; }
  /// The main window when it still is one, else null.
  HWND MainWindow() const { return IsWindow(FHandle) ? FHandle : nullptr; }

  const std::string& HelpFile() const { return FHelpFile; }
  void SetHelpFile(std::string_view path) { FHelpFile = path; }

  /// The module of this library, for its resources and window classes.
  static HINSTANCE Instance();

  /// Whether a call into the library is on some stack.
  bool InCall() const { return FCallDepth > 0; }

  /// The live form behind a handle given by the host, or null for anything else: freed, foreign and
  /// random ones.
  TForm* FindForm(const void* handle) const;
  /// The live form whose window this is, or null.
  TForm* FindForm(HWND window) const;
  const std::vector<TForm*>& Forms() const { return FForms; }

  /// The window of the dialog whose modal run began last, or null when none runs.
  HWND TopmostModal() const;

  /// Destroys a form, at once or, while code of the library is still on the stack, when the last of
  /// it has returned; forms go in the order in which they came here. The form is closed and no
  /// longer live from this call on.
  void Retire(std::unique_ptr<TForm> form);
  /// The same for a form that is in no use but by those who pin it (TFormPin): it goes as the call
  /// returns from which nobody pins it any more, also within a modal run.
  void RetireHostForm(std::unique_ptr<TForm> form);

  /// Forms that the host holds by their handles, until it gives them back or their owner, if any,
  /// is destroyed.
  TForm& Keep(std::unique_ptr<TForm> form, const TForm* owner = nullptr);
  /// Out of that keeping; null when the form was not in it.
  std::unique_ptr<TForm> Take(const TForm& form);
  /// Destroys what the host never gave back.
  void ReleaseHostForms();

  /// The thread that the windows belonged to has ended, and they with it: no form has a window, no
  /// call is in progress. What holds forms lets them go next.
  void WindowsLost();
  /// As the library is unloaded: whatever calls were cut off by the host, none is in progress.
  void ForgetCalls() { FCallDepth = 0; }

  /// The system unloads the library: what needs another one is out of reach from here on.
  void SetUnloading() { FUnloading = true; }
  bool Unloading() const { return FUnloading; }

  /// Asks for help with the main window and the help file.
  void HelpCommand(UINT command, ULONG_PTR data) const;

 private:
  friend class TForm;
  friend class TCallScope;
  friend class TModalRun;

  struct THostForm {
    std::unique_ptr<TForm> Form;
    const TForm* Owner;
  };
  struct TRetired {
    std::unique_ptr<TForm> Form;
    bool PinsDecide;
  };

  void ReleaseOwnedBy(const TForm& owner);
  bool PutToRest(const std::unique_ptr<TForm>& form);
  void DestroyRetired();

  HWND FHandle = nullptr;
  std::string FHelpFile;
  std::vector<TForm*> FForms;
  std::vector<TModalRun*> FModalRuns;  ///< in the order they began
  std::vector<THostForm> FHostForms;
  std::vector<TRetired> FRetired;
  int FCallDepth = 0;
  std::optional<TModuleHold> FHold;  ///< from the first modal run to the end of the outermost call
  bool FUnloading = false;
};

TApplication& Application();

/// Stands around every entry into the library: exports, whose names reports tell, and window
/// procedures. Retired forms are
/// destroyed when the outermost one ends. One that an exception of the host's cuts off ends as
/// well.
class TCallScope {
 public:
  explicit TCallScope(const char* exportName = nullptr);
  TCallScope(const TCallScope&) = delete;
  TCallScope& operator=(const TCallScope&) = delete;
  ~TCallScope() { Leave(); }

 private:
  void Leave();
  const char* const FCallBefore;
  TUnwindNotice FNotice{[](void* self) { static_cast<TCallScope*>(self)->Leave(); }, this};
};
