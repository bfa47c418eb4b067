#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "user/user.h"

/// One form under a user's hands. Controls are named as the form names them; "#2" is the control
/// with dialog item number 2, for the system's own boxes. Clicks refuse what a user could not
/// click: disabled, hidden or covered controls.
class TFormDriver {
 public:
  TFormDriver(TUser& user, HWND form) : FUser(&user), FForm(form) {}

  HWND Handle() const { return FForm; }
  /// Throws when there is no such control.
  HWND Control(std::string_view name) const;
  bool Gone() const { return !Exists() || !IsWindowVisible(FForm); }
  void WaitGone() const;
  /// Nothing of the form itself is left to be drawn. In this process only.
  void WaitPainted() const;

  // ---- looking ----

  std::string Caption() const;
  std::string Text(std::string_view name) const;
  void WaitText(std::string_view name, std::string_view text) const;
  bool Enabled(std::string_view name) const;
  bool Visible(std::string_view name) const;
  /// The name of the control that has the focus, or that contains what has it; empty when none.
  std::string Focus() const;
  void WaitFocus(std::string_view name) const;
  std::vector<std::string> Items(std::string_view name) const;
  /// Empty when none is selected.
  std::string SelectedItem(std::string_view name) const;
  /// What a user reads there: its text, or else the item selected in it.
  std::string Reading(std::string_view name) const;
  /// BST_UNCHECKED, BST_CHECKED or BST_INDETERMINATE of a check box.
  int Checked(std::string_view name) const;
  bool ItemChecked(std::string_view name, std::string_view item) const;
  /// The caption of the radio button that is on in a group, or empty. The buttons are named as
  /// their group with their number from 0 behind.
  std::string RadioItem(std::string_view name) const;
  int Position(std::string_view upDown) const;

  // ---- acting ----

  void Click(std::string_view name, int clicks = 1);
  void DoubleClick(std::string_view name) { Click(name, 2); }
  /// At a part of the control's width and height, from 0 to 1.
  void ClickAt(std::string_view name, double x, double y, int clicks = 1);
  void ClickFormAt(POINT client);
  /// Rests the pointer at a part of the control, enabled or not, until the tip that comes up is
  /// that one; throws when it does not come. Points again meanwhile: a busy machine takes a tip
  /// away, or puts the pointer back for a moment to where it had been.
  void WaitForTip(std::string_view name, std::string_view text, double x = 0.5, double y = 0.5);
  void CloseBox();
  /// The question mark of the caption bar, then the control. In this process only.
  void AskAbout(std::string_view name);
  /// Keys are sent once the form is the active window.
  void Press(WORD virtualKey, unsigned modifiers = mdNone);
  /// Words with blanks between them: keys by their names ("Home", "Enter", "Alt+O", "Shift+Tab"),
  /// or what is typed.
  void Keys(std::string_view words);
  void Mnemonic(char letter) { Press(static_cast<WORD>(letter), mdAlt); }
  /// By Tab alone; throws when a whole round does not meet the control.
  void TabTo(std::string_view name);
  void Type(std::string_view utf8);
  /// Clicks into the edit and types the text in place of what is there.
  void Fill(std::string_view name, std::string_view utf8);
  /// By mouse, opening the list of a combo box.
  void Select(std::string_view name, std::string_view item);
  void DoubleClickItem(std::string_view name, std::string_view item);
  void ToggleItem(std::string_view name, std::string_view item);
  void StepUp(std::string_view upDown) { Step(upDown, true); }
  void StepDown(std::string_view upDown) { Step(upDown, false); }
  void SavePicture(const std::string& file) const;

 private:
  void WaitActive() const;
  bool Exists() const { return IsWindow(FForm) != FALSE; }
  HWND Find(std::string_view name) const;
  /// Throws unless a click there meets the control.
  void Reach(HWND control, POINT screen) const;
  POINT Inside(HWND control, double x, double y) const;
  int ItemIndex(HWND control, std::string_view item) const;
  /// False when the caption has no such button.
  bool FindInCaption(LRESULT hit, POINT& screen) const;
  void Step(std::string_view upDown, bool up);

  TUser* FUser;
  HWND FForm;
};
