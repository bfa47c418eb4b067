#include "platform/thread.h"

#include <windows.h>

#include <stdexcept>

#include "platform/exception_room.h"
#include "platform/guard.h"

namespace {

constexpr DWORD kThreadNaming = 0x406D1388;

struct TThreadName {
  DWORD Type;
  LPCSTR Name;
  DWORD ThreadId;
  DWORD Flags;
};

LONG CALLBACK IgnoreThreadNaming(EXCEPTION_POINTERS* exception) {
  return exception->ExceptionRecord->ExceptionCode == kThreadNaming ? EXCEPTION_CONTINUE_EXECUTION
                                                                    : EXCEPTION_CONTINUE_SEARCH;
}

}  // namespace

TThread::TThread() : FEnded(std::make_shared<TSignal>(TSignal::TReset::Never)) {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<LPCWSTR>(&Run),
                     &module);
  FModule = module;
  FHandle = TKernelHandle(CreateThread(nullptr, 0, Run, this, CREATE_SUSPENDED, nullptr));
  if (FHandle) return;
  FreeLibrary(module);
  throw std::runtime_error("no thread");
}

void TThread::Resume() { ResumeThread(FHandle.Get()); }

void TThread::WaitFor() const {
  // The signal and not the thread's end, which the system holds up while a library is loaded or
  // unloaded, perhaps by the very thread that waits here. When the process ends, the system has
  // ended the thread in the middle of its body: then only its handle tells.
  const HANDLE either[] = {FEnded->Handle(), FHandle.Get()};
  WaitForMultipleObjects(2, either, FALSE, INFINITE);
}

DWORD WINAPI TThread::Run(void* thread) {
  auto* self = static_cast<TThread*>(thread);
  const auto module = static_cast<HMODULE>(self->FModule);
  {
    const auto ended = self->FEnded;
    PrepareToThrow();
    Guarded([&] { self->Execute(); });
    ended->Set();
  }
  FreeLibraryAndExitThread(module, 0);
}

void NameThisThread(const char* name) {
  const TThreadName record{0x1000, name, static_cast<DWORD>(-1), 0};
  // A debugger sees the exception first; nobody else shall.
  void* handler = AddVectoredExceptionHandler(1, IgnoreThreadNaming);
  if (!handler) return;
  RaiseException(kThreadNaming, 0, sizeof record / sizeof(ULONG_PTR),
                 reinterpret_cast<const ULONG_PTR*>(&record));
  RemoveVectoredExceptionHandler(handler);
}
