#include "forms/form_placement.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

#include "forms/dpi.h"
#include "forms/form.h"
#include "platform/code_page.h"
#include "platform/kept.h"

#ifndef WM_DPICHANGED_BEFOREPARENT
#define WM_DPICHANGED_BEFOREPARENT 0x02E2
#define WM_DPICHANGED_AFTERPARENT 0x02E3
#endif

namespace {

/// What the user made of the forms of a class, for the next of them.
struct TChosenSize {
  SIZE Client;
  int Dpi;
};

std::map<std::string, TChosenSize>& ChosenSizes() {
  return Kept<std::map<std::string, TChosenSize>>();
}

SIZE SizeOf(const RECT& bounds) { return {bounds.right - bounds.left, bounds.bottom - bounds.top}; }

bool Same(SIZE a, SIZE b) { return a.cx == b.cx && a.cy == b.cy; }

SIZE ScaleSize(SIZE size, int dpi, int from) {
  return {MulDiv(size.cx, dpi, from), MulDiv(size.cy, dpi, from)};
}

/// Size that a caption takes in a font.
SIZE CaptionSize(HWND window, HFONT font, const TLayoutItem& item) {
  const auto* caption = item.Find("caption");
  const std::wstring text = caption ? Utf8ToWide(caption->Values[0]) : std::wstring();
  const UINT prefix = item.Kind == "static-text" ? DT_NOPREFIX : 0;
  const TWindowDc dc(window);
  const HGDIOBJ before = SelectObject(dc.Get(), font);
  RECT bounds{};
  DrawTextW(dc.Get(), text.c_str(), static_cast<int>(text.size()), &bounds,
            DT_CALCRECT | DT_SINGLELINE | prefix);
  SelectObject(dc.Get(), before);
  return SizeOf(bounds);
}

bool HasStyle(HWND window, LONG style) { return (GetWindowLongW(window, GWL_STYLE) & style) != 0; }

/// What the scroll bars of a form take of its client area.
SIZE BarsOf(HWND window) {
  return {HasStyle(window, WS_VSCROLL) ? GetSystemMetrics(SM_CXVSCROLL) : 0,
          HasStyle(window, WS_HSCROLL) ? GetSystemMetrics(SM_CYHSCROLL) : 0};
}

/// Shows the scroll bar when the content is longer than the page, else hides it.
void SetScrollBar(HWND window, int bar, LONG content, LONG page) {
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = SIF_RANGE | SIF_PAGE;
  if (content > page) {
    info.nMax = content - 1;
    info.nPage = static_cast<UINT>(std::max(page, 0L));
  } else {
    info.fMask |= SIF_POS;
  }
  SetScrollInfo(window, bar, &info, TRUE);
}

}  // namespace

HWND TFormPlacement::Window() const { return FForm.Handle(); }

// ---- sizes ----

bool TFormPlacement::Embedded() const { return HasStyle(Window(), WS_CHILD); }

SIZE TFormPlacement::ClientSize() const {
  RECT client{};
  GetClientRect(Window(), &client);
  return SizeOf(client);
}

SIZE TFormPlacement::FullClient() const {
  const SIZE client = ClientSize();
  const SIZE bars = BarsOf(Window());
  return {client.cx + bars.cx, client.cy + bars.cy};
}

SIZE TFormPlacement::Borders() const {
  // Measured: what the system would calculate is for one DPI, whichever the monitor has.
  const SIZE window = SizeOf(FForm.WindowBounds());
  const SIZE client = FullClient();
  return {window.cx - client.cx, window.cy - client.cy};
}

SIZE TFormPlacement::DesignedClient() const {
  const auto* outer = FForm.Layout().Find("size");
  const auto* size = outer ? outer : FForm.Layout().Find("client");
  if (!size) throw TLayoutError(std::string(FForm.ClassName()) + " has no size");
  const SIZE borders = outer ? Borders() : SIZE{};
  return {FForm.Scaled(LayoutNumber(size->Values[0])) - borders.cx,
          FForm.Scaled(LayoutNumber(size->Values[1])) - borders.cy};
}

