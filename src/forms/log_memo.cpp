#include "forms/log_memo.h"

#include <algorithm>
#include <utility>

#include "platform/code_page.h"
#include "platform/handle.h"

namespace {

constexpr UINT_PTR kRefreshTimer = 1;
constexpr std::size_t kMostPending = 1 << 20;
constexpr std::size_t kMostText = 16 << 20;
constexpr std::wstring_view kLineEnd = L"\r\n";

/// Messages that read the text, or that move about in it.
bool NeedsWholeText(UINT message) {
  return message == WM_GETTEXT || message == WM_GETTEXTLENGTH || message == WM_COPY ||
         message == WM_KEYDOWN || message == WM_CHAR || message == WM_LBUTTONDOWN ||
         (message >= EM_GETSEL && message <= EM_GETIMESTATUS);
}

/// The newest of these lines that fit.
std::wstring_view Newest(std::wstring_view lines, std::size_t room) {
  if (lines.size() <= room) return lines;
  lines.remove_prefix(lines.size() - room);
  // Of a line that does not fit by itself, its end.
  const auto next = lines.find(kLineEnd) + kLineEnd.size();
  if (next < lines.size()) lines.remove_prefix(next);
  return lines;
}

}  // namespace

/// What the user sees and has selected.
struct TLogMemo::TView {
  bool Following;
  int FirstLine;
  int Column;  ///< in the units of the scroll bar
  std::size_t SelectionStart;
  std::size_t SelectionEnd;
  bool CaretAtEnd;
};

void TLogMemo::AddLine(std::string_view line) {
  FPending += WithLineEnds(ToWide(line));
  FPending += kLineEnd;
  const auto wait = std::chrono::ceil<std::chrono::milliseconds>(FBudget.Next() - TClock::now());
  if (wait.count() <= 0 || FPending.size() > kMostPending) {
    Refresh();
  } else if (!FTimerRuns) {
    FTimerRuns = SetTimer(Handle(), kRefreshTimer, static_cast<UINT>(wait.count()), nullptr) != 0;
  }
}

void TLogMemo::SetText(std::string_view text) {
  FPending.clear();
  TMemo::SetText(text);
}

LRESULT TLogMemo::WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (NeedsWholeText(message)) Refresh();
  if (message == WM_SIZE || message == WM_SETFONT) {
    // What fits now is not what will fit: a smaller control would leave the end out of view.
    const bool following = FollowsEnd();
    const LRESULT result = TMemo::WindowProc(window, message, wParam, lParam);
    if (following) ScrollToEnd();
    return result;
  }
  if (message == WM_TIMER && wParam == kRefreshTimer) {
    Refresh();
    return 0;
  }
  const auto code = LOWORD(wParam);
  if (message == WM_VSCROLL && (code == SB_THUMBTRACK || code == SB_THUMBPOSITION)) {
    // The message has room for 16 bits of the position only.
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_TRACKPOS;
    GetScrollInfo(window, SB_VERT, &info);
    const int given = HIWORD(wParam);
    ScrollToLine(LOWORD(info.nTrackPos) == given ? info.nTrackPos : given);
    return 0;
  }
  return TMemo::WindowProc(window, message, wParam, lParam);
}

void TLogMemo::Refresh() {
  if (FTimerRuns) KillTimer(Handle(), kRefreshTimer);
  FTimerRuns = false;
  if (FPending.empty()) return;
  const auto start = TClock::now();
  // Taken first: what follows sends messages that come by here again.
  const std::wstring lines = std::exchange(FPending, {});
  Send(WM_SETREDRAW, FALSE);
  Append(lines);
  Send(WM_SETREDRAW, TRUE);
  // A host that traces what it does is often too busy to paint.
  RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_UPDATENOW);
  FBudget.Spend(start, TClock::now());
}

