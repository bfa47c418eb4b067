#include "forms/painting_wait.h"

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <optional>

#include "forms/form.h"

namespace {

constexpr DWORD kTick = 1000;  // the system takes a thread that never asks for messages to be hung
constexpr int kMostAtOnce = 64;  // a window that never validates itself asks for paint for ever

/// Serves what may be served while the thread waits.
class TServant {
 public:
  TServant() = default;
  TServant(const TServant&) = delete;
  TServant& operator=(const TServant&) = delete;
  ~TServant() {
    // The program is ending: the host's own loop must see it too.
    if (FQuit) PostQuitMessage(static_cast<int>(*FQuit));
  }

  void ServeProgress(HWND window) { Dispatch(window, PBM_SETPOS); }
  void Serve() {
    std::vector<HWND> forms;
    for (const TForm* form : Application().Forms()) forms.push_back(form->Handle());
    for (const HWND form : forms) ServeProgress(form);
    Dispatch(nullptr, WM_PAINT);
    MSG message;
    PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
  }

 private:
  /// Messages of one kind to one window and those inside it, or to all.
  void Dispatch(HWND window, UINT kind) {
    MSG message;
    for (int count = 0; count < kMostAtOnce; ++count) {
      if (!PeekMessageW(&message, window, kind, kind, PM_REMOVE)) return;
      // This one comes whatever is asked for.
      if (message.message == WM_QUIT) {
        FQuit = message.wParam;
      } else {
        DispatchMessageW(&message);
      }
    }
  }

  std::optional<WPARAM> FQuit;
};

}  // namespace

void ServeProgress(HWND window) { TServant().ServeProgress(window); }

bool WaitPainting(const TSignal& signal, unsigned ms) {
  const ULONGLONG start = GetTickCount64();
  const HANDLE handle = signal.Handle();
  TServant servant;
  while (true) {
    const ULONGLONG waited = GetTickCount64() - start;
    const auto left =
        static_cast<DWORD>(ms == kForEver ? kTick : ms - std::min<ULONGLONG>(waited, ms));
    const DWORD woken = MsgWaitForMultipleObjects(1, &handle, FALSE, std::min(left, kTick),
                                                  QS_SENDMESSAGE | QS_PAINT | QS_POSTMESSAGE);
    if (woken == WAIT_OBJECT_0) return true;
    if (woken == WAIT_FAILED || left == 0) return false;
    servant.Serve();
  }
}
