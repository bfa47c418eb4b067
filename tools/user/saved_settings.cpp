#include "user/saved_settings.h"

#include <stdexcept>
#include <string>

namespace {
constexpr wchar_t Aside[] = L"Software\\KAVEN before the test";
const HKEY Hives[] = {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE};

bool Exists(HKEY hive, const wchar_t* name) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(hive, name, 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
  RegCloseKey(key);
  return true;
}

LSTATUS Copy(HKEY hive, const wchar_t* from, const wchar_t* to) {
  HKEY key = nullptr;
  LSTATUS result = RegCreateKeyExW(hive, to, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
  if (result != ERROR_SUCCESS) return result;
  result = RegCopyTreeW(hive, from, key);
  RegCloseKey(key);
  return result;
}

/// The original goes only when the copy is whole.
LSTATUS Move(HKEY hive, const wchar_t* from, const wchar_t* to) {
  if (!Exists(hive, from)) return ERROR_SUCCESS;
  const LSTATUS result = Copy(hive, from, to);
  return result == ERROR_SUCCESS ? RegDeleteTreeW(hive, from) : result;
}
}  // namespace

TSavedSettings::TSavedSettings() {
  for (const HKEY hive : Hives) {
    // What a test that crashed left aside is the user's; what it wrote is not.
    if (Exists(hive, Aside)) RegDeleteTreeW(hive, Company);
    if (const LSTATUS result = Move(hive, Company, Aside); result != ERROR_SUCCESS)
      throw std::runtime_error("the settings cannot be saved: error " + std::to_string(result));
  }
}

TSavedSettings::~TSavedSettings() {
  for (const HKEY hive : Hives) {
    RegDeleteTreeW(hive, Company);
    Move(hive, Aside, Company);
  }
}
