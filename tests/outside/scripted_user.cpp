#include "outside/scripted_user.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "outside/watchdog.h"
#include "user/window.h"

namespace {
constexpr int RescueMs = 5000;
constexpr int AfterCallMs = 3000;  ///< for what a call that has returned leaves to happen

/// A form of the library or a box of the system.
bool IsDialog(HWND window) {
  const std::string name = ClassOf(window);
  return name == "#32770" || name.starts_with("TDlg");
}
}  // namespace

void TScriptedUser::During(const std::function<void()>& call,
                           const std::function<void(TScriptedUser&)>& script) {
  FCallEnded = false;
  FScriptEnded = false;
  FHopelessFrom = 0;
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
  if (!FIdle) FHopelessFrom = GetTickCount64() + AfterCallMs;
  MSG message;
  while (!FScriptEnded && GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  hand.join();
  TWatchdog::Watch(nullptr);
}

void TScriptedUser::WhileIdle(const std::function<void(TScriptedUser&)>& script) {
  FIdle = true;
  During([] {}, script);
}

std::string TScriptedUser::Hopeless() const {
  const ULONGLONG from = FHopelessFrom;
  return from && GetTickCount64() > from ? "the call has returned" : "";
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
      if (Shown(window) && IsWindowEnabled(window) && IsDialog(window))
        PostMessageW(window, WM_CLOSE, 0, 0);
    Sleep(50);
  }
  if (!FCallEnded) TWatchdog::End("the call does not return after its script failed");
}

void TScriptedUser::Settle() {
  WaitUntil("the program to take its input", [this] {
    // After its last window has gone, a program takes no input.
    return std::ranges::none_of(TopWindows(Process()), Shown) || FBarrier.Pass();
  });
}
