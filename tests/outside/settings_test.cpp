#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <vector>

#include "outside/library.h"
#include "user/saved_settings.h"

class Settings : public testing::Test {
 protected:
  using TRead = std::pair<long, std::string>;

  /// Into a buffer of that size, with a guard behind it.
  TRead Get(bool currentUser = true, unsigned long size = 255) const {
    std::string buffer(size + 16, '#');
    const long code = Library.GetRegConf(buffer.data(), size, "Nom", currentUser);
    EXPECT_EQ(buffer.substr(size), std::string(16, '#'));
    const std::size_t end = buffer.substr(0, size).find('\0');
    return {code, end == std::string::npos ? "(unterminated)" : buffer.substr(0, end)};
  }
  long Set(const char* value, bool currentUser = true) const {
    return Library.SetRegConf("Nom", value, currentUser);
  }

  const TSavedSettings Saved;
  const TLibrary Library;
};

TEST_F(Settings, AreReadBackFromTheirOwnHive) {
  for (const bool currentUser : {true, false}) {
    EXPECT_EQ(Get(currentUser), (TRead{ERROR_FILE_NOT_FOUND, ""})) << "not of the other hive";
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(currentUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE,
                            TSavedSettings::Company, 0, KEY_READ, &key),
              ERROR_FILE_NOT_FOUND)
        << "reading makes no key";
    for (const std::string& value : {std::string("d\xE9j\xE0 \x80 vu"), std::string(254, 'x')}) {
      ASSERT_EQ(Set(value.c_str(), currentUser), 0);
      EXPECT_EQ(Get(currentUser), (TRead{0, value}));
    }
  }
  EXPECT_EQ(Set(nullptr), 0);
  EXPECT_EQ(Get(), (TRead{0, ""}));
}

TEST_F(Settings, WhateverIsStoredFitsOrIsRefused) {
  using namespace std::string_literals;
  const auto wide = [](std::wstring_view text) {
    return std::string(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t));
  };
  const auto more = static_cast<long>(ERROR_MORE_DATA);
  const struct {
    DWORD Type;
    std::string Bytes;
    unsigned long Size;
    TRead Expected;
  } cases[] = {
      {REG_SZ, wide(L"cinq!\0"s), 6, {0, "cinq!"}},
      {REG_SZ, wide(L"cinq!\0"s), 5, {more, ""}},
      {REG_SZ, wide(L"cinq!\0"s), 0, {more, "(unterminated)"}},
      {REG_SZ, wide(std::wstring(100'000, L'g')), 255, {more, ""}},
      {REG_SZ, wide(L"sans fin"), 9, {0, "sans fin"}},
      {REG_SZ, wide(L"sans fin"), 8, {more, ""}},
      {REG_SZ, "", 255, {0, ""}},
      {REG_DWORD, "AB\0\0"s, 255, {0, "AB"}},
      {REG_DWORD, "AB\0\0"s, 3, {more, ""}},
      {REG_BINARY, "ABCD", 255, {0, "ABCD"}},
      {REG_BINARY, "ABCD", 3, {more, ""}},
      {REG_EXPAND_SZ, wide(L"%TEMP%\0"s), 255, {0, "%TEMP%"}},
  };
  for (const auto& [type, bytes, size, expected] : cases) {
    RegSetKeyValueW(HKEY_CURRENT_USER, TSavedSettings::Product, L"Nom", type, bytes.data(),
                    static_cast<DWORD>(bytes.size()));
    EXPECT_EQ(Get(true, size), expected) << type << ' ' << bytes.substr(0, 20) << ' ' << size;
  }
}
