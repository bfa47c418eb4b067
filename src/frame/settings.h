#pragma once

#include <cstdint>
#include <string>

/// The library's and the host's settings: texts in the registry, below the host's own key, in the
/// current user's hive or else the machine's. Texts are in the process's ANSI code page.

/// Reads a setting into a buffer and returns the system's error code: 0, 2 while it was never
/// written, 234 when it does not fit with its terminating zero, 87 for a null buffer or name. The
/// text is terminated when the size, in bytes, is not 0, and empty when the reading fails.
long QuerySetting(char* buffer, std::uint32_t size, const char* name, bool currentUser);

/// Writes a setting, making the host's key when it is not there, and returns the system's error
/// code; 87 for a null name. A null value is empty.
long StoreSetting(const char* name, const char* value, bool currentUser);

/// Writes a setting whether or not it succeeds.
void WriteSetting(const std::string& name, const std::string& value, bool currentUser);

/// The setting, or an empty text when it cannot be read or has more than 254 bytes.
std::string ReadSetting(const std::string& name, bool currentUser);

/// The MD5 digest of a text as 32 lower-case hexadecimal digits.
std::string DigestOf(const std::string& text);
