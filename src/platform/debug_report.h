#pragma once

#include <source_location>
#include <string_view>

/// Where something happened: a function, and the window and message it was dealing with, if any.
struct TPlace {
  TPlace(std::source_location at, void* window = nullptr, unsigned message = 0)
      : Function(at.function_name()), Window(window), Message(message) {}

  const char* Function;
  void* Window;
  unsigned Message;
};

/// The library's voice when something is wrong that no user is to see: one line to the debugger's
/// output, with the library's name before it and the place and the thread behind. Any thread.
void DebugReport(std::string_view text,
                 const TPlace& place = std::source_location::current()) noexcept;

/// The export whose name reports on this thread tell besides, null when none is being called: set
/// now, and the one before handed out to be set again. A string literal.
const char* ExchangeReportedCall(const char* name) noexcept;

/// Reports the exception that is being handled.
void ReportException(const TPlace& place) noexcept;
