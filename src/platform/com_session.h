#pragma once

#include <windows.h>

#include <ole2.h>

#include "platform/com_ptr.h"
#include "platform/system_library.h"

/// COM on this thread for as long as the object lives. What initialised the thread stays
/// initialised. Only with a session is ole32.dll in memory: most hosts never need it.
class TComSession {
 public:
  enum class TKind {
    Com,  ///< components of any threading model
    Ole   ///< windows as well: drop targets, embedded controls
  };
  explicit TComSession(TKind kind) {
    if (kind == TKind::Ole) {
      const auto initialize = Function<decltype(&OleInitialize)>("OleInitialize");
      FResult = initialize ? initialize(nullptr) : E_FAIL;
      FEnd = Function<decltype(&OleUninitialize)>("OleUninitialize");
    } else {
      const auto initialize = Function<decltype(&CoInitializeEx)>("CoInitializeEx");
      FResult = initialize ? initialize(nullptr, COINIT_APARTMENTTHREADED) : E_FAIL;
      FEnd = Function<decltype(&CoUninitialize)>("CoUninitialize");
    }
  }
  TComSession(const TComSession&) = delete;
  TComSession& operator=(const TComSession&) = delete;
  ~TComSession() {
    // A thread that the host gave the other threading model is not ours to end.
    if (SUCCEEDED(FResult)) FEnd();
  }

  /// Single-threaded, as windows need it.
  bool Apartment() const { return SUCCEEDED(FResult); }
  /// Components can be made, if they take the threading model that the host chose.
  bool Usable() const { return Apartment() || FResult == RPC_E_CHANGED_MODE; }
  /// A component that runs in this process, or null. To be released before the session ends.
  template <class TInterface>
  TComPtr<TInterface> Make(REFCLSID component, REFIID id) const {
    const auto create = Function<decltype(&CoCreateInstance)>("CoCreateInstance");
    void* made = nullptr;
    if (!Usable() || !create || FAILED(create(component, nullptr, CLSCTX_INPROC_SERVER, id, &made)))
      return nullptr;
    return TComPtr<TInterface>(static_cast<TInterface*>(made));
  }
  /// A function of ole32.dll by its pointer type, or null.
  template <class TFunction>
  TFunction Function(const char* name) const {
    return FLibrary.Function<TFunction>(name);
  }

 private:
  TSystemLibrary FLibrary{L"ole32.dll"};
  HRESULT FResult;
  decltype(&CoUninitialize) FEnd = nullptr;
};
