#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>

#include "zefext.h"

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
  }
  TLibrary(const TLibrary&) = delete;
  TLibrary& operator=(const TLibrary&) = delete;
  ~TLibrary() { FreeLibrary(Module); }

  const HMODULE Module;

#define ZEF_EXPORT(name) \
  const TExport<decltype(&::name)> name { Module, #name }
  ZEF_EXPORT(VCLGetVersion);
  ZEF_EXPORT(VCLSetMainWindowHandle);
  ZEF_EXPORT(VCLSetMainHelpFile);
  ZEF_EXPORT(VCLFree);
  ZEF_EXPORT(VCLInvokeModalDialog);
  ZEF_EXPORT(VCLInvokeNonModalDialog);
  ZEF_EXPORT(VCLFreeNonModalDialog);
  ZEF_EXPORT(VCLAnsiStringCreate);
  ZEF_EXPORT(VCLAnsiStringCopy);
  ZEF_EXPORT(VCLAnsiStringFree);
  ZEF_EXPORT(VCLAnsiStringSet);
  ZEF_EXPORT(VCLAnsiStringGet);
  ZEF_EXPORT(VCLAnsiStringConcat);
  ZEF_EXPORT(VCLStringListCreate);
  ZEF_EXPORT(VCLStringListFree);
  ZEF_EXPORT(VCLStringListAdd);
  ZEF_EXPORT(VCLStringListClear);
  ZEF_EXPORT(VCLStringListCount);
  ZEF_EXPORT(VCLStringListGet);
  ZEF_EXPORT(VCLStringListGetParam);
  ZEF_EXPORT(VCLStringListSetParam);
  ZEF_EXPORT(VCLStringListGetCommaText);
  ZEF_EXPORT(VCLStringListSetCommaText);
  ZEF_EXPORT(GetRegConf);
  ZEF_EXPORT(SetRegConf);
  ZEF_EXPORT(MD5);
  ZEF_EXPORT(VCLDialogShow);
  ZEF_EXPORT(VCLDialogHasChanged);
  ZEF_EXPORT(VCLDialogClearHasChanged);
  ZEF_EXPORT(VCLShowHint);
  ZEF_EXPORT(VCLHideHint);
  ZEF_EXPORT(VCLShowDebugText);
  ZEF_EXPORT(VCLSyntaxIsMethod);
  ZEF_EXPORT(VCLSyntaxIsConstant);
  ZEF_EXPORT(VCLSyntaxHelpBox);
  ZEF_EXPORT(VCLSyntaxConstHelpBox);
  ZEF_EXPORT(VCLSyntaxTypesBox);
  ZEF_EXPORT(VCLSyntaxGetNewTypes);
  ZEF_EXPORT(VCLSelectTypOp);
  ZEF_EXPORT(VCLSelectDirList);
  ZEF_EXPORT(VCLAskForDownload);
  ZEF_EXPORT(VCLNewURL);
  ZEF_EXPORT(VCLCmdURL);
#undef ZEF_EXPORT

  // Under this compiler's names for them; the reference is a pointer in the call.
  const TExport<HWND(WINAPI*)(void* parent, const char* helpFile, void** view)> CreateExampleView{
      Module, "_Z17CreateExampleViewPvPKcRP8IUnknown@12"};
  const TExport<decltype(&::VCLExDlgDlwdGive)> VCLExDlgDlwdGive{
      Module, "_Z16VCLExDlgDlwdGiveP9IExClass1Pv@8"};
};
