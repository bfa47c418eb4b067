#pragma once

#include <functional>
#include <string>

#include "directories/rules/folder_picking.h"
#include "forms/component.h"
#include "platform/folder_picker.h"

/// Lets the user choose a folder in the shell's picker. Texts and paths are in the host's ANSI code
/// page. While it is open, what is set shows at once. User-interface thread only.
class TBffolder : public TComponent {
 public:
  explicit TBffolder(std::string name);

  /// Runs the picker, owned by the host's main window; the thread's other windows are disabled
  /// meanwhile. True when the user chose a folder, which is the selected one then. False at once
  /// when it is running already.
  bool Execute();
  /// Ends a running Execute as the user's Cancel does; it returns later.
  void Cancel() { FPicker.Cancel(); }

  /// Shown above the tree.
  void SetTitle(std::string title) { FTitle = std::move(title); }
  void SetOptions(const TBffOptions& options) { FOptions = options; }
  void SetRootDir(TBffRootDir root) { FRootDir = root; }

  /// The folder selected first; the chosen one after Execute.
  const std::string& SelectedDir() const { return FSelectedDir; }
  void SetSelectedDir(const std::string& folder);
  /// The picker's own caption while none has been set.
  const std::string& Caption();
  /// An empty caption is ignored.
  void SetCaption(const std::string& caption);
  /// Shown only with bffStatusText, and not by every shell's newer look.
  const std::string& StatusText() const { return FStatusText; }
  void SetStatusText(const std::string& text);
  bool EnableOK() const { return FEnableOK; }
  void SetEnableOK(bool enabled);

  std::function<void()> OnInitialized;
  /// The path of the folder, or the display name of one that has none.
  std::function<void(const std::string& folder)> OnSelectionChanged;
  /// The user typed a name that is no folder: whether the picker stays open.
  std::function<void(const std::string& typed, bool& goOn)> OnValidateFailed;

 private:
  class TExecution;

  void Initialized();

  std::string FTitle;
  TBffOptions FOptions{TBffOption::bffStatusText};
  TBffRootDir FRootDir = TBffRootDir::rdDesktop;
  std::string FSelectedDir;
  std::string FCaption;
  std::string FStatusText;
  bool FEnableOK = true;
  bool FRunning = false;
  std::uint32_t FShellVersion;
  TFolderPicker FPicker;
};
