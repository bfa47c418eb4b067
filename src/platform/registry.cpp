#include "platform/registry.h"

#include <windows.h>

#include <cstring>
#include <utility>

namespace {

HKEY KeyOf(void* key) { return static_cast<HKEY>(key); }

REGSAM RightsOf(TRegistryAccess access) {
  return access == TRegistryAccess::Query ? KEY_QUERY_VALUE : KEY_WRITE;
}

}  // namespace

TRegistryKey::~TRegistryKey() { Close(); }

TRegistryKey::TRegistryKey(TRegistryKey&& other) noexcept
    : FKey(std::exchange(other.FKey, nullptr)) {}

TRegistryKey& TRegistryKey::operator=(TRegistryKey&& other) noexcept {
  std::swap(FKey, other.FKey);
  return *this;
}

void TRegistryKey::Close() {
  if (FKey) RegCloseKey(KeyOf(FKey));
  FKey = nullptr;
}

long TRegistryKey::Keep(long result, void* key) {
  Close();
  if (result == ERROR_SUCCESS) FKey = key;
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
  const long result = RegOpenKeyExA(KeyOf(parent.FKey), name, 0, RightsOf(access), &key);
  return Keep(result, key);
}

long TRegistryKey::Create(const TRegistryKey& parent, const char* name) {
  HKEY key = nullptr;
  const long result = RegCreateKeyExA(KeyOf(parent.FKey), name, 0, nullptr, REG_OPTION_NON_VOLATILE,
                                      RightsOf(TRegistryAccess::Write), nullptr, &key, nullptr);
  return Keep(result, key);
}

long TRegistryKey::QueryValue(const char* name, void* buffer, TValue& value) const {
  DWORD size = value.Size;
  DWORD type = REG_NONE;
  const long result =
      RegQueryValueExA(KeyOf(FKey), name, nullptr, &type, static_cast<BYTE*>(buffer), &size);
  value = {size, type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ};
  return result;
}

long TRegistryKey::SetText(const char* name, const char* text) {
  return RegSetValueExA(KeyOf(FKey), name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text),
                        static_cast<DWORD>(std::strlen(text) + 1));
}

long TRegistryKey::DeleteValue(const char* name) { return RegDeleteValueA(KeyOf(FKey), name); }

std::vector<std::string> TRegistryKey::ValueNames() const {
  // The longest name that the system takes, in bytes of any code page.
  std::string name(16384 * 4, '\0');
  std::vector<std::string> names;
  long result = ERROR_SUCCESS;
  for (DWORD index = 0; result == ERROR_SUCCESS; ++index) {
    auto length = static_cast<DWORD>(name.size());
    result =
        RegEnumValueA(KeyOf(FKey), index, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
    if (result == ERROR_SUCCESS) names.emplace_back(name, 0, length);
  }
  return names;
}
