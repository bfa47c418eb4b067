#include "platform/signal.h"

#include <windows.h>

#include <stdexcept>

TSignal::TSignal(TReset reset)
    : FHandle(CreateEventW(nullptr, reset == TReset::Never, FALSE, nullptr)) {
  if (!FHandle) throw std::runtime_error("no event");
}

void TSignal::Set() const { SetEvent(Handle()); }

bool TSignal::Wait(unsigned ms) const { return WaitForSingleObject(Handle(), ms) == WAIT_OBJECT_0; }
