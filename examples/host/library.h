#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "call_log.h"
#include "zefext_load.h"

/// zefext.dll, loaded by name so that the program also runs without it. Texts are ANSI.
class TLibrary {
 public:
  explicit TLibrary(TCallLog& log) : FLog(log) {}
  ~TLibrary() { Unload(); }
  TLibrary(const TLibrary&) = delete;
  TLibrary& operator=(const TLibrary&) = delete;

  /// Loads the library and gives it its owner window and help file. The result names what is
  /// missing, the file or one of its functions; it is empty when all is there.
  std::string Load(const std::wstring& file, HWND mainWindow, const std::string& helpFile);
  /// Call while the main window exists: the library's own windows belong to it.
  void Unload();

  /// While it is not, the services do nothing.
  bool Loaded() const { return FZef.Module != nullptr; }
  /// Whether one of its dialogs is open; the library must not be unloaded then.
  bool Busy() const { return FRunning > 0; }

  struct TDirectoryChoice {
    bool Changed = false;  ///< the current directory is another one now
    bool Cancelled = false;
  };
  /// Opens the default accounts directory, without a window when there is one, or shows the list.
  TDirectoryChoice SelectDirectory(bool showList);

  unsigned long Version();
  bool IsMethod(const std::string& word);
  bool IsConstant(const std::string& word);

  /// Returns the rewritten line, or the line itself when the user cancelled. The cursor counts
  /// bytes.
  std::string SyntaxHelpBox(const std::string& line, int& cursor, const std::string& types);
  std::string SyntaxConstHelpBox(const std::string& text);
  std::string SyntaxTypesBox(const std::string& types);
  /// The variable types as the last dialog changed them, or nothing when it did not.
  std::optional<std::string> SyntaxNewTypes();

  bool InvokeModalDialog();
  /// A dialog inside the parent; null when there is none.
  ZefDialog OpenDialog(HWND parent);
  void FreeDialog(ZefDialog dialog);
  /// A view inside the parent, still hidden, and its handle; it goes with the parent.
  HWND CreateView(HWND parent, ZefDialog& view);
  void GiveToView(ZefDialog view, IExClass1* services);
  void ShowView(ZefDialog view);
  bool ViewChanged(ZefDialog view);
  void ClearViewChanged(ZefDialog view);

  /// The type, card or cheque book that the user chose; nothing when the filter is to go.
  std::optional<std::string> SelectTypOp(const std::vector<std::string>& types,
                                         const std::vector<std::string>& cards,
                                         const std::string& selection);

  /// A setting of the current user; empty when there is none or it is longer than a line.
  std::string Setting(const std::string& name);
  void KeepSetting(const std::string& name, const std::string& value);

  void ShowHint(HWND owner, const std::string& text, POINT place, int maxWidth);
  /// Not in the log of calls, whose lines it shows.
  void ShowDebugText(const std::string& text);

  /// 1: download now; 0: not now; -1: never this version.
  int AskForDownload(const std::string& current, const std::string& offered,
                     const std::string& information);
  /// A download window, or null; the host's until the command that destroys it.
  ZefDialog NewUrl();
  /// False when the library refuses the command.
  bool CmdUrl(ZefDialog dialog, signed char command, const std::string& text = {},
              int* value = nullptr);
  std::string Md5(const std::string& text);

 private:
  ZefStringList NewList(const std::vector<std::string>& lines);
  void FreeList(ZefStringList list);
  void Prepared(const std::wstring& call);

  TCallLog& FLog;
  ZefExt FZef{};
  int FRunning = 0;
};
