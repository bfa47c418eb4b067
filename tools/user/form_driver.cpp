#include "user/form_driver.h"

#include <commctrl.h>

#include <charconv>
#include <map>
#include <sstream>

#include "user/items.h"
#include "user/picture.h"
#include "user/say.h"
#include "user/window.h"

namespace {
bool IsCombo(HWND control) {
  const std::string name = ClassOf(control);
  return name == "ComboBox" || name == WC_COMBOBOXEXA;
}

/// A group's frame lets clicks through, which only its own thread is told.
bool LetsThrough(HWND window, POINT screen) {
  return Ask(window, WM_NCHITTEST, 0, MAKELPARAM(screen.x, screen.y)) == HTTRANSPARENT;
}

bool Within(HWND window, HWND ancestor) { return window == ancestor || IsChild(ancestor, window); }
}  // namespace

HWND TFormDriver::Find(std::string_view name) const {
  if (name.starts_with('#')) {
    int id = 0;
    std::from_chars(name.data() + 1, name.data() + name.size(), id);
    return GetDlgItem(FForm, id);
  }
  return ControlNamed(FForm, name);
}

HWND TFormDriver::Control(std::string_view name) const {
  const HWND control = Find(name);
  if (!control)
    throw TUserError(Say("no control ", name, " in ",
                         Exists() ? ClassOf(FForm) : std::string("a form that is gone")));
  return control;
}

void TFormDriver::WaitGone() const {
  FUser->Note("wait for the form to go");
  FUser->WaitUntil("the form to go", [this] { return Gone(); });
}

void TFormDriver::WaitPainted() const {
  FUser->Note("wait for the form to be drawn");
  FUser->WaitUntil("the form to be drawn", [this] {
    Ask(FForm, WM_NULL);  // by its answer the thread has taken note of what the display uncovered
    return !GetUpdateRect(FForm, nullptr, FALSE);
  });
}

// ---- looking -----------------------------------------------------------------------------------

std::string TFormDriver::Caption() const { return TextOf(FForm); }
std::string TFormDriver::Text(std::string_view name) const { return TextOf(Control(name)); }

void TFormDriver::WaitText(std::string_view name, std::string_view text) const {
  FUser->Note(Say("wait for ", name, " to read \"", text, "\""));
  FUser->WaitUntil(Say("\"", text, "\" in ", name, ", which reads \"", Text(name), "\""),
                   [&] { return Text(name) == text; });
}

bool TFormDriver::Enabled(std::string_view name) const {
  return IsWindowEnabled(Control(name)) != FALSE;
}

bool TFormDriver::Visible(std::string_view name) const { return Shown(Control(name)); }

std::string TFormDriver::Focus() const {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  if (!GetGUIThreadInfo(GetWindowThreadProcessId(FForm, nullptr), &info)) return {};
  for (HWND window = info.hwndFocus; window && window != FForm; window = GetParent(window))
    if (std::string name = NameOf(window); !name.empty()) return name;
  return {};
}

void TFormDriver::WaitFocus(std::string_view name) const {
  FUser->Note(Say("wait for the focus on ", name));
  FUser->WaitUntil(Say("the focus on ", name, ", not on \"", Focus(), "\""),
                   [&] { return Focus() == name; });
}

std::vector<std::string> TFormDriver::Items(std::string_view name) const {
  return ItemsOf(Control(name));
}

std::string TFormDriver::SelectedItem(std::string_view name) const {
  const HWND control = Control(name);
  const int index = SelectedItemOf(control);
  return index < 0 ? std::string() : ItemsOf(control).at(static_cast<size_t>(index));
}

std::string TFormDriver::Reading(std::string_view name) const {
  const std::string text = Text(name);
  const std::string kind = ClassOf(Control(name));
  const bool list = kind.find("List") != kind.npos || kind.find("Combo") != kind.npos;
  return text.empty() && list ? SelectedItem(name) : text;
}

int TFormDriver::Checked(std::string_view name) const {
  return static_cast<int>(Ask(Control(name), BM_GETCHECK));
}

bool TFormDriver::ItemChecked(std::string_view name, std::string_view item) const {
  const HWND control = Control(name);
  return ::ItemChecked(control, ItemIndex(control, item));
}

std::string TFormDriver::RadioItem(std::string_view name) const {
  Control(name);
  for (int item = 0; const HWND button = Find(Say(name, item)); ++item)
    if (Ask(button, BM_GETCHECK) == BST_CHECKED) return TextOf(button);
  return {};
}

