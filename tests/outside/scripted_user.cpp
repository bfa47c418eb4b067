#include "outside/scripted_user.h"

#include <gtest/gtest.h>

#include <thread>

#include "outside/watchdog.h"
#include "user/window.h"

namespace {
constexpr int RescueMs = 5000;
}  // namespace

void TScriptedUser::During(const std::function<void()>& call,
                           const std::function<void(TScriptedUser&)>& script) {
  FCallEnded = false;
  FScriptEnded = false;
  TWatchdog::Watch(this);
  const DWORD uiThread = GetCurrentThreadId();
  std::thread hand([&, uiThread] {
    Act(script);
    FScriptEnded = true;
    PostThreadMessageW(uiThread, WM_NULL, 0, 0);
  });
  try {
    call();
  } catch (const std::exception& error) {
    ADD_FAILURE() << error.what();
  }
  FCallEnded = true;
  MSG message;
  while (!FScriptEnded && GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  hand.join();
  TWatchdog::Watch(nullptr);
}

void TScriptedUser::Act(const std::function<void(TScriptedUser&)>& script) {
  try {
    script(*this);
  } catch (const std::exception& error) {
    ADD_FAILURE() << error.what() << "\nlast steps:\n"
                  << LastSteps() << "windows:\n"
                  << WindowTree(Process());
    CloseForms();
  }
}

void TScriptedUser::CloseForms() {
  const ULONGLONG deadline = GetTickCount64() + RescueMs;
  while (!FCallEnded && GetTickCount64() < deadline) {
    for (const HWND window : TopWindows(Process()))
      if (Shown(window) && IsWindowEnabled(window) && GetWindow(window, GW_OWNER))
        PostMessageW(window, WM_CLOSE, 0, 0);
    Sleep(50);
  }
  if (!FCallEnded) TWatchdog::End("the call does not return after its script failed");
}

void TScriptedUser::Settle() {
  if (!FBarrier.Pass(PatienceMs)) throw TUserError("the program does not take its input");
}
