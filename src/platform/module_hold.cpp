#include "platform/module_hold.h"

#include <windows.h>

#include <memory>

#include "platform/exception_room.h"
#include "platform/guard.h"

namespace {

constexpr LONGLONG kMoment = LONGLONG{250} * 10000;  // in units of 100 ns

void CALLBACK LetGo(PTP_CALLBACK_INSTANCE instance, void* module, PTP_TIMER timer) {
  FreeLibraryWhenCallbackReturns(instance, static_cast<HMODULE>(module));
  CloseThreadpoolTimer(timer);
}

struct TJob {
  TModuleHold Hold;
  std::function<void()> Body;
};

void CALLBACK RunJob(PTP_CALLBACK_INSTANCE, void* job) {
  const std::unique_ptr<TJob> owned(static_cast<TJob*>(job));
  PrepareToThrow();
  Guarded([&] { owned->Body(); });
}

}  // namespace

TModuleHold::TModuleHold() {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<LPCWSTR>(&LetGo),
                     &module);
  FModule = module;
}

TModuleHold::~TModuleHold() {
  if (!FModule) return;
  // Without a timer the library stays in memory for good, which harms nobody.
  if (const PTP_TIMER timer = CreateThreadpoolTimer(LetGo, FModule, nullptr)) {
    ULARGE_INTEGER due;
    due.QuadPart = static_cast<ULONGLONG>(-kMoment);
    FILETIME time{due.LowPart, due.HighPart};
    SetThreadpoolTimer(timer, &time, 0, 0);
  }
}

void RunInBackground(std::function<void()> job) {
  auto owned = std::make_unique<TJob>();
  owned->Body = std::move(job);
  if (TrySubmitThreadpoolCallback(RunJob, owned.get(), nullptr)) {
    static_cast<void>(owned.release());  // its own from here on
  } else {
    RunJob(nullptr, owned.release());
  }
}
