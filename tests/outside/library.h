#pragma once

#include <windows.h>

#include <stdexcept>

#include "outside/stand_ins.h"
#include "user/say.h"
#include "zefext_load.h"

/// The library under test, loaded by its name as a host loads it, and unloaded with this object.
class TLibrary : public ZefExt {
 public:
  explicit TLibrary(const char* file = "zefext.dll") : ZefExt() {
    if (const char* missing = ZefExtLoad(this, file))
      throw std::runtime_error(Say(missing, " is not there: error ", GetLastError()));
    StandInFor(Module);
  }
  TLibrary(const TLibrary&) = delete;
  TLibrary& operator=(const TLibrary&) = delete;
  ~TLibrary() { FreeLibrary(Module); }
};
