#pragma once

#include <loopback_server.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "outside/directories_fixture.h"
#include "outside/host_objects.h"

/// Acts on the library's windows from a timer of the host's own thread, by messages and without
/// input: quick, and the same on a busy machine. A step is done once its form, a window of that
/// class, is shown and takes input; when all are done, whatever dialog came since is left by
/// Cancel.
class TPilot {
 public:
  using TAct = std::function<void(HWND form)>;
  struct TStep {
    const char* Form;
    std::vector<TAct> Acts;
  };

  explicit TPilot(std::vector<TStep> steps);
  TPilot(const TPilot&) = delete;
  TPilot& operator=(const TPilot&) = delete;
  ~TPilot();

  /// For calls that leave a window open: the host's loop until all steps are done.
  static void Serve();
  /// From the last step: by itself the call must end, the pilot leaves nothing for it.
  static void Keep() { Current->FLeaves = false; }
  /// From a step: the pilot is about to vanish with its stack.
  static void Forget() {
    KillTimer(nullptr, Current->FTimer);
    Current = Current->FOuter;
  }

  /// How long a step waits (ms). Less than usual: then it may never come, and that is no failure.
  static constexpr int Usual = TUser::PatienceMs;
  static int Patience;

  /// Topmost first; of that class, or any dialog.
  static HWND Find(const char* form = nullptr);

 private:
  static void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD);
  void Leave();

  static TPilot* Current;
  TPilot* FOuter;
  std::vector<TStep> FSteps;
  size_t FNext = 0;
  bool FLeaves = true;
  std::vector<HWND> FOld = TopWindows(GetCurrentProcessId());  ///< on screen, is not left
  ULONGLONG FDeadline;
  UINT_PTR FTimer;
};

TPilot::TAct Selects(const char* list, const std::string& item);
TPilot::TAct SelectsRow(const char* listView, int index);
TPilot::TAct Fills(const char* edit, const std::string& text);
/// By its own loop, not from here: it may open another dialog.
TPilot::TAct Clicks(const char* button);

/// A host that has floating-point exceptions raised, while there is an object of this kind; what it
/// calls leaves it so.
struct TUnmasked {
  static constexpr unsigned short Control = 0x37B;  // of divisions by zero
  static unsigned short Now() {
    unsigned short control = 0;
    asm volatile("fnstcw %0" : "=m"(control));
    return control;
  }
  TUnmasked() { asm volatile("fldcw %0" : : "m"(Control)); }
  TUnmasked(const TUnmasked&) = delete;
  TUnmasked& operator=(const TUnmasked&) = delete;
  ~TUnmasked() {
    EXPECT_EQ(Now(), Control);
    asm volatile("fninit");
  }
};

/// Each window of the library in a moment of its life, opened through its export.
class TSituations : public TDirectoriesTest {
 protected:
  enum class TKind {
    Singleton,  ///< a modal dialog that VCLFree ends
    Modal,
    Modeless,
  };
  struct TCall {
    std::string (TSituations::*Call)();  ///< what the export gave
    const char* Cancelled;               ///< what it gives when it is left so
    TKind Kind = TKind::Singleton;

    bool Modal() const { return Kind != TKind::Modeless; }
  };
  struct TSituation : TCall {
    const char* Name;
    const char* Top;                        ///< the class of the topmost window at that moment
    std::vector<TPilot::TStep> Steps = {};  ///< to the moment
  };
  static const std::vector<TSituation> Situations;

  void SetUp() override;
  void TearDown() override;
  /// Opens it and comes back when the call has ended.
  std::string Run(const TSituation& situation, const TPilot::TAct& last = {});
  /// No window is left on screen or disabled, no call counts as going on.
  void ExpectNothingLeft();
  void NewOwner();
  /// A new server; this one answers nothing.
  virtual void Listen();

  std::string Base(), Assistant(), Picker(), Editor(), Directories(), Filter(), Offer();
  std::string Modeless(), View(), Traces(), Download();

  HWND Owner = nullptr;  ///< the main window that the library knows
  HWND Edit = nullptr;   ///< in it, where the user is at work
  std::string Home;
  std::optional<TDatabaseFile> Database;
  std::optional<TLoopbackServer> Server;
};
