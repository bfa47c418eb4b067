#pragma once

#include <utility>

/// One kind of kept object and how it is released.
struct TKept {
  void (*Release)();
  TKept* Next;
};
void AddKept(TKept& kept);

/// Destroys all kept objects, those made last first. As the library is unloaded.
void ReleaseKept();

/// The one object of its class that the library keeps: made by its first use, destroyed when the
/// library is unloaded. No static object, which would also be destroyed as the process ends, when
/// the libraries that it needs may be gone. User-interface thread only.
template <class T>
T& Kept() {
  static T* object = nullptr;
  static TKept kept{[] { delete std::exchange(object, nullptr); }, nullptr};
  if (!object) {
    object = new T;
    AddKept(kept);
  }
  return *object;
}
