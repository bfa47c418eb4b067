#include "frame/settings.h"

#include <windows.h>

#include "platform/registry.h"
#include "text/digest.h"

namespace {

constexpr char RootKey[] = "Software";
constexpr char CompanyKey[] = "KAVEN";
constexpr char ProductKey[] = "ZEF";
constexpr std::uint32_t LongestSetting = 255;

TRegistryHive HiveOf(bool currentUser) {
  return currentUser ? TRegistryHive::CurrentUser : TRegistryHive::LocalMachine;
}

/// The host's key for reading, which must be there.
long OpenSettings(TRegistryKey& key, bool currentUser) {
  long result = key.Open(HiveOf(currentUser), RootKey, TRegistryAccess::Query);
  if (result == ERROR_SUCCESS) result = key.Open(key, CompanyKey, TRegistryAccess::Query);
  if (result == ERROR_SUCCESS) result = key.Open(key, ProductKey, TRegistryAccess::Query);
  return result;
}

/// The host's key for writing. Only its own two levels are made.
long CreateSettings(TRegistryKey& key, bool currentUser) {
  long result = key.Open(HiveOf(currentUser), RootKey, TRegistryAccess::Write);
  if (result == ERROR_SUCCESS) result = key.Create(key, CompanyKey);
  if (result == ERROR_SUCCESS) result = key.Create(key, ProductKey);
  return result;
}

}  // namespace

long QuerySetting(char* buffer, std::uint32_t size, const char* name, bool currentUser) {
  if (buffer && size > 0) *buffer = '\0';
  if (!buffer || !name) return ERROR_INVALID_PARAMETER;
  TRegistryKey key;
  long result = OpenSettings(key, currentUser);
  if (result != ERROR_SUCCESS) return result;
  TRegistryKey::TValue value{size, false};
  result = key.QueryValue(name, buffer, value);
  if (result == ERROR_SUCCESS) {
    if (value.Size < size) {
      buffer[value.Size] = '\0';
    } else if (value.Text && size > 0 && buffer[size - 1] != '\0') {
      // Another program wrote it without its terminating zero, which now finds no room.
      result = ERROR_MORE_DATA;
    }
  }
  if (result != ERROR_SUCCESS && size > 0) *buffer = '\0';
  return result;
}

long StoreSetting(const char* name, const char* value, bool currentUser) {
  if (!name) return ERROR_INVALID_PARAMETER;
  TRegistryKey key;
  const long result = CreateSettings(key, currentUser);
  return result == ERROR_SUCCESS ? key.SetText(name, value ? value : "") : result;
}

void WriteSetting(const std::string& name, const std::string& value, bool currentUser) {
  StoreSetting(name.c_str(), value.c_str(), currentUser);
}

std::string ReadSetting(const std::string& name, bool currentUser) {
  char buffer[LongestSetting];
  const long result = QuerySetting(buffer, LongestSetting, name.c_str(), currentUser);
  return result == ERROR_SUCCESS ? buffer : "";
}

std::string DigestOf(const std::string& text) { return Md5Text(text); }
