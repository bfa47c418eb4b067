#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "call_log.h"
#include "command_line.h"
#include "library.h"
#include "macros.h"
#include "script_editor.h"
#include "update_check.h"

/// The program's window: the macros in tabs, the script editor, the calls made to the library and a
/// status bar.
class TMainWindow {
 public:
  explicit TMainWindow(TCallLog& log) : FLog(log), FLibrary(log), FUpdate(FLibrary) {}

  /// False when the window cannot be made.
  bool Create(const TCommandLine& commandLine, int show);
  HWND Handle() const { return FHandle; }
  HACCEL Accelerators() const { return FAccelerators; }

 private:
  struct TCommand;
  struct TMenu;
  static const TMenu Menus[4];

  static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT Notified(const NMHDR& notice);
  bool CreateControls();
  void CreateMenus();
  void LoadLibraryBesideProgram();
  void Arrange();
  int Scale(int pixels) const;

  void ShowMacro(int index);
  void ShowPosition();
  void Tell(const std::wstring& message);
  void RunCommand(int id);
  bool Available(const TCommand& command) const;

  void Quit();
  void RunAssistant();
  void RunConstants();
  void RunTypes();
  void ClearLog();
  void CheckForUpdate();
  void FollowUpdate();
  void ShowAbout();

  std::string AnsiTypes() const;
  void KeepNewTypes();

  HWND FHandle = nullptr;
  HWND FTabs = nullptr;
  HWND FCallsLabel = nullptr;
  HWND FCalls = nullptr;
  HWND FStatus = nullptr;
  HFONT FFont = nullptr;
  HACCEL FAccelerators = nullptr;
  int FDpi = 96;
  TCallLog& FLog;
  TLibrary FLibrary;
  TUpdateCheck FUpdate;
  TScriptEditor FEditor;
  std::vector<TMacro> FMacros;
  int FMacro = -1;
};