void TLogMemo::Append(std::wstring_view lines) {
  TView view = View();
  const std::size_t limit = Limit();
  lines = Newest(lines, limit / 2);
  if (Length() + lines.size() > limit) DropOldest(Length() + lines.size() - limit / 2, view);
  std::wstring text;
  if (Send(EM_LINELENGTH, Length()) != 0) text = kLineEnd;
  text += lines;
  text.resize(text.size() - kLineEnd.size());
  for (int attempt = 0; attempt < 2; ++attempt) {
    const std::size_t before = Length();
    Send(EM_SETSEL, before, static_cast<LPARAM>(before));
    Send(EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(text.c_str()));
    if (Length() > before) break;
    // Short of memory.
    DropOldest(before / 2, view);
  }
  Restore(view);
}

void TLogMemo::DropOldest(std::size_t length, TView& view) {
  int lines = Line(EM_GETLINECOUNT);
  std::size_t gone = Length();
  if (length < gone && Line(EM_LINEFROMCHAR, length) + 1 < lines) {
    lines = Line(EM_LINEFROMCHAR, length) + 1;
    gone = static_cast<std::size_t>(Line(EM_LINEINDEX, static_cast<std::size_t>(lines)));
  }
  Send(EM_SETSEL, 0, static_cast<LPARAM>(gone));
  Send(EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(L""));
  view.FirstLine = std::max(view.FirstLine - lines, 0);
  view.SelectionStart -= std::min(view.SelectionStart, gone);
  view.SelectionEnd -= std::min(view.SelectionEnd, gone);
}

TLogMemo::TView TLogMemo::View() const {
  DWORD start = 0;
  DWORD end = 0;
  Send(EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  const bool caretAtEnd = start == end && end == Length();
  const int column = GetScrollPos(Handle(), SB_HORZ);
  return {FollowsEnd(), Line(EM_GETFIRSTVISIBLELINE), column, start, end, caretAtEnd};
}

void TLogMemo::Restore(const TView& view) {
  if (!view.CaretAtEnd) {
    Send(EM_SETSEL, view.SelectionStart, static_cast<LPARAM>(view.SelectionEnd));
  }
  // The caret at the end of a long line drew the view to the right.
  if (GetScrollPos(Handle(), SB_HORZ) != view.Column) {
    Send(WM_HSCROLL, MAKEWPARAM(SB_THUMBPOSITION, view.Column));
  }
  if (view.Following) {
    ScrollToEnd();
  } else {
    ScrollToLine(view.FirstLine);
  }
}

bool TLogMemo::FollowsEnd() const {
  return Line(EM_GETFIRSTVISIBLELINE) + VisibleLines() >= Line(EM_GETLINECOUNT);
}

void TLogMemo::ScrollToEnd() const {
  ScrollToLine(std::max(Line(EM_GETLINECOUNT) - VisibleLines(), 0));
}

int TLogMemo::VisibleLines() const {
  RECT text{};
  Send(EM_GETRECT, 0, reinterpret_cast<LPARAM>(&text));
  const TWindowDc dc(Handle());
  const HGDIOBJ before = SelectObject(dc.Get(), reinterpret_cast<HFONT>(Send(WM_GETFONT)));
  TEXTMETRICW metrics{};
  GetTextMetricsW(dc.Get(), &metrics);
  SelectObject(dc.Get(), before);
  return std::max(static_cast<int>((text.bottom - text.top) / std::max(metrics.tmHeight, 1L)), 1);
}

void TLogMemo::ScrollToLine(int line) const {
  Send(EM_LINESCROLL, 0, line - Line(EM_GETFIRSTVISIBLELINE));
}

std::size_t TLogMemo::Length() const {
  return static_cast<std::size_t>(GetWindowTextLengthW(Handle()));
}

std::size_t TLogMemo::Limit() const {
  return std::min(static_cast<std::size_t>(Send(EM_GETLIMITTEXT)), kMostText);
}

int TLogMemo::Line(UINT message, std::size_t argument) const {
  return static_cast<int>(Send(message, argument));
}
