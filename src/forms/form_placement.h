#pragma once

#include <windows.h>

#include <vector>

#include "forms/control.h"
#include "forms/rules/arrangement.h"

class TForm;

/// How large a form is, where it stands and where its controls stand in it: as designed where the
/// screen has room for that, else by the anchors, and scrolled where even they have no room left.
/// All sizes are device pixels. Everything but the constructor needs the form's window.
class TFormPlacement {
 public:
  struct TPlace {
    TControl* Control;
    RECT Bounds;  ///< in the form's client area, as long as it is not scrolled
  };

  explicit TFormPlacement(TForm& form) : FForm(form) {}

  SIZE ClientSize() const;
  /// The size that the user gave the last form of its class, else the layout's.
  void SizeAsWanted();
  /// The controls, in Tab order, and where their windows are to be made.
  std::vector<TPlace> SetControls(std::vector<TControl*> controls);
  /// Puts the controls where they belong in the form's size of now.
  void Arrange();
  /// Moves the form to where its layout says, at the size it has room for there.
  void Place();
  /// Moves it back to where the user can see it, if it is not.
  void KeepOnScreen();
  /// A size that the user gave the form is what the next of its class begins with.
  void RememberSize();
  /// Scrolls the control into view.
  void Reveal(const TControl& control);
  /// True when the message was dealt with.
  bool HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);

 private:
  HWND Window() const;
  bool Embedded() const;
  /// With what the scroll bars take of it.
  SIZE FullClient() const;
  SIZE Borders() const;
  SIZE DesignedClient() const;
  void SetClientSize(SIZE size);
  RECT WorkAreaAround() const;
  void FitTo(const RECT& workArea);
  void KeepInside(const RECT& workArea);
  bool ExceedsScreen() const;
  void Restored();
  void ScaleTo(int dpi);
  void Measure();
  std::vector<TPlace> PlacesIn(SIZE client) const;
  void Scroll(int bar, int position);
  void ScrollBy(int bar, int wheel);
  void HandleScrollBar(int bar, int request);
  void LimitTracking(MINMAXINFO& limits) const;

  TForm& FForm;
  std::vector<TControl*> FArranged;  ///< the items of FArrangement, in Tab order
  TArrangement FArrangement;
  SIZE FWantedClient{};    ///< what the form would have where there is room
  SIZE FGivenClient{};     ///< what it was given of it
  bool FSetAside = false;  ///< minimised or maximised
};
