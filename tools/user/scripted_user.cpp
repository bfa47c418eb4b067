#include "user/scripted_user.h"

#include <algorithm>
#include <atomic>
#include <thread>

#include "user/watchdog.h"
#include "user/window.h"

void TScriptedUser::During(const std::function<void()>& call,
                           const std::function<void(TScriptedUser&)>& script) {
  TWatchdog::Watch(this);
  std::atomic<bool> ended = false;
  const DWORD uiThread = GetCurrentThreadId();
  std::thread hand([&, uiThread] {
    try {
      script(*this);
    } catch (const std::exception& error) {
      TWatchdog::End(error.what());
    }
    ended = true;
    PostThreadMessageW(uiThread, WM_NULL, 0, 0);
  });
  call();
  MSG message;
  while (!ended && GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  hand.join();
  TWatchdog::Watch(nullptr);
}

void TScriptedUser::Settle() {
  WaitUntil("the program to take its input", [this] {
    // After its last window has gone, a program takes no input.
    return std::ranges::none_of(TopWindows(Process()), Shown) || FBarrier.Pass();
  });
}
