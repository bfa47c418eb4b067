#include "frame/settings.h"

#include <windows.h>

#include "platform/debug_report.h"
#include "platform/registry.h"

namespace {

constexpr char kRootKey[] = "Software";
constexpr char kCompanyKey[] = "KAVEN";
constexpr char kProductKey[] = "ZEF";
/// Room for what settings commonly hold, and the most that is read of one.
constexpr std::uint32_t kUsualSetting = 255;
constexpr std::uint32_t kLongestSetting = 1u << 22;

TRegistryHive HiveOf(bool currentUser) {
  return currentUser ? TRegistryHive::CurrentUser : TRegistryHive::LocalMachine;
}

/// The host's key for reading, which must be there.
long OpenSettings(TRegistryKey& key, bool currentUser,
                  TRegistryAccess access = TRegistryAccess::Query) {
  long result = key.Open(HiveOf(currentUser), kRootKey, TRegistryAccess::Query);
  if (result == ERROR_SUCCESS) result = key.Open(key, kCompanyKey, TRegistryAccess::Query);
  if (result == ERROR_SUCCESS) result = key.Open(key, kProductKey, access);
  return result;
}

/// The host's key for writing. Only its own two levels are made.
long CreateSettings(TRegistryKey& key, bool currentUser) {
  long result = key.Open(HiveOf(currentUser), kRootKey, TRegistryAccess::Write);
  if (result == ERROR_SUCCESS) result = key.Create(key, kCompanyKey);
  if (result == ERROR_SUCCESS) result = key.Create(key, kProductKey);
  return result;
}

/// As QuerySetting, from a key that is open.
long QueryText(const TRegistryKey& key, char* buffer, std::uint32_t size, const char* name) {
  TRegistryKey::TValue value{size, false};
  long result = key.QueryValue(name, buffer, value);
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

}  // namespace

long QuerySetting(char* buffer, std::uint32_t size, const char* name, bool currentUser) {
  if (buffer && size > 0) *buffer = '\0';
  if (!buffer || !name) return ERROR_INVALID_PARAMETER;
  TRegistryKey key;
  const long result = OpenSettings(key, currentUser);
  if (result != ERROR_SUCCESS) return result;
  return QueryText(key, buffer, size, name);
}

long StoreSetting(const char* name, const char* value, bool currentUser) {
  if (!name) return ERROR_INVALID_PARAMETER;
  TRegistryKey key;
  const long result = CreateSettings(key, currentUser);
  return result == ERROR_SUCCESS ? key.SetText(name, value ? value : "") : result;
}

TSettings::TSettings(bool currentUser) : FCurrentUser(currentUser) { OpenForReading(); }

void TSettings::OpenForReading() {
  if (OpenSettings(FReading, FCurrentUser, TRegistryAccess::Watch) != ERROR_SUCCESS) {
    NoteReading(OpenSettings(FReading, FCurrentUser));
  }
}

void TSettings::NoteReading(long result) const {
  if (result == ERROR_SUCCESS || result == ERROR_FILE_NOT_FOUND || result == ERROR_MORE_DATA)
    return;
  FReadFailed = true;
  FError = result;
  DebugReport("a setting cannot be read: error " + std::to_string(result));
}

std::string TSettings::Read(const std::string& name) const {
  std::string text;
  if (!FReading.IsOpen()) return text;
  for (std::uint32_t size = kUsualSetting; size <= kLongestSetting; size *= 4) {
    text.resize(size);
    const long result = QueryText(FReading, text.data(), size, name.c_str());
    if (result == ERROR_SUCCESS) return text.c_str();
    NoteReading(result);
    if (result != ERROR_MORE_DATA) break;
  }
  return {};
}

template <class TChange>
bool TSettings::Change(TChange change) {
  long result = FWriting.IsOpen() ? ERROR_SUCCESS : CreateSettings(FWriting, FCurrentUser);
  // Reading began before there was anything to read.
  if (result == ERROR_SUCCESS && !FReading.IsOpen()) OpenForReading();
  if (result == ERROR_SUCCESS) result = change();
  if (result != ERROR_SUCCESS) {
    FError = result;
    // What is to go and is not there is no trouble.
    if (result != ERROR_FILE_NOT_FOUND) {
      DebugReport("a setting cannot be written: error " + std::to_string(result));
    }
  }
  return result == ERROR_SUCCESS;
}

bool TSettings::Write(const std::string& name, const std::string& value) {
  return Change([&] { return FWriting.SetText(name.c_str(), value.c_str()); });
}

bool TSettings::Remove(const std::string& name) {
  return Change([&] { return FWriting.DeleteValue(name.c_str()); });
}
