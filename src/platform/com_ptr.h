#pragma once

#include <unknwn.h>

#include <memory>

struct TComReleaser {
  // A class of ours may be an IUnknown in more than one way.
  template <class TInterface>
  void operator()(TInterface* object) const {
    object->Release();
  }
};

/// The one reference that its owner holds.
template <class TInterface>
using TComPtr = std::unique_ptr<TInterface, TComReleaser>;

/// Another interface of the same object, or null.
template <class TInterface>
TComPtr<TInterface> QueryFor(IUnknown* object, REFIID id) {
  void* found = nullptr;
  if (!object || FAILED(object->QueryInterface(id, &found))) return nullptr;
  return TComPtr<TInterface>(static_cast<TInterface*>(found));
}
