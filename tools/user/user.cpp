#include "user/user.h"

#include <commctrl.h>

#include "user/form_driver.h"
#include "user/say.h"
#include "user/window.h"

namespace {
constexpr size_t StepsKept = 12;
}  // namespace

void TUser::WaitUntil(std::string_view what, const std::function<bool()>& ready, int ms) {
  const ULONGLONG deadline = GetTickCount64() + static_cast<ULONGLONG>(ms);
  while (!ready()) {
    if (GetTickCount64() > deadline) throw TUserError(Say("waited in vain for ", what));
    if (const std::string why = Hopeless(); !why.empty() && !ready())
      throw TUserError(Say("waits in vain for ", what, ": ", why));
    Sleep(LookAgainMs);
  }
}

HWND TUser::FindForm(std::string_view className) const {
  const auto fits = [className](HWND window) {
    return Shown(window) && IsWindowEnabled(window) && ClassOf(window) == className;
  };
  const std::vector<HWND> tops = TopWindows(FProcess);
  for (const HWND top : tops)
    if (fits(top)) return top;
  for (const HWND top : tops)
    for (const HWND child : Descendants(top))
      if (fits(child)) return child;
  return nullptr;
}

TFormDriver TUser::WaitForForm(std::string_view className, int ms) {
  Note(Say("wait for ", className));
  HWND form = nullptr;
  WaitUntil(
      Say("the form ", className), [&] { return (form = FindForm(className)) != nullptr; }, ms);
  return TFormDriver(*this, form);
}

TFormDriver TUser::WaitForMessageBox(std::string_view caption, int ms) {
  Note(Say("wait for the message box \"", caption, "\""));
  HWND box = nullptr;
  WaitUntil(
      Say("the message box \"", caption, "\""),
      [&] {
        for (const HWND window : TopWindows(FProcess))
          if (Shown(window) && ClassOf(window) == "#32770" && TextOf(window) == caption)
            box = window;
        return box != nullptr;
      },
      ms);
  return TFormDriver(*this, box);
}

std::string TUser::AnswerMessageBox(std::string_view caption, int button) {
  TFormDriver box = WaitForMessageBox(caption);
  std::string text;
  // An icon is a label without a text.
  for (const HWND child : Descendants(box.Handle()))
    if (ClassOf(child) == "Static") text += TextOf(child);
  box.Click(Say('#', button));
  box.WaitGone();
  return text;
}

HWND TUser::FindBubble() const {
  for (const HWND window : TopWindows(FProcess)) {
    const std::string name = ClassOf(window);
    if (Shown(window) && (name == "THintWindow" || name == TOOLTIPS_CLASSA)) return window;
  }
  return nullptr;
}

std::string TUser::WaitForBubble(int ms) {
  Note("wait for a bubble");
  HWND bubble = nullptr;
  WaitUntil(
      "a bubble", [&] { return (bubble = FindBubble()) != nullptr; }, ms);
  return TextOf(bubble);
}

RECT TUser::WaitForBubble(std::string_view text, const std::function<void()>& act) {
  RECT bounds{};
  WaitUntil(Say("the bubble \"", text, "\""), [&] {
    act();
    const ULONGLONG deadline = GetTickCount64() + ActAgainMs;
    for (; GetTickCount64() < deadline; Sleep(LookAgainMs)) {
      const HWND bubble = FindBubble();
      bounds = BoundsOf(bubble);
      if (bubble && TextOf(bubble) == text) return true;
    }
    return false;
  });
  return bounds;
}

void TUser::WaitForNoBubble(int ms) {
  Note("wait for the bubble to go");
  WaitUntil(
      "no bubble", [&] { return !FindBubble(); }, ms);
}

void TUser::Press(WORD virtualKey, unsigned modifiers) {
  Note(Say("press key ", std::hex, virtualKey, modifiers & mdShift ? " shift" : "",
           modifiers & mdControl ? " control" : "", modifiers & mdAlt ? " alt" : ""));
  SendKey(virtualKey, modifiers);
  Settle();
}

void TUser::Type(std::string_view utf8) {
  Note(Say("type \"", utf8, "\""));
  SendText(Wide(utf8));
  Settle();
}

void TUser::Click(POINT screen, int clicks) {
  Note(Say(clicks, " click(s) at ", screen.x, ",", screen.y));
  PointAt(screen);
  SendClick(screen, clicks);
  Settle();
}

// The display reports a pointer that was moved a little later, and may put it back for a moment to
// where it had been: a click that follows at once could end there.
void TUser::PointAt(POINT screen) {
  WaitUntil("the pointer to stay where it is put", [&] {
    MovePointer(screen);
    Settle();
    POINT pointer{};
    GetCursorPos(&pointer);
    return pointer.x == screen.x && pointer.y == screen.y;
  });
}

// An answer at least means that the program has looked at its display since.
void TUser::Settle() { Ask(GetForegroundWindow(), WM_NULL); }

void TUser::Note(std::string step) {
  const std::lock_guard lock(FStepsGuard);
  FSteps.push_back(std::move(step));
  if (FSteps.size() > StepsKept) FSteps.pop_front();
}

std::string TUser::LastSteps() const {
  const std::lock_guard lock(FStepsGuard);
  std::string steps;
  for (const std::string& step : FSteps) steps += "  " + step + "\n";
  return steps;
}
