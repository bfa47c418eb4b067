#pragma once

#include <windows.h>

#include <csetjmp>
#include <functional>

constexpr DWORD HostException = 0xE0000001;

inline void RaiseHostException() { RaiseException(HostException, 0, 0, nullptr); }

/// Ends a call by an exception as a host's own handler does: the system unwinds the stack, and the
/// host goes on behind the call.
class THostHandler {
 public:
  /// True when that exception came out of the call.
  static bool CutsOff(const std::function<void()>& call, DWORD wanted = HostException) {
    THostHandler handler;
    handler.FWanted = wanted;
    asm volatile("movl %%fs:0, %0" : "=r"(handler.FNext) : : "memory");
    asm volatile("movl %0, %%fs:0" : : "r"(&handler) : "memory");
    volatile bool cut = true;
    if (setjmp(handler.FBack) == 0) {
      call();
      cut = false;
    }
    asm volatile("movl %0, %%fs:0" : : "r"(handler.FNext) : "memory");
    return cut;
  }

 private:
  static EXCEPTION_DISPOSITION Handle(EXCEPTION_RECORD* record, void* frame, CONTEXT*, void*) {
    auto* const self = static_cast<THostHandler*>(frame);
    const bool unwinding = record->ExceptionFlags & 6;
    if (record->ExceptionCode == self->FWanted && !unwinding) longjmp(self->FBack, 1);
    return ExceptionContinueSearch;
  }

  void* FNext = nullptr;
  EXCEPTION_DISPOSITION (*FHandler)(EXCEPTION_RECORD*, void*, CONTEXT*, void*) = Handle;
  DWORD FWanted = 0;
  jmp_buf FBack{};
};
