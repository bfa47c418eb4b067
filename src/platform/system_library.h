#pragma once

#include "platform/handle.h"

/// Loads a library by its file name, from the system's own folder only; its module handle, or null.
void* LoadSystemLibrary(const wchar_t* name);

/// A system library that few calls need, loaded for as long as the object lives.
class TSystemLibrary {
 public:
  /// The file name, taken from the system's own folder only.
  explicit TSystemLibrary(const wchar_t* name);

  /// A function of the given pointer type, or null when it or the whole library is not there.
  template <class TFunction>
  TFunction Function(const char* name) const {
    return reinterpret_cast<TFunction>(Address(name));
  }

 private:
  using TAddress = void (*)();
  TAddress Address(const char* name) const;
  TModuleHandle FModule;
};
