#include "platform/system_library.h"

#include <windows.h>

#include <string>

void* LoadSystemLibrary(const wchar_t* name) {
  // By its full path: older systems do not know the flag that would limit the search.
  wchar_t folder[MAX_PATH];
  const UINT length = GetSystemDirectoryW(folder, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return nullptr;
  return LoadLibraryW((std::wstring(folder) + L"\\" + name).c_str());
}

TSystemLibrary::TSystemLibrary(const wchar_t* name)
    : FModule(static_cast<HMODULE>(LoadSystemLibrary(name))) {}

TSystemLibrary::TAddress TSystemLibrary::Address(const char* name) const {
  if (!FModule) return nullptr;
  return reinterpret_cast<TAddress>(GetProcAddress(FModule.Get(), name));
}
