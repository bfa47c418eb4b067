#include "directories/bffolder.h"

#include <optional>

#include "forms/application.h"
#include "forms/modal_world.h"
#include "forms/while_set.h"
#include "platform/floating_point.h"
#include "platform/unwind_notice.h"

TBffolder::TBffolder(std::string name)
    : TComponent(std::move(name)), FShellVersion(ShellVersion()) {}

/// What an execution changes around it.
class TBffolder::TExecution {
 public:
  explicit TExecution(bool& running) : FRunning(running) {}
  TExecution(const TExecution&) = delete;
  TExecution& operator=(const TExecution&) = delete;
  ~TExecution() { End(); }

  void LeaveWorld() { FWorld.reset(); }

 private:
  void End() {
    LeaveWorld();
    FMasks.reset();
  }

  TWhileSet<bool> FRunning;
  // The owner is not the dialog that the picker serves: that one must not take input either.
  std::optional<TModalWorld> FWorld{std::in_place, nullptr};
  std::optional<TFloatingPointMasks> FMasks{std::in_place};
  TUnwindNotice FNotice{[](void* self) { static_cast<TExecution*>(self)->End(); }, this};
};

bool TBffolder::Execute() {
  if (FRunning) return false;
  TFolderPicker::TRequest request;
  request.Owner = Application().MainWindow();
  request.Title = FTitle;
  request.Flags = FolderPickerFlags(FOptions, FShellVersion);
  request.SpecialFolder = SpecialFolder(FRootDir).value_or(0);
  if (FRootDir == TBffRootDir::rdUseSelectedDir) request.RootPath = FSelectedDir;

  std::optional<TExecution> execution(std::in_place, FRunning);
  TFolderPicker::TEvents events;
  events.Initialized = [this] { Initialized(); };
  events.SelectionChanged = OnSelectionChanged;
  if (OnValidateFailed && ReportsWrongNames(FShellVersion)) {
    events.WrongName = [this](const std::string& typed) {
      bool goOn = false;
      OnValidateFailed(typed, goOn);
      return goOn;
    };
  }
  events.Closing = [&execution] { execution->LeaveWorld(); };
  const auto chosen = FPicker.Run(request, std::move(events));
  execution.reset();
  if (!chosen) return false;
  FSelectedDir = *chosen;
  return true;
}

void TBffolder::Initialized() {
  if (!FCaption.empty()) FPicker.SetCaption(FCaption);
  FPicker.SetStatusText(FStatusText);
  if (!FSelectedDir.empty()) FPicker.SetSelection(FSelectedDir);
  FPicker.EnableOk(FEnableOK);
  if (OnInitialized) OnInitialized();
}

void TBffolder::SetSelectedDir(const std::string& folder) {
  FSelectedDir = WithoutEndSlash(folder);
  FPicker.SetSelection(FSelectedDir);
}

const std::string& TBffolder::Caption() {
  if (FCaption.empty() && FPicker.Open()) FCaption = FPicker.Caption();
  return FCaption;
}

void TBffolder::SetCaption(const std::string& caption) {
  if (caption.empty()) return;
  FCaption = caption;
  FPicker.SetCaption(caption);
}

void TBffolder::SetStatusText(const std::string& text) {
  FStatusText = text;
  FPicker.SetStatusText(text);
}

void TBffolder::SetEnableOK(bool enabled) {
  FEnableOK = enabled;
  FPicker.EnableOk(enabled);
}
