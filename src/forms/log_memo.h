#pragma once

#include <chrono>

#include "forms/memo.h"
#include "forms/rules/burst_budget.h"

/// A memo that lines are added to by the hundred thousand.
///
/// A line is on the screen when AddLine returns, so that the last ones before a hang are there to
/// be read. The native control takes longer for each line the more it holds, so lines of a flood
/// wait, and go in together: as soon as one tenth of the time is enough for it, and before anyone
/// reads the text. The newest line stays in view unless the user scrolled back, also in a control
/// that gets another size. When the text outgrows what the control takes, or 16 million characters,
/// the older half goes.
class TLogMemo : public TMemo {
 public:
  using TMemo::TMemo;

  /// Adds a line after the last.
  void AddLine(std::string_view line);
  void SetText(std::string_view text) override;

 protected:
  LRESULT WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  using TClock = std::chrono::steady_clock;
  struct TView;

  void Refresh();
  void Append(std::wstring_view lines);
  /// Drops the oldest lines, that number of characters at least.
  void DropOldest(std::size_t length, TView& view);
  TView View() const;
  void Restore(const TView& view);
  /// Whether the last line is in view.
  bool FollowsEnd() const;
  void ScrollToEnd() const;
  int VisibleLines() const;
  void ScrollToLine(int line) const;
  std::size_t Length() const;
  std::size_t Limit() const;
  int Line(UINT message, std::size_t argument = 0) const;

  std::wstring FPending;  ///< each line with its end
  TBurstBudget FBudget;
  bool FTimerRuns = false;
};
