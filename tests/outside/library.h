#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>

#include "outside/stand_ins.h"
#include "zefext_load.h"

/// One function of the library, found by its name when it is called.
template <class TFunction>
class TExport {
 public:
  TExport(HMODULE module, const char* name) : FModule(module), FName(name) {}

  template <class... TArguments>
  auto operator()(TArguments... arguments) const {
    const auto function =
        reinterpret_cast<TFunction>(reinterpret_cast<void*>(GetProcAddress(FModule, FName)));
    if (!function) throw std::runtime_error(std::string("the library does not export ") + FName);
    return function(arguments...);
  }

 private:
  HMODULE FModule;
  const char* FName;
};

/// The library under test, loaded by its name as a host loads it, and unloaded with this object.
class TLibrary {
 public:
  explicit TLibrary(const std::string& file = "zefext.dll") : Module(LoadLibraryA(file.c_str())) {
    if (!Module)
      throw std::runtime_error(file + " cannot be loaded: error " + std::to_string(GetLastError()));
    StandInFor(Module);
  }
  TLibrary(const TLibrary&) = delete;
  TLibrary& operator=(const TLibrary&) = delete;
  ~TLibrary() { FreeLibrary(Module); }

  const HMODULE Module;

#define ZEF_EXPORT(result, name, parameters) const TExport<decltype(&::name)> name{Module, #name};
  ZEFEXT_FUNCTIONS(ZEF_EXPORT)
#undef ZEF_EXPORT

  // Under this compiler's names for them; the reference is a pointer in the call.
  const TExport<HWND(WINAPI*)(void* parent, const char* helpFile, void** view)> CreateExampleView{
      Module, "_Z17CreateExampleViewPvPKcRP8IUnknown@12"};
  const TExport<decltype(&::VCLExDlgDlwdGive)> VCLExDlgDlwdGive{
      Module, "_Z16VCLExDlgDlwdGiveP9IExClass1Pv@8"};
};
