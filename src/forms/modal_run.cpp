#include "forms/modal_run.h"

#include <algorithm>
#include <string_view>

#include "forms/form.h"
#include "platform/common_controls.h"
#include "platform/guard.h"
#include "platform/window_list.h"

namespace {

/// A message box over the form; its answer is a no.
bool IsBoxOver(HWND window, HWND form) {
  char name[8] = {};
  GetClassNameA(window, name, sizeof name);
  return GetWindow(window, GW_OWNER) == form && std::string_view(name) == "#32770";
}

}  // namespace

TModalRun::TModalRun(TForm& form) : FForm(form), FFocus(GetFocus()) {
  auto& application = Application();
  // The host may let go of the library from a message that the run serves.
  if (!application.FHold) application.FHold.emplace();
  // The dialog would never hear of the mouse while the host holds it.
  ReleaseCapture();
  FWorld.emplace(FForm.FHandle);
  application.FModalRuns.push_back(this);
  FForm.FModalRun = this;
  FForm.FModalResult = mrNone;
}

void TModalRun::End() {
  if (std::exchange(FEnded, true)) return;
  const HWND active = FWorld->Active();
  FWorld.reset();
  FForm.FModalRun = nullptr;
  std::erase(Application().FModalRuns, this);
  Guarded([this] { FForm.Hide(); });
  // A list that was open under a held button would hold the mouse for good.
  ReleaseCapture();
  if (IsWindow(active)) SetActiveWindow(active);
  // The system remembers which window was active, not which control in it.
  if (FFocus && GetActiveWindow() == active && GetAncestor(FFocus, GA_ROOT) == active &&
      IsWindowVisible(FFocus) && IsWindowEnabled(FFocus)) {
    SetFocus(FFocus);
  }
  FForm.FActiveControl = FForm.FFirstActive;
  FMasks.reset();
}

void TModalRun::Abandon() {
  FAbandoned = true;
  if (!FForm.FHandle) return;
  Guarded([&] {
    for (const HWND window : WindowsOfThread(GetCurrentThreadId()))
      if (IsBoxOver(window, FForm.FHandle)) EndDialog(window, IDCANCEL);
  });
}

void TModalRun::Run() {
  FForm.Show();
  // Over the windows that are disabled now, also where the system did not put it there.
  SetWindowPos(FForm.FHandle, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  Serve();
  if (FAbandoned) {
    FForm.FModalResult = mrCancel;
  } else if (FForm.OnClose) {
    Guarded(FForm.OnClose);
  }
}

void TModalRun::Serve() {
  const THostControls controls;
  MSG message;
  while (!FAbandoned) {
    if (FForm.FModalResult != mrNone) {
      if (FForm.CloseQuery()) return;
      FForm.FModalResult = mrNone;
      continue;
    }
    if (!PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      // What other threads send is served without a message to be got, and may have set the result:
      // waiting for messages alone would sleep on.
      if (FForm.FModalResult == mrNone && !FAbandoned) {
        MsgWaitForMultipleObjectsEx(0, nullptr, INFINITE, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
      }
      continue;
    }
    if (message.message == WM_QUIT) {
      // The program is ending: the host's own loop must see it too.
      PostQuitMessage(static_cast<int>(message.wParam));
      FForm.FModalResult = mrCancel;
      return;
    }
    if (!FForm.TranslateKey(message) &&
        (!FForm.FHandle || !IsDialogMessageW(FForm.FHandle, &message))) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  }
}