void TFormPlacement::SetClientSize(SIZE size) {
  if (Same(size, FullClient())) return;
  const SIZE borders = Borders();
  SetWindowPos(Window(), nullptr, 0, 0, size.cx + borders.cx, size.cy + borders.cy,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void TFormPlacement::FitTo(const RECT& workArea) {
  if (HasStyle(Window(), WS_MINIMIZE | WS_MAXIMIZE)) return;
  RememberSize();
  const SIZE borders = Borders();
  const SIZE room = SizeOf(workArea);
  const SIZE most{room.cx - borders.cx, room.cy - borders.cy};
  SIZE client{std::min(FWantedClient.cx, most.cx), std::min(FWantedClient.cy, most.cy)};
  // The bar that scrolls one way is not to take the room of the other.
  const TExtent least = FArrangement.Least();
  const bool scrollsDown = client.cy < least.Height;
  const bool scrollsAcross = client.cx < least.Width;
  if (scrollsDown) client.cx = std::min(client.cx + GetSystemMetrics(SM_CXVSCROLL), most.cx);
  if (scrollsAcross) client.cy = std::min(client.cy + GetSystemMetrics(SM_CYHSCROLL), most.cy);
  SetClientSize(client);
  FGivenClient = FullClient();
}

void TFormPlacement::RememberSize() {
  if (!HasStyle(Window(), WS_THICKFRAME) || Embedded()) return;
  if (HasStyle(Window(), WS_MINIMIZE | WS_MAXIMIZE) || FGivenClient.cx == 0) return;
  const SIZE client = FullClient();
  if (Same(client, FGivenClient)) return;
  // A side that only the screen made short is still wanted as it was.
  if (client.cx != FGivenClient.cx) FWantedClient.cx = client.cx;
  if (client.cy != FGivenClient.cy) FWantedClient.cy = client.cy;
  FGivenClient = client;
  ChosenSizes()[FForm.ClassName()] = {FWantedClient, FForm.Dpi()};
}

void TFormPlacement::SizeAsWanted() {
  const auto chosen = ChosenSizes().find(FForm.ClassName());
  const bool again = chosen != ChosenSizes().end() && !Embedded();
  FWantedClient =
      again ? ScaleSize(chosen->second.Client, FForm.Dpi(), chosen->second.Dpi) : DesignedClient();
  if (Embedded()) {
    SetClientSize(FWantedClient);
  } else {
    FitTo(WorkAreaAround());
  }
}

void TFormPlacement::LimitTracking(MINMAXINFO& limits) const {
  if (Embedded()) return;
  const SIZE borders = Borders();
  const SIZE room = SizeOf(WorkAreaOf(FForm.WindowBounds()));
  const TExtent design = FArrangement.Design();
  limits.ptMinTrackSize = {std::min(design.Width + borders.cx, room.cx),
                           std::min(design.Height + borders.cy, room.cy)};
}

void TFormPlacement::ScaleTo(int dpi) {
  const int before = FForm.Dpi();
  if (dpi == before) return;
  RememberSize();
  FWantedClient = ScaleSize(FWantedClient, dpi, before);
  FForm.SetDpi(dpi);
  Measure();
  if (!Embedded()) {
    FitTo(WorkAreaOf(FForm.WindowBounds()));
  } else if (const SIZE client = FullClient(); Same(client, FGivenClient)) {
    // Else the host has given it its new size already.
    SetClientSize(ScaleSize(client, dpi, before));
  }
  Arrange();
}

// ---- places ----

RECT TFormPlacement::WorkAreaAround() const {
  RECT around{};
  const HWND owner = Application().MainWindow();
  if (owner && !IsIconic(owner)) GetWindowRect(owner, &around);
  return WorkAreaOf(around);
}

void TFormPlacement::Place() {
  if (IsIconic(Window())) return;
  const HWND owner = Application().MainWindow();
  if (const int dpi = DpiOf(owner ? owner : Window()); dpi != FForm.Dpi()) ScaleTo(dpi);
  const RECT area = WorkAreaAround();
  RECT around{};
  const auto* position = FForm.Layout().Find("position");
  const bool onScreen = position && position->Values[0] == "screen";
  if (onScreen || !owner || IsIconic(owner) || !GetWindowRect(owner, &around)) around = area;
  FitTo(area);
  const SIZE size = SizeOf(FForm.WindowBounds());
  SetWindowPos(Window(), nullptr, (around.left + around.right - size.cx) / 2,
               (around.top + around.bottom - size.cy) / 2, 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  KeepInside(area);
}

void TFormPlacement::KeepInside(const RECT& workArea) {
  const RECT bounds = FForm.WindowBounds();
  const SIZE size = SizeOf(bounds);
  // A window larger than the screen keeps its caption in reach.
  const LONG left = std::max(std::min(bounds.left, workArea.right - size.cx), workArea.left);
  const LONG top = std::max(std::min(bounds.top, workArea.bottom - size.cy), workArea.top);
  if (left == bounds.left && top == bounds.top) return;
  SetWindowPos(Window(), nullptr, left, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void TFormPlacement::KeepOnScreen() {
  if (Embedded() || HasStyle(Window(), WS_MINIMIZE | WS_MAXIMIZE)) return;
  const RECT area = WorkAreaOf(FForm.WindowBounds());
  FitTo(area);
  KeepInside(area);
}

/// Larger than its screen. The frame of one that the user put against an edge may reach beyond it.
bool TFormPlacement::ExceedsScreen() const {
  const SIZE size = SizeOf(FForm.WindowBounds());
  const SIZE room = SizeOf(WorkAreaOf(FForm.WindowBounds()));
  const LONG frame = 2 * GetSystemMetrics(SM_CXSIZEFRAME);
  return size.cx > room.cx + frame || size.cy > room.cy + frame;
}

// The screen may have become smaller meanwhile. What the system then leaves of the form is not a
// size that the user chose.
void TFormPlacement::Restored() {
  if (Embedded() || !ExceedsScreen()) return;
  FGivenClient = FullClient();
  KeepOnScreen();
}

// ---- controls ----

std::vector<TFormPlacement::TPlace> TFormPlacement::SetControls(std::vector<TControl*> controls) {
  FArranged = std::move(controls);
  Measure();
  if (!Embedded()) FitTo(WorkAreaAround());
  return PlacesIn(ClientSize());
}

std::vector<TFormPlacement::TPlace> TFormPlacement::PlacesIn(SIZE client) const {
  std::vector<TPlace> places;
  places.reserve(FArranged.size());
  const auto boxes = FArrangement.At({static_cast<int>(client.cx), static_cast<int>(client.cy)});
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    const TBox& box = boxes[i];
    places.push_back({FArranged[i], {box.Left, box.Top, box.Right, box.Bottom}});
  }
  return places;
}

void TFormPlacement::Measure() {
  std::vector<TArrangedItem> items;
  std::vector<std::size_t> labels;
  for (const TControl* control : FArranged) {
    const auto& layout = control->Layout();
    const auto& bounds = layout.Bounds;
    if (!bounds[0] || !bounds[1]) throw TLayoutError(control->Name() + " has no position");
    const bool captioned = layout.Find("caption") != nullptr;
    if (!bounds[2] && !captioned) throw TLayoutError(control->Name() + " has no size");
    const SIZE text = captioned ? CaptionSize(Window(), FForm.Font(), layout) : SIZE{};
    const SIZE size = bounds[2] ? SIZE{FForm.Scaled(*bounds[2]), FForm.Scaled(*bounds[3])} : text;
    TArrangedItem item;
    item.Box.Left = FForm.Scaled(*bounds[0]);
    item.Box.Top = FForm.Scaled(*bounds[1]);
    item.Box.Right = item.Box.Left + static_cast<int>(size.cx);
    item.Box.Bottom = item.Box.Top + static_cast<int>(size.cy);
    item.Anchors = control->Anchors();
    item.Shown = !layout.Find("hidden");
    // Three lines of a list or memo, a few letters of a field; a caption and its check box whole.
    item.Least.Width = static_cast<int>(
        std::min<LONG>(size.cx, captioned ? text.cx + FForm.Scaled(20) : FForm.Scaled(48)));
    item.Least.Height = static_cast<int>(std::min<LONG>(size.cy, FForm.Scaled(45)));
    if (!bounds[2]) labels.push_back(items.size());
    items.push_back(item);
  }
  MakeRoomForLabels(items, labels, FForm.Scaled(4));
  const SIZE design = DesignedClient();
  FArrangement =
      TArrangement(std::move(items), {static_cast<int>(design.cx), static_cast<int>(design.cy)});
}

void TFormPlacement::Arrange() {
  if (IsIconic(Window())) return;
  const SIZE full = FullClient();
  const TExtent least = FArrangement.Least();
  const LONG barWidth = GetSystemMetrics(SM_CXVSCROLL);
  const LONG barHeight = GetSystemMetrics(SM_CYHSCROLL);
  bool scrollsDown = full.cy < least.Height;
  const bool scrollsAcross = full.cx - (scrollsDown ? barWidth : 0) < least.Width;
  scrollsDown = scrollsDown || (scrollsAcross && full.cy - barHeight < least.Height);
  const SIZE client{full.cx - (scrollsDown ? barWidth : 0),
                    full.cy - (scrollsAcross ? barHeight : 0)};
  SetScrollBar(Window(), SB_VERT, least.Height, scrollsDown ? client.cy : least.Height);
  SetScrollBar(Window(), SB_HORZ, least.Width, scrollsAcross ? client.cx : least.Width);
  const int left = GetScrollPos(Window(), SB_HORZ);
  const int top = GetScrollPos(Window(), SB_VERT);
  for (auto [control, bounds] : PlacesIn(client)) {
    OffsetRect(&bounds, -left, -top);
    if (control->Handle()) control->SetBounds(bounds);
  }
  // Children are not clipped: the form's background would cover those that merely moved.
  RedrawWindow(Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

// ---- scrolling ----

void TFormPlacement::Scroll(int bar, int position) {
  const int before = GetScrollPos(Window(), bar);
  SetScrollPos(Window(), bar, position, TRUE);
  if (GetScrollPos(Window(), bar) != before) Arrange();
}

/// By what the wheel was turned.
void TFormPlacement::ScrollBy(int bar, int wheel) {
  Scroll(bar, GetScrollPos(Window(), bar) + MulDiv(FForm.Scaled(60), wheel, WHEEL_DELTA));
}

void TFormPlacement::HandleScrollBar(int bar, int request) {
  SCROLLINFO info{};
  info.cbSize = sizeof info;
  info.fMask = SIF_ALL;
  if (!GetScrollInfo(Window(), bar, &info)) return;
  const int page = static_cast<int>(info.nPage);
  const int line = FForm.Scaled(20);
  switch (request) {
    case SB_LINEUP:
      return Scroll(bar, info.nPos - line);
    case SB_LINEDOWN:
      return Scroll(bar, info.nPos + line);
    case SB_PAGEUP:
      return Scroll(bar, info.nPos - page);
    case SB_PAGEDOWN:
      return Scroll(bar, info.nPos + page);
    case SB_TOP:
      return Scroll(bar, 0);
    case SB_BOTTOM:
      return Scroll(bar, info.nMax);
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
      return Scroll(bar, info.nTrackPos);
    default:
      return;
  }
}

void TFormPlacement::Reveal(const TControl& control) {
  const SIZE client = ClientSize();
  const RECT bounds = control.Bounds();
  const auto reveal = [&](int bar, LONG start, LONG end, LONG length) {
    // One that fills the view from its middle on is seen: more of it would hide its label.
    if (start >= 0 && start < length / 2 && end - start > length / 2) return;
    // Its start counts more than its end.
    const LONG by = start < 0 ? start : std::min(std::max(end - length, 0L), start);
    if (by != 0) Scroll(bar, GetScrollPos(Window(), bar) + static_cast<int>(by));
  };
  if (HasStyle(Window(), WS_VSCROLL)) reveal(SB_VERT, bounds.top, bounds.bottom, client.cy);
  if (HasStyle(Window(), WS_HSCROLL)) reveal(SB_HORZ, bounds.left, bounds.right, client.cx);
}

// ---- messages ----

bool TFormPlacement::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_SIZE:
      if (wParam != SIZE_MINIMIZED) Arrange();
      if (wParam == SIZE_RESTORED && std::exchange(FSetAside, false)) Restored();
      if (wParam != SIZE_RESTORED) FSetAside = true;
      return false;
    case WM_GETMINMAXINFO:
      LimitTracking(*reinterpret_cast<MINMAXINFO*>(lParam));
      return true;
    case WM_EXITSIZEMOVE:
      // Perhaps on another monitor, with less room, or with more.
      if (Embedded()) return false;
      RememberSize();
      if (ExceedsScreen() || !Same(FGivenClient, FWantedClient))
        FitTo(WorkAreaOf(FForm.WindowBounds()));
      return false;
    case WM_DISPLAYCHANGE:
      if (FForm.Visible()) KeepOnScreen();
      return false;
    case WM_SETTINGCHANGE:
      if (wParam == SPI_SETWORKAREA && FForm.Visible()) KeepOnScreen();
      return false;
    case WM_DPICHANGED: {
      ScaleTo(LOWORD(wParam));
      const auto& bounds = *reinterpret_cast<const RECT*>(lParam);
      SetWindowPos(Window(), nullptr, bounds.left, bounds.top, 0, 0,
                   SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
      FitTo(WorkAreaOf(FForm.WindowBounds()));
      return true;
    }
    case WM_DPICHANGED_BEFOREPARENT:
      FGivenClient = FullClient();
      return false;
    case WM_DPICHANGED_AFTERPARENT:
      ScaleTo(DpiOf(Window()));
      return false;
    case WM_HSCROLL:
    case WM_VSCROLL:
      HandleScrollBar(message == WM_VSCROLL ? SB_VERT : SB_HORZ, LOWORD(wParam));
      return true;
    case WM_MOUSEWHEEL:
      if (!HasStyle(Window(), WS_VSCROLL)) return false;
      ScrollBy(SB_VERT, -static_cast<short>(HIWORD(wParam)));
      return true;
    case WM_MOUSEHWHEEL:
      if (!HasStyle(Window(), WS_HSCROLL)) return false;
      ScrollBy(SB_HORZ, static_cast<short>(HIWORD(wParam)));
      return true;
    default:
      return false;
  }
}
