#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/handle.h"

enum class TRegistryHive { CurrentUser, LocalMachine };
enum class TRegistryAccess {
  Query,
  Watch,  ///< as Query, and to tell when others write
  Write
};

/// An open registry key, closed with this object. Results are the system's error codes, 0 for
/// success; texts are zero-terminated and in the process's ANSI code page.
class TRegistryKey {
 public:
  /// An object that holds a key already gives it up for the new one, also when that fails. The
  /// parent may be this object.
  long Open(TRegistryHive hive, const char* name, TRegistryAccess access);
  long Open(const TRegistryKey& parent, const char* name, TRegistryAccess access);
  /// Opens the key for writing, made if it is not there.
  long Create(const TRegistryKey& parent, const char* name);

  bool IsOpen() const { return static_cast<bool>(FKey); }

  struct TValue {
    std::uint32_t Size;  ///< in: bytes there is room for; out: bytes that the value has
    bool Text;           ///< the value is of one of the kinds that hold text
  };
  /// A value that does not fit gives the more-data code. Text need not be terminated.
  long QueryValue(const char* name, void* buffer, TValue& value) const;
  long SetText(const char* name, const char* text);
  long DeleteValue(const char* name);
  /// Every name that is there all the time that this takes, each once, in no special order; none
  /// when they cannot be read.
  std::vector<std::string> ValueNames() const;

 private:
  std::set<std::string> EnumerateNames() const;
  long Keep(long result, HKEY key);

  TKeyHandle FKey;
};
