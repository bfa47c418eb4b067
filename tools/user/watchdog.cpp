#include "user/watchdog.h"

#include <windows.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "user/user.h"
#include "user/window.h"

namespace {
constexpr UINT ExitCode = 3;
std::atomic<ULONGLONG> Deadline = 0;
std::atomic<const TUser*> Watched = nullptr;
}  // namespace

void TWatchdog::Start() {
  std::thread([] {
    for (;; Sleep(100)) {
      const ULONGLONG deadline = Deadline;
      if (deadline && GetTickCount64() > deadline) End("the test takes too long");
    }
  }).detach();
}

void TWatchdog::Allow(int seconds) {
  Deadline = seconds ? GetTickCount64() + static_cast<ULONGLONG>(seconds) * 1000 : 0;
}

void TWatchdog::Watch(const TUser* user) { Watched = user; }

void TWatchdog::End(std::string_view reason) {
  const TUser* user = Watched;
  std::printf("\nEnded: %.*s\nlast steps:\n%swindows:\n%s", static_cast<int>(reason.size()),
              reason.data(), user ? user->LastSteps().c_str() : "  (no script)\n",
              WindowTree(GetCurrentProcessId()).c_str());
  std::fflush(stdout);
  TerminateProcess(GetCurrentProcess(), ExitCode);
  std::abort();
}