int TFormDriver::Position(std::string_view upDown) const {
  return static_cast<int>(Ask(Control(upDown), UDM_GETPOS32));
}

// ---- acting ------------------------------------------------------------------------------------

void TFormDriver::Reach(HWND control, POINT screen) const {
  const std::string name = NameOf(control);
  // What was typed just now may be what enables it.
  FUser->WaitUntil(name + " to be enabled", [&] { return IsWindowEnabled(control) != FALSE; });
  if (!Shown(control)) throw TUserError(name + " is hidden");
  // A form that has just come up may lie under its owner for a moment; a tip goes once the pointer
  // comes to it.
  FUser->WaitUntil(name + " to be uncovered", [&] {
    const HWND met = WindowFromPoint(screen);
    if (ClassOf(met) == TOOLTIPS_CLASSA) FUser->PointAt(screen);
    return Within(met, control) || Within(control, met) || LetsThrough(met, screen);
  });
}

POINT TFormDriver::Inside(HWND control, double x, double y) const {
  const RECT bounds = BoundsOf(control);
  return {bounds.left + static_cast<LONG>((bounds.right - bounds.left - 1) * x),
          bounds.top + static_cast<LONG>((bounds.bottom - bounds.top - 1) * y)};
}

void TFormDriver::ClickAt(std::string_view name, double x, double y, int clicks) {
  FUser->Note(Say("click ", name));
  const HWND control = Control(name);
  const POINT point = Inside(control, x, y);
  Reach(control, point);
  FUser->Click(point, clicks);
}

void TFormDriver::Click(std::string_view name, int clicks) { ClickAt(name, 0.5, 0.5, clicks); }

void TFormDriver::ClickFormAt(POINT client) {
  ClientToScreen(FForm, &client);
  FUser->Click(client);
}

void TFormDriver::WaitForTip(std::string_view name, std::string_view text, double x, double y) {
  FUser->Note(Say("look for the tip of ", name));
  const RECT form = BoundsOf(FForm);
  const POINT caption{form.left + 40, form.top + GetSystemMetrics(SM_CYSIZEFRAME) + 8};
  FUser->WaitForBubble(text, [&] {
    FUser->PointAt(caption);
    FUser->WaitForNoBubble();
    FUser->PointAt(Inside(Control(name), x, y));
  });
}

bool TFormDriver::FindInCaption(LRESULT hit, POINT& screen) const {
  const RECT bounds = BoundsOf(FForm);
  const LONG y = bounds.top + GetSystemMetrics(SM_CYSIZEFRAME) + GetSystemMetrics(SM_CYCAPTION) / 2;
  for (LONG x = bounds.right; x > bounds.left; --x)
    if (Ask(FForm, WM_NCHITTEST, 0, MAKELPARAM(x, y)) == hit) {
      screen = {x - 2, y};
      return true;
    }
  return false;
}

void TFormDriver::CloseBox() {
  FUser->Note("click the close box");
  POINT box;
  if (!FindInCaption(HTCLOSE, box)) throw TUserError(ClassOf(FForm) + " has no close box");
  FUser->Click(box);
}

void TFormDriver::AskAbout(std::string_view name) {
  FUser->Note(Say("ask about ", name, " with the question mark"));
  const HWND control = Control(name);
  const POINT point = Inside(control, 0.5, 0.5);
  if (POINT mark; FindInCaption(HTHELP, mark)) {
    FUser->Click(mark);
    FUser->Click(point);
    return;
  }
  if (!(GetWindowLongW(FForm, GWL_EXSTYLE) & WS_EX_CONTEXTHELP))
    throw TUserError(ClassOf(FForm) + " has no question mark");
  // Not every system draws the question mark: then the message that it would lead to.
  HELPINFO info{};
  info.cbSize = sizeof info;
  info.iContextType = HELPINFO_WINDOW;
  info.iCtrlId = GetDlgCtrlID(control);
  info.hItemHandle = control;
  info.MousePos = point;
  Ask(control, WM_HELP, 0, reinterpret_cast<LPARAM>(&info));
}

void TFormDriver::WaitActive() const {
  const HWND root = GetAncestor(FForm, GA_ROOT);
  FUser->WaitUntil(ClassOf(FForm) + " to be active",
                   [root] { return GetForegroundWindow() == root; });
}

void TFormDriver::Press(WORD virtualKey, unsigned modifiers) {
  WaitActive();
  FUser->Press(virtualKey, modifiers);
}

void TFormDriver::Type(std::string_view utf8) {
  WaitActive();
  FUser->Type(utf8);
}

