#include "directories/bffolder.h"

#include <optional>

#include "forms/application.h"
#include "forms/modal_world.h"
#include "platform/floating_point.h"

TBffolder::TBffolder(std::string name)
    : TComponent(std::move(name)), FShellVersion(ShellVersion()) {}

bool TBffolder::Execute() {
  if (FRunning) return false;
  TFolderPicker::TRequest request;
  request.Owner = Application().MainWindow();
  request.Title = FTitle;
  request.Flags = FolderPickerFlags(FOptions, FShellVersion);
  request.SpecialFolder = SpecialFolder(FRootDir).value_or(0);
  if (FRootDir == TBffRootDir::rdUseSelectedDir) request.RootPath = FSelectedDir;

  // The owner is not the dialog that the picker serves: that one must not take input either.
  std::optional<TModalWorld> world(std::in_place, nullptr);
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
  events.Closing = [&world] { world.reset(); };

  FRunning = true;
  const TFloatingPointMasks masks;
  const auto chosen = FPicker.Run(request, std::move(events));
  FRunning = false;
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
