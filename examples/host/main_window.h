#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "call_log.h"
#include "command_line.h"
#include "entries_window.h"
#include "guest_window.h"
#include "host_window.h"
#include "library.h"
#include "macros.h"
#include "script_editor.h"
#include "script_help.h"
#include "update_check.h"

/// The program's window: the macros in tabs, the script editor, the calls made to the library and a
/// status bar.
class TMainWindow final : public THostWindow {
 public:
  explicit TMainWindow(TCallLog& log) : FLog(log), FLibrary(log), FUpdate(FLibrary) {}

  /// False when the window cannot be made.
  bool Create(const TCommandLine& commandLine, int show);
  HACCEL Accelerators() const { return FAccelerators; }

 private:
  struct TCommand;
  struct TMenu;
  static const TMenu Menus[5];

  LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  LRESULT Notified(const NMHDR& notice);
  bool CreateControls();
  void CreateMenus();
  void LoadLibraryBesideProgram();
  void Arrange();

  void ShowMacro(int index);
  void ShowTitle();
  void ShowPosition();
  void Tell(const std::wstring& message);
  void RunCommand(int id);
  bool Available(const TCommand& command) const;

  void Quit();
  void RunDirectories();
  /// The default accounts directory, or the one that the user chooses from the list.
  void OpenDirectory(bool showList);
  void RunAssistant();
  void RunConstants();
  void RunTypes();
  void RunModalDialog();
  void OpenDialog();
  void OpenView();
  void OpenGuest(std::unique_ptr<TGuestWindow>& window, TGuestWindow::TGuest guest);
  void ShowWordHelp(const std::wstring& name, POINT below);
  void HideWordHelp();
  void FilterEntries();
  void SwitchTrace();
  void ClearLog();
  void CheckForUpdate();
  void FollowUpdate();
  void ShowFirstSteps();
  void ShowAbout();

  std::string AnsiTypes() const;
  void KeepNewTypes();

  HWND FTabs = nullptr;
  HWND FCallsLabel = nullptr;
  HWND FCalls = nullptr;
  HWND FStatus = nullptr;
  HFONT FFont = nullptr;
  HACCEL FAccelerators = nullptr;
  TCallLog& FLog;
  TLibrary FLibrary;
  TUpdateCheck FUpdate;
  TScriptEditor FEditor;
  std::vector<TMacro> FMacros;
  int FMacro = -1;
  std::unique_ptr<TGuestWindow> FViewWindow;
  std::unique_ptr<TGuestWindow> FDialogWindow;
  std::unique_ptr<TEntriesWindow> FEntries;
  std::unique_ptr<TScriptHelp> FHelp;  ///< read when the mouse first rests on a name
  HWND FBubbleOwner = nullptr;
  bool FTracing = false;
};
