#pragma once

#include <windows.h>

#include <optional>

#include "forms/modal_world.h"
#include "platform/floating_point.h"
#include "platform/unwind_notice.h"

class TForm;

/// One modal run of a form, for as long as it lives: the form is modal, the thread's other windows
/// are disabled, the host's mouse capture is released, floating-point exceptions are masked and the
/// library is held in memory. The end, however it comes (an exception of ours or of the host's
/// included), puts all of it back, hides the form, and gives activation and focus back to where
/// they were.
class TModalRun {
 public:
  /// The form has a window and is not modal.
  explicit TModalRun(TForm& form);
  TModalRun(const TModalRun&) = delete;
  TModalRun& operator=(const TModalRun&) = delete;
  ~TModalRun() { End(); }

  TForm& Form() const { return FForm; }
  /// Ends the run as soon as it gets the word: used when the form is freed under its caller. A
  /// message box that the form asks by is taken away, or the run would wait for its answer.
  void Abandon();
  /// Shows the form and serves messages until it has a modal result and its close query agrees, or
  /// the run is abandoned.
  void Run();

 private:
  void Serve();
  void End();

  std::optional<TFloatingPointMasks> FMasks{std::in_place};
  TForm& FForm;
  HWND FFocus;
  bool FAbandoned = false;
  bool FEnded = false;
  std::optional<TModalWorld> FWorld;
  TUnwindNotice FNotice{[](void* self) { static_cast<TModalRun*>(self)->End(); }, this};
};