void TFormDriver::Keys(std::string_view words) {
  static const std::map<std::string, WORD> Named{
      {"Space", VK_SPACE}, {"Enter", VK_RETURN}, {"Esc", VK_ESCAPE},
      {"Tab", VK_TAB},     {"Home", VK_HOME},    {"End", VK_END},
      {"Up", VK_UP},       {"Down", VK_DOWN},    {"Right", VK_RIGHT}};
  std::istringstream stream{std::string(words)};
  for (std::string word; stream >> word;) {
    unsigned modifiers = mdNone;
    for (const auto& [prefix, modifier] : {std::pair{"Alt+", mdAlt}, {"Shift+", mdShift}}) {
      if (!word.starts_with(prefix)) continue;
      modifiers = modifier;
      word.erase(0, std::string_view(prefix).size());
    }
    if (const auto named = Named.find(word); named != Named.end()) {
      Press(named->second, modifiers);
    } else if (modifiers) {
      Press(static_cast<WORD>(word[0]), modifiers);
    } else {
      Type(word);
    }
  }
}

void TFormDriver::TabTo(std::string_view name) {
  constexpr int Round = 60;
  for (int stop = 0; stop < Round; ++stop) {
    const std::string before = Focus();
    if (before == name) return;
    Press(VK_TAB);
    FUser->WaitUntil("Tab to move the focus", [&] { return Focus() != before; });
  }
  throw TUserError(Say("Tab does not lead to ", name));
}

void TFormDriver::Fill(std::string_view name, std::string_view utf8) {
  Click(name);
  Keys("Home Shift+End");
  if (utf8.empty())
    Press(VK_DELETE);
  else
    Type(utf8);
}

int TFormDriver::ItemIndex(HWND control, std::string_view item) const {
  const int index = IndexOfItem(control, item);
  if (index >= 0) return index;
  std::string all;
  for (const std::string& one : ItemsOf(control)) all += " \"" + one + "\"";
  throw TUserError(Say("no item \"", item, "\" in ", NameOf(control), ", which has", all));
}

void TFormDriver::Select(std::string_view name, std::string_view item) {
  FUser->Note(Say("select \"", item, "\" in ", name));
  const HWND control = Control(name);
  const int index = ItemIndex(control, item);
  if (IsCombo(control)) {
    // The arrow; a drop-down list opens from anywhere, one with an edit only from there.
    const RECT bounds = BoundsOf(control);
    const POINT arrow{bounds.right - 8, bounds.top + 10};
    Reach(control, arrow);
    FUser->Click(arrow);
    const auto open = [control] { return Ask(control, CB_GETDROPPEDSTATE) != 0; };
    FUser->WaitUntil(Say("the list of ", name), open);
    // A busy machine may lose the first click into a list that has just opened.
    ULONGLONG again = 0;
    FUser->WaitUntil(Say("the list of ", name, " to close"), [&] {
      if (GetTickCount64() < again || !open()) return !open();
      const POINT point = PointOnItem(control, index);
      FUser->PointAt(point);
      // It may scroll until it is ready.
      if (ItemUnder(control, point) != index) return false;
      FUser->Click(point);
      again = GetTickCount64() + TUser::ActAgainMs;
      return false;
    });
  } else {
    const POINT point = PointOnItem(control, index);
    Reach(control, point);
    FUser->Click(point);
  }
}

void TFormDriver::DoubleClickItem(std::string_view name, std::string_view item) {
  FUser->Note(Say("double-click \"", item, "\" in ", name));
  const HWND control = Control(name);
  const POINT point = PointOnItem(control, ItemIndex(control, item));
  Reach(control, point);
  FUser->Click(point, 2);
}

void TFormDriver::ToggleItem(std::string_view name, std::string_view item) {
  FUser->Note(Say("toggle \"", item, "\" in ", name));
  const HWND control = Control(name);
  const POINT point = PointOnItemCheckBox(control, ItemIndex(control, item));
  Reach(control, point);
  FUser->Click(point);
}

void TFormDriver::Step(std::string_view upDown, bool up) {
  const HWND control = Control(upDown);
  const bool horizontal = (GetWindowLongW(control, GWL_STYLE) & UDS_HORZ) != 0;
  const double end = up == horizontal ? 0.75 : 0.25;
  ClickAt(upDown, horizontal ? end : 0.5, horizontal ? 0.5 : end);
}

void TFormDriver::SavePicture(const std::string& file) const {
  FUser->Note("picture " + file);
  ::SavePicture(BoundsOf(FForm), file);
}
