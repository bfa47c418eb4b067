#include <windows.h>

#include "forms/application.h"
#include "forms/window_class.h"
#include "forms/window_thread.h"
#include "frame/singletons.h"
#include "platform/common_controls.h"
#include "platform/exception_room.h"
#include "platform/guard.h"
#include "platform/kept.h"
#include "platform/locale_collation.h"
#include "platform/runtime_leftovers.h"

namespace {

int processAttachCount = 0;
int threadAttachCount = 0;

void Attach() {
  if (processAttachCount++ != 0) return;
  PrepareToThrow();
  UseLocaleCollation();
}

/// A process that ends takes its windows with it, and other libraries that they need may be gone:
/// then nothing is released.
void Detach(bool processEnds) {
  if (--processAttachCount != 0 || processEnds) return;
  // Whatever fails below: an index that outlived the library would call into it.
  GiveBackRuntimeLeftovers();
  auto& application = Application();
  application.ForgetCalls();
  application.SetUnloading();
  // The last to let go may be any thread, but only their own can destroy windows.
  const DWORD thread = TWindowThread::Id();
  bool left = false;
  if (thread != 0 && !TWindowThread::IsCurrent()) {
    left = LeaveWindows(thread);
    application.WindowsLost();
  }
  ReleaseSingletons();
  application.ReleaseHostForms();
  // Those that stood on a stack which an exception of the host's cut off.
  LeaveWindows(GetCurrentThreadId());
  UnregisterWindowClasses();
  // The code of those that wait for their thread to close them is the common controls'.
  if (!left) ReleaseCommonControls();
  application.SetHandle(nullptr);
  ReleaseKept();
  TWindowThread::Forget();
}

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID reserved) {
  Guarded([&] {
    switch (reason) {
      case DLL_PROCESS_ATTACH:
        Attach();
        break;
      case DLL_PROCESS_DETACH:
        Detach(reserved != nullptr);
        break;
      case DLL_THREAD_ATTACH:
        ++threadAttachCount;
        break;
      case DLL_THREAD_DETACH:
        --threadAttachCount;
        TWindowThread::ThreadEnds();
        break;
      default:
        break;
    }
  });
  return TRUE;
}
