#include <gtest/gtest.h>

#include <windows.h>

#include <sddl.h>

#include <string>
#include <vector>

#include "outside/library.h"
#include "user/saved_settings.h"

namespace {

/// The product's settings, or the key above them, open for as long as this object lives.
class TKey {
 public:
  explicit TKey(const wchar_t* name = TSavedSettings::Product) {
    RegCreateKeyExW(HKEY_CURRENT_USER, name, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &FKey,
                    nullptr);
  }
  TKey(const TKey&) = delete;
  TKey& operator=(const TKey&) = delete;
  ~TKey() { RegCloseKey(FKey); }

  void Write(const std::wstring& name, DWORD type, const std::string& bytes) const {
    RegSetValueExW(FKey, name.c_str(), 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                   static_cast<DWORD>(bytes.size()));
  }
  void SetRights(const wchar_t* rights) const {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    ConvertStringSecurityDescriptorToSecurityDescriptorW(rights, SDDL_REVISION_1, &descriptor,
                                                         nullptr);
    RegSetKeySecurity(FKey, DACL_SECURITY_INFORMATION, descriptor);
    LocalFree(descriptor);
  }

 private:
  HKEY FKey = nullptr;
};

class Settings : public testing::Test {
 protected:
  using TRead = std::pair<long, std::string>;

  /// Into a buffer of that size, with a guard behind it.
  TRead Get(const char* name, bool currentUser = true, unsigned long size = 255) const {
    std::vector<char> buffer(size + 16, '#');
    const long code = Library.GetRegConf(buffer.data(), size, name, currentUser);
    EXPECT_EQ(std::string(buffer.end() - 16, buffer.end()), std::string(16, '#'));
    const std::string text(buffer.data(), size);
    const std::size_t end = text.find('\0');
    return {code, end == std::string::npos ? "(unterminated)" : text.substr(0, end)};
  }
  long Set(const char* name, const char* value, bool currentUser = true) const {
    return Library.SetRegConf(name, value, currentUser);
  }

  const TSavedSettings Saved;
  const TLibrary Library;
};

TEST_F(Settings, AreReadBackFromTheirOwnHive) {
  for (const bool currentUser : {true, false}) {
    EXPECT_EQ(Get("Rien", currentUser), (TRead{ERROR_FILE_NOT_FOUND, ""}));
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(currentUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE,
                            TSavedSettings::Company, 0, KEY_READ, &key),
              ERROR_FILE_NOT_FOUND)
        << "reading makes no key";
  }
  for (const bool currentUser : {true, false}) {
    EXPECT_EQ(Get("Dossier", currentUser).first, ERROR_FILE_NOT_FOUND) << "of the other hive";
    for (const std::string& value : {std::string("C:\\Comptes"), std::string(),
                                     std::string("d\xE9j\xE0 \x80 vu"), std::string(254, 'x')}) {
      ASSERT_EQ(Set("Dossier", value.c_str(), currentUser), 0);
      EXPECT_EQ(Get("Dossier", currentUser), (TRead{0, value}));
    }
  }
  EXPECT_EQ(Set("Nom", nullptr), 0);
  EXPECT_EQ(Get("Nom"), (TRead{0, ""}));
}

TEST_F(Settings, WhateverIsStoredFitsOrIsRefused) {
  using namespace std::string_literals;
  const auto wide = [](std::wstring_view text) {
    return std::string(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t));
  };
  const auto more = static_cast<long>(ERROR_MORE_DATA);
  const struct {
    const char* What;
    DWORD Type;
    std::string Bytes;
    unsigned long Size;
    TRead Expected;
  } cases[] = {
      {"room to spare", REG_SZ, wide(L"cinq!\0"s), 255, {0, "cinq!"}},
      {"just room", REG_SZ, wide(L"cinq!\0"s), 6, {0, "cinq!"}},
      {"no room for the end", REG_SZ, wide(L"cinq!\0"s), 5, {more, ""}},
      {"no room", REG_SZ, wide(L"cinq!\0"s), 0, {more, "(unterminated)"}},
      {"large", REG_SZ, wide(std::wstring(100'000, L'g')), 255, {more, ""}},
      {"unterminated, just room", REG_SZ, wide(L"sans fin"), 9, {0, "sans fin"}},
      {"unterminated, no room for the end", REG_SZ, wide(L"sans fin"), 8, {more, ""}},
      {"no bytes", REG_SZ, "", 255, {0, ""}},
      {"number", REG_DWORD, "AB\0\0"s, 255, {0, "AB"}},
      {"number, too large", REG_DWORD, "AB\0\0"s, 3, {more, ""}},
      {"bytes without a zero", REG_BINARY, "ABCD", 255, {0, "ABCD"}},
      {"bytes, too many", REG_BINARY, "ABCD", 3, {more, ""}},
      {"expandable", REG_EXPAND_SZ, wide(L"%TEMP%\0"s), 255, {0, "%TEMP%"}},
  };
  for (const auto& c : cases) {
    TKey().Write(L"Nom", c.Type, c.Bytes);
    EXPECT_EQ(Get("Nom", true, c.Size), c.Expected) << c.What;
  }
}

TEST_F(Settings, RefusalsGiveTheSystemsCode) {
  ASSERT_EQ(Set("Nom", "avant"), 0);
  const auto denied = static_cast<long>(ERROR_ACCESS_DENIED);
  for (const wchar_t* refused : {TSavedSettings::Company, TSavedSettings::Product}) {
    SCOPED_TRACE(testing::Message() << refused);
    const TKey key(refused);
    key.SetRights(L"D:(D;;KA;;;WD)");
    EXPECT_EQ(Get("Nom"), (TRead{denied, ""}));
    EXPECT_EQ(Set("Nom", "apr\xE8s"), denied);
    key.SetRights(L"D:(A;;KR;;;WD)");
    EXPECT_EQ(Get("Nom"), (TRead{0, "avant"}));
    EXPECT_EQ(Set("Nom", "apr\xE8s"), denied);
    key.SetRights(L"D:(A;;KA;;;WD)");
  }
  char buffer[4] = "abc";
  EXPECT_EQ(Library.GetRegConf(buffer, sizeof buffer, nullptr, true), ERROR_INVALID_PARAMETER);
  EXPECT_STREQ(buffer, "");
  EXPECT_EQ(Library.GetRegConf(nullptr, 255, "Nom", true), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(Set(nullptr, "x"), ERROR_INVALID_PARAMETER);
}

TEST(DigestExport, WritesTheDigestAndNothingElse) {
  const TLibrary library;
  for (const auto& [text, digest] : {std::pair{"", "d41d8cd98f00b204e9800998ecf8427e"},
                                     {nullptr, "d41d8cd98f00b204e9800998ecf8427e"},
                                     {"\xE9", "3406877694691ddd1dfb0aca54681407"}}) {
    std::string buffer(40, '#');
    library.MD5(buffer.data(), text);
    EXPECT_EQ(buffer, digest + std::string("\0#######", 8));
  }
  library.MD5(nullptr, "a");
}

}  // namespace
