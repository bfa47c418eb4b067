#include "outside/host_exception.h"
#include "outside/situations.h"
#include "user/say.h"

/// What may happen to a dialog from without, at rest and in the middle of an action: every
/// interruption in every situation.
class Interruptions : public TSituations {
 protected:
  enum class TEffect { EndsSingletons, EndsModals, CutsOff, Stays, Unloads };
  struct TInterruption {
    const char* Name;
    TEffect Effect;
    void (Interruptions::*Happen)();
  };
  static const std::vector<TInterruption> All;

  void Interrupt(const TSituation& situation, const TInterruption& interruption);

  void Free() { Library->VCLFree(); }
  void DestroyOwner() { DestroyWindow(Owner); }
  void Quit() { PostQuitMessage(7); }
  void Raise() {
    TPilot::Forget();  // nothing on the stack above is destroyed
    // From a window's procedure: the system swallows what a timer's raises.
    static const std::function<void()> raise = RaiseHostException;
    PostMessageW(MainWindow, WM_APP, 0, reinterpret_cast<LPARAM>(&raise));
  }
  void LetGo() {
    Library.reset();
    Server.reset();  // a fetch holds the library
  }
  void Disturb();
  void CallEverything();
  void Tell(UINT message, WPARAM wParam = 0, LPARAM lParam = 0, LRESULT least = 0);
  void ChangeDpi(int dpi);

 private:
  /// Nulls, but for the handle of a dialog, which somebody has to give back.
  template <class T>
  T Least() {
    if constexpr (std::is_same_v<T, ZefDialog*>) return &FMade;
    return T{};
  }
  template <class TResult, class... TArguments>
  void CallWithLeast(TResult(WINAPI* function)(TArguments...)) {
    FMade = nullptr;
    function(Least<TArguments>()...);
    Library->VCLFreeNonModalDialog(FMade);
  }

  ZefDialog FMade = nullptr;
  HWND FForm = nullptr;  ///< the topmost as the interruption comes
};

const std::vector<Interruptions::TInterruption> Interruptions::All{
    {"VCLFree", TEffect::EndsSingletons, &Interruptions::Free},
    {"the host's window goes", TEffect::EndsModals, &Interruptions::DestroyOwner},
    {"WM_QUIT", TEffect::EndsModals, &Interruptions::Quit},
    {"an exception of the host's", TEffect::CutsOff, &Interruptions::Raise},
    {"the library is let go", TEffect::Unloads, &Interruptions::LetGo},
    {"what leaves it there", TEffect::Stays, &Interruptions::Disturb},
};

void Interruptions::CallEverything() {
  const TPilot pilot({});  // leaves what comes upon what is there
#define ZEF_CALL(result, name, parameters)                                                         \
  if (#name != std::string_view("VCLFree") && #name != std::string_view("VCLSetMainWindowHandle")) \
    CallWithLeast(Library->name);
  ZEFEXT_FUNCTIONS(ZEF_CALL)
#undef ZEF_CALL
  for (const TSituation& other : Situations)
    if (other.Modal() && other.Steps.empty()) {
      EXPECT_EQ((this->*other.Call)(), other.Cancelled);
    }
}

/// Every window; the form stays.
void Interruptions::Tell(UINT message, WPARAM wParam, LPARAM lParam, LRESULT least) {
  for (const HWND top : TopWindows(GetCurrentProcessId())) {
    EXPECT_GE(SendMessageW(top, message, wParam, lParam), least) << ClassOf(top);
    for (const HWND child : Descendants(top)) SendMessageW(child, message, wParam, lParam);
  }
  EXPECT_TRUE(IsWindowVisible(FForm)) << message << WindowTree(GetCurrentProcessId());
}

void Interruptions::ChangeDpi(int dpi) {
  constexpr UINT BeforeParent = 0x02E2, AfterParent = 0x02E3;
  for (const HWND top : TopWindows(GetCurrentProcessId())) {
    RECT bounds = BoundsOf(top);
    SendMessageW(top, WM_DPICHANGED, static_cast<WPARAM>(MAKELONG(dpi, dpi)),
                 reinterpret_cast<LPARAM>(&bounds));
    for (const HWND child : Descendants(top))
      for (const UINT message : {BeforeParent, AfterParent}) SendMessageW(child, message, 0, 0);
  }
}

void Interruptions::Disturb() {
  CallEverything();
  Tell(WM_NULL);
  Tell(WM_QUERYENDSESSION, 0, 0, TRUE);
  Tell(WM_ENDSESSION, TRUE);
  Tell(WM_DISPLAYCHANGE, 32, MAKELPARAM(640, 480));
  for (const UINT message : {WM_THEMECHANGED, WM_SYSCOLORCHANGE, WM_SETTINGCHANGE, WM_FONTCHANGE})
    Tell(message);
  for (const int dpi : {144, 96}) {
    ChangeDpi(dpi);
    Tell(WM_NULL);
  }
}

void Interruptions::Interrupt(const TSituation& situation, const TInterruption& interruption) {
  SCOPED_TRACE(Say(situation.Name, ", ", interruption.Name));
  const bool ends =
      situation.Modal() &&
      (interruption.Effect == TEffect::EndsModals ||
       (interruption.Effect == TEffect::EndsSingletons && situation.Kind == TKind::Singleton));
  const TUnmasked unmasked;
  std::string outcome;
  const bool cut = THostHandler::CutsOff([&] {
    outcome = Run(situation, [&](HWND form) {
      FForm = form;
      (this->*interruption.Happen)();
      if (ends) TPilot::Keep();
    });
  });
  EXPECT_EQ(cut, interruption.Effect == TEffect::CutsOff);
  EXPECT_TRUE(!cut || GetFocus() == Edit);
  if (situation.Modal() && !cut) {
    EXPECT_EQ(outcome, situation.Cancelled);
  }
  MSG message{};
  const bool quit = PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE) != FALSE;
  EXPECT_EQ(quit && message.wParam == 7, interruption.Happen == &Interruptions::Quit);
  if (interruption.Effect == TEffect::Unloads) {
    WaitUnloaded();
    Library.emplace();
    Listen();
  }
  NewOwner();
  ExpectNothingLeft();
}

TEST_F(Interruptions, EndOrLeaveEveryDialogAndNothingBehind) {
  for (const TSituation& situation : Situations)
    for (const TInterruption& interruption : All) {
      // The call of the others is over, and their host's loop is its own.
      if (situation.Modal() || interruption.Effect != TEffect::CutsOff)
        Interrupt(situation, interruption);
    }
}
