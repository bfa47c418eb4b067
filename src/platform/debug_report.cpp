#include "platform/debug_report.h"

#include <windows.h>

#include <cstdio>
#include <exception>
#include <utility>

namespace {

/// The name alone in what the compiler calls a function by: that of the outermost, without result
/// and parameters.
std::string_view NameIn(std::string_view function) {
  function = function.substr(0, function.find('('));
  return function.substr(function.rfind(' ') + 1);
}

// Of the windows' thread, the only one that calls nest on.
const char* reportedCall = nullptr;
DWORD reportedThread = 0;

}  // namespace

const char* ExchangeReportedCall(const char* name) noexcept {
  reportedThread = GetCurrentThreadId();
  return std::exchange(reportedCall, name);
}

void DebugReport(std::string_view text, const TPlace& place) noexcept {
  char window[120] = "";
  if (place.Window) {
    char name[64] = "?";
    GetClassNameA(static_cast<HWND>(place.Window), name, sizeof name);
    std::snprintf(window, sizeof window, ", window %s, message 0x%04X", name, place.Message);
  }
  // On the stack: memory may be what has run out.
  char line[600];
  const std::string_view at = NameIn(place.Function);
  std::string_view call = at;
  if (reportedCall && reportedThread == GetCurrentThreadId()) call = NameIn(reportedCall);
  std::snprintf(line, sizeof line, "zefext: %.*s (in %.*s%s%s%.*s, thread %lu)\n",
                static_cast<int>(text.size()), text.data(), static_cast<int>(at.size()), at.data(),
                window, call == at ? "" : ", called as ",
                call == at ? 0 : static_cast<int>(call.size()), call.data(), GetCurrentThreadId());
  OutputDebugStringA(line);
}

void ReportException(const TPlace& place) noexcept {
  try {
    throw;
  } catch (const std::exception& error) {
    DebugReport(error.what(), place);
  } catch (...) {
    DebugReport("an exception of unknown type", place);
  }
}
