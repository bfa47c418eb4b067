#include "platform/system_library.h"

#include <windows.h>

TSystemLibrary::TSystemLibrary(const wchar_t* name)
    : FModule(LoadLibraryExW(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32)) {}

TSystemLibrary::~TSystemLibrary() {
  if (FModule) FreeLibrary(static_cast<HMODULE>(FModule));
}

TSystemLibrary::TAddress TSystemLibrary::Address(const char* name) const {
  if (!FModule) return nullptr;
  return reinterpret_cast<TAddress>(GetProcAddress(static_cast<HMODULE>(FModule), name));
}
