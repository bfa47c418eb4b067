// A scripted user: drives the windows of any program on this desktop, its own process's or
// another's, as a person does, by keyboard and mouse through the system's input, and looks at what
// is on screen.
//
//   TUser           someone at a process's windows: keys, clicks, and waits for what is to appear
//   TFormDriver     (form_driver.h) one form: its controls by name, read and operated
//   TScriptedUser   (scripted_user.h) a user of this process's own windows, beside a call of its
//                   main thread; TInputBarrier and TWatchdog are its means
//   TSavedSettings  (saved_settings.h) the real user's settings, out of the way meanwhile
//   window.h, items.h, input.h, picture.h   the means of all: windows, lists, devices, screen
//
//   TUser user(process);
//   TFormDriver form = user.WaitForForm("TDlgSyntax");
//   form.Select("BoxType", "Compte"); form.Press(VK_RETURN); form.WaitGone();
#pragma once

#include <windows.h>

#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>

#include "user/input.h"
#include "user/user_error.h"

class TFormDriver;

/// Someone who uses a program's windows with keyboard and mouse, and waits for what they expect to
/// see: for a window or a state, never for a time. Every step throws TUserError when it cannot be
/// done. To be used from a thread that has no window of the program.
class TUser {
 public:
  static constexpr int PatienceMs = 30000;
  static constexpr int ActAgainMs = 3000;  ///< then a user does once more what led to nothing
  static constexpr DWORD LookAgainMs = 5;

  explicit TUser(DWORD process) : FProcess(process) {}
  virtual ~TUser() = default;

  DWORD Process() const { return FProcess; }

  /// The form of that class that is shown and enabled, at any depth; of several the topmost.
  TFormDriver WaitForForm(std::string_view className, int ms = PatienceMs);
  /// The message box with that caption.
  TFormDriver WaitForMessageBox(std::string_view caption, int ms = PatienceMs);
  /// Leaves the message box with that caption by the button of that number, and gives what it said.
  std::string AnswerMessageBox(std::string_view caption, int button);
  /// Null when none is shown.
  HWND FindForm(std::string_view className) const;
  /// A hint bubble or tooltip on screen, or null.
  HWND FindBubble() const;
  /// The text of a hint bubble or tooltip on screen, once there is one.
  std::string WaitForBubble(int ms = PatienceMs);
  /// Acts until a bubble shows that text, and gives its place: one that a busy machine showed and
  /// took away does not come back by itself.
  RECT WaitForBubble(std::string_view text, const std::function<void()>& act);
  void WaitForNoBubble(int ms = PatienceMs);
  void WaitUntil(std::string_view what, const std::function<bool()>& ready, int ms = PatienceMs);

  /// To whatever has the focus.
  void Press(WORD virtualKey, unsigned modifiers = mdNone);
  void Type(std::string_view utf8);
  void Click(POINT screen, int clicks = 1);
  void PointAt(POINT screen);

  /// The last steps, for whoever has to find out what went wrong. Any thread.
  std::string LastSteps() const;
  void Note(std::string step);

 protected:
  /// Returns when the program has dealt with all input so far, as far as that can be known.
  virtual void Settle();
  /// What there is no use in waiting any longer for, or empty.
  virtual std::string Hopeless() const { return {}; }

 private:
  DWORD FProcess;
  mutable std::mutex FStepsGuard;
  std::deque<std::string> FSteps;
};
