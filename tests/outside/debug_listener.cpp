#include "outside/debug_listener.h"

#include <windows.h>

#include <cstdio>
#include <mutex>
#include <string_view>
#include <utility>

namespace {
constexpr DWORD DebugPrint = 0x40010006;
std::mutex Guard;
std::string Heard;

LONG CALLBACK Listen(EXCEPTION_POINTERS* exception) {
  const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
  if (record.ExceptionCode == DebugPrint && record.NumberParameters >= 2) {
    const std::string_view line = reinterpret_cast<const char*>(record.ExceptionInformation[1]);
    if (line.starts_with("zefext: ")) {
      std::printf("%.*s", static_cast<int>(line.size()), line.data());
      const std::lock_guard lock(Guard);
      Heard += line;
    }
  }
  return EXCEPTION_CONTINUE_SEARCH;
}
}  // namespace

void TDebugListener::Start() { AddVectoredExceptionHandler(1, Listen); }

std::string TDebugListener::Take() {
  const std::lock_guard lock(Guard);
  return std::exchange(Heard, {});
}
