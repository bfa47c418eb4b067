#include "platform/unwind_notice.h"

#include <windows.h>

#include "platform/guard.h"

struct TUnwindNotice::THandler {
  static EXCEPTION_DISPOSITION Handle(EXCEPTION_RECORD* record, void* frame, CONTEXT* /*context*/,
                                      void* /*dispatcher*/) {
    constexpr DWORD unwinding = 0x2;
    constexpr DWORD exitUnwinding = 0x4;
    auto* notice = static_cast<TUnwindNotice*>(frame);
    if ((record->ExceptionFlags & (unwinding | exitUnwinding)) != 0) {
      Guarded([&] { notice->FUnwound(notice->FObject); });
    }
    return ExceptionContinueSearch;
  }
};

TUnwindNotice::TUnwindNotice(TUnwound unwound, void* object)
    : FHandler(reinterpret_cast<void*>(THandler::Handle)), FUnwound(unwound), FObject(object) {
  asm volatile("movl %%fs:0, %0" : "=r"(FNext) : : "memory");
  asm volatile("movl %0, %%fs:0" : : "r"(this) : "memory");
}

TUnwindNotice::~TUnwindNotice() { asm volatile("movl %0, %%fs:0" : : "r"(FNext) : "memory"); }
