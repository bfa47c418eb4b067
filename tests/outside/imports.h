#pragma once

#include <windows.h>

/// Asks of each function that a module imports by name what is to stand in its place: null, it
/// stays.
template <class TInPlaceOf>
void RedirectImports(HMODULE module, const TInPlaceOf& inPlaceOf) {
  auto* image = reinterpret_cast<char*>(module);
  const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS32*>(
      image + reinterpret_cast<const IMAGE_DOS_HEADER*>(image)->e_lfanew);
  const auto& table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  for (auto* from = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(image + table.VirtualAddress);
       from->Name; ++from) {
    const auto* names = reinterpret_cast<const ULONG_PTR*>(image + from->OriginalFirstThunk);
    auto* addresses = reinterpret_cast<const void**>(image + from->FirstThunk);
    for (; *names; ++names, ++addresses) {
      if (IMAGE_SNAP_BY_ORDINAL32(*names)) continue;
      const auto* import = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(image + *names);
      const void* function = inPlaceOf(import->Name, *addresses);
      if (!function) continue;
      DWORD before = 0;
      VirtualProtect(addresses, sizeof *addresses, PAGE_READWRITE, &before);
      *addresses = function;
      VirtualProtect(addresses, sizeof *addresses, before, &before);
    }
  }
}
