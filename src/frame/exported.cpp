#include "frame/exported.h"

#include "forms/window_thread.h"
#include "frame/singletons.h"
#include "platform/exception_room.h"

void ReportRefused(const void* handle) noexcept {
  static const void* last = nullptr;
  if (handle && std::exchange(last, handle) != handle) {
    DebugReport("a handle that is freed or foreign is refused");
  }
}

bool Admitted(const TPlace& place) noexcept {
  if (TWindowThread::IsCurrent()) return true;
  bool admitted = false;
  Guarded(
      [&] {
        if (HasWindows()) {
          if (TWindowThread::Running()) {
            DebugReport("a call from another thread than that of the windows is refused", place);
            return;
          }
          ForgetWindows();
        }
        PrepareToThrow();
        TWindowThread::Claim();
        admitted = true;
      },
      place);
  return admitted;
}
