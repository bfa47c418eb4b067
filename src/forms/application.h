#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

class TForm;

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

  /// The live form behind a handle given by the host, or null for anything else; the handle is
  /// compared, never dereferenced.
  TForm* FindForm(const void* handle) const;
  /// The live form whose window this is, or null.
  TForm* FindForm(HWND window) const;
  const std::vector<TForm*>& Forms() const { return FForms; }

  /// Destroys a form, at once or, while code of the library is still on the stack, when the last of
  /// it has returned. The form is closed and no longer live from this call on.
  void Retire(std::unique_ptr<TForm> form);

  /// Forms that the host holds by their handles, until it gives them back or their owner, if any,
  /// is destroyed.
  TForm& Keep(std::unique_ptr<TForm> form, const TForm* owner = nullptr);
  /// Out of that keeping; null when the form was not in it.
  std::unique_ptr<TForm> Take(const TForm& form);
  /// Destroys what the host never gave back.
  void ReleaseHostForms();

  /// Asks the help system: WinHelp with the main window and the help file.
  void HelpCommand(UINT command, ULONG_PTR data) const;

 private:
  friend class TForm;
  friend class TCallScope;

  HWND FHandle = nullptr;
  std::string FHelpFile;
  std::vector<TForm*> FForms;
  std::vector<TForm*> FModalForms;  ///< in the order their modal runs began
  struct THostForm {
    std::unique_ptr<TForm> Form;
    const TForm* Owner;
  };

  void ReleaseOwnedBy(const TForm& owner);

  std::vector<THostForm> FHostForms;
  std::vector<std::unique_ptr<TForm>> FRetired;
  int FCallDepth = 0;
};

TApplication& Application();

/// Stands around every entry into the library: exports and window procedures. Retired forms are
/// destroyed when the outermost one ends.
class TCallScope {
 public:
  TCallScope();
  TCallScope(const TCallScope&) = delete;
  TCallScope& operator=(const TCallScope&) = delete;
  ~TCallScope();
};
