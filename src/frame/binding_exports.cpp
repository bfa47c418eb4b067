#include "frame/exported.h"
#include "frame/singletons.h"
#include "zefext.h"

unsigned long ZEFEXT_API VCLGetVersion() { return ZEF_INTERFACE_VERSION; }

void ZEFEXT_API VCLSetMainWindowHandle(HWND mainWindow) {
  Exported([&] { Application().SetHandle(mainWindow); });
}

void ZEFEXT_API VCLSetMainHelpFile(const char* helpFile) {
  Exported([&] { Application().SetHelpFile(OrEmpty(helpFile)); });
}

void ZEFEXT_API VCLFree() {
  Exported([] { ReleaseSingletons(); });
}
