#include "platform/registry.h"

#include <cstring>

namespace {

constexpr int kPassesAtMost = 20;

REGSAM RightsOf(TRegistryAccess access) {
  switch (access) {
    case TRegistryAccess::Query:
      return KEY_QUERY_VALUE;
    case TRegistryAccess::Watch:
      return KEY_QUERY_VALUE | KEY_NOTIFY;
    case TRegistryAccess::Write:
      break;
  }
  return KEY_WRITE;
}

}  // namespace

long TRegistryKey::Keep(long result, HKEY key) {
  FKey = TKeyHandle(result == ERROR_SUCCESS ? key : nullptr);
  return result;
}

long TRegistryKey::Open(TRegistryHive hive, const char* name, TRegistryAccess access) {
  HKEY key = nullptr;
  const HKEY root = hive == TRegistryHive::CurrentUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
  const long result = RegOpenKeyExA(root, name, 0, RightsOf(access), &key);
  return Keep(result, key);
}

long TRegistryKey::Open(const TRegistryKey& parent, const char* name, TRegistryAccess access) {
  HKEY key = nullptr;
  const long result = RegOpenKeyExA(parent.FKey.Get(), name, 0, RightsOf(access), &key);
  return Keep(result, key);
}

long TRegistryKey::Create(const TRegistryKey& parent, const char* name) {
  HKEY key = nullptr;
  const long result = RegCreateKeyExA(parent.FKey.Get(), name, 0, nullptr, REG_OPTION_NON_VOLATILE,
                                      RightsOf(TRegistryAccess::Write), nullptr, &key, nullptr);
  return Keep(result, key);
}

long TRegistryKey::QueryValue(const char* name, void* buffer, TValue& value) const {
  DWORD size = value.Size;
  DWORD type = REG_NONE;
  const long result =
      RegQueryValueExA(FKey.Get(), name, nullptr, &type, static_cast<BYTE*>(buffer), &size);
  value = {size, type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ};
  return result;
}

long TRegistryKey::SetText(const char* name, const char* text) {
  return RegSetValueExA(FKey.Get(), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text),
                        static_cast<DWORD>(std::strlen(text) + 1));
}

long TRegistryKey::DeleteValue(const char* name) { return RegDeleteValueA(FKey.Get(), name); }

std::vector<std::string> TRegistryKey::ValueNames() const {
  // The system counts through the values by their places, which move while others write: a pass
  // counts that nobody disturbed, or else what all of many passes saw together.
  std::set<std::string> all;
  for (int pass = 0; pass < kPassesAtMost; ++pass) {
    const TKernelHandle disturbed(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    const bool watched =
        disturbed && RegNotifyChangeKeyValue(FKey.Get(), FALSE, REG_NOTIFY_CHANGE_LAST_SET,
                                             disturbed.Get(), TRUE) == 0;
    const auto seen = EnumerateNames();
    if (watched && WaitForSingleObject(disturbed.Get(), 0) == WAIT_TIMEOUT) {
      return {seen.begin(), seen.end()};
    }
    all.insert(seen.begin(), seen.end());
  }
  return {all.begin(), all.end()};
}

std::set<std::string> TRegistryKey::EnumerateNames() const {
  // The longest name that the system takes, in bytes of any code page.
  std::string name(16384 * 4, '\0');
  std::set<std::string> names;
  long result = ERROR_SUCCESS;
  for (DWORD index = 0; result == ERROR_SUCCESS; ++index) {
    auto length = static_cast<DWORD>(name.size());
    result =
        RegEnumValueA(FKey.Get(), index, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
    if (result == ERROR_SUCCESS) names.emplace(name, 0, length);
  }
  return names;
}
