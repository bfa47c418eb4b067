#pragma once

#include <windows.h>

#include <functional>
#include <string>

/// The product's measurements, each a row of comma-separated values as ./bench reads them:
/// "Subject/variant/arguments",rounds,time,time,unit. "ours" is set against the other variants.

/// Registers a group of measurements; run in the order of their names.
struct TBenchGroup {
  TBenchGroup(const char* name, void (*run)());
};

/// Seconds that one call takes: the least of several rounds, which other programs disturbed least.
double LeastSeconds(int rounds, const std::function<void()>& body);

void PrintRow(const std::string& name, int rounds, double value, const char* unit);

/// The library's function, from the zefext.dll beside this program; ends the program if missing.
template <class TFunction>
TFunction LibraryFunction(HMODULE library, const char* name);

[[noreturn]] void Fail(const std::string& what);

/// Folder of this program, with its backslash.
std::string ProgramFolder();

template <class TFunction>
TFunction LibraryFunction(HMODULE library, const char* name) {
  const auto address = reinterpret_cast<void*>(GetProcAddress(library, name));
  if (!address) Fail(std::string("no function ") + name);
  return reinterpret_cast<TFunction>(address);
}
