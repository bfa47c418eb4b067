#include <windows.h>

#include "forms/application.h"
#include "forms/window_class.h"
#include "frame/singletons.h"
#include "platform/guard.h"
#include "platform/locale_collation.h"

namespace {

int processAttachCount = 0;
int threadAttachCount = 0;

void Attach() {
  if (processAttachCount++ == 0) UseLocaleCollation();
}

void Detach(bool processEnds) {
  if (--processAttachCount != 0) return;
  // A process that ends takes its windows with it; other libraries that they need may be gone.
  if (processEnds) return;
  ReleaseSingletons();
  Application().ReleaseHostForms();
  UnregisterWindowClasses();
  Application().SetHandle(nullptr);
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
        break;
      default:
        break;
    }
  });
  return TRUE;
}
