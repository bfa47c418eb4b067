#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

struct IShellFolder;

/// The shell's folder picker. Texts and paths are in the host's ANSI code page; a path that it
/// cannot carry is given in its short form when there is one. User-interface thread only.
class TFolderPicker {
 public:
  struct TRequest {
    void* Owner = nullptr;  ///< window, may be null
    std::string Title;      ///< above the tree
    std::uint32_t Flags = 0;
    std::string RootPath;   ///< where the tree starts; when empty or not there:
    int SpecialFolder = 0;  ///< the shell's number of a folder, 0 the desktop
  };
  /// Each may be empty; they are raised while Run runs.
  struct TEvents {
    std::function<void()> Initialized;
    /// The folder's path, or the display name of one that has none.
    std::function<void(const std::string& folder)> SelectionChanged;
    /// The user typed a name that is no folder; true keeps the picker open.
    std::function<bool(const std::string& typed)> WrongName;
    /// The picker is about to leave the screen.
    std::function<void()> Closing;
  };

  TFolderPicker() = default;
  TFolderPicker(const TFolderPicker&) = delete;
  TFolderPicker& operator=(const TFolderPicker&) = delete;

  /// Runs until the user has chosen; the chosen path, or nothing when there is none.
  std::optional<std::string> Run(const TRequest& request, TEvents events);

  /// Between its first event and the end of Run; the others do nothing at other times.
  bool Open() const { return FWindow != nullptr; }
  std::string Caption() const;
  void SetCaption(const std::string& caption);
  void SetSelection(const std::string& folder);
  void SetStatusText(const std::string& text);
  void EnableOk(bool enabled);
  /// As the user's Cancel, once the picker gets to it.
  void Cancel();

 private:
  struct TShell;
  class TShowing;
  struct TCallbacks;

  void Select(const std::wstring& folder);
  void Selected(const std::string& folder);

  void* FWindow = nullptr;
  std::wstring FSelection;  ///< what was to be selected last while it is open
  bool FReached = false;    ///< it has been
  const TShell* FShell = nullptr;
  TEvents FEvents;
};

/// Major version of the shell in the high half, minor in the low half; 0 when it does not tell.
std::uint32_t ShellVersion();
