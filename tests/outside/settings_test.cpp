#include <gtest/gtest.h>

#include <aclapi.h>
#include <sddl.h>

#include <string>
#include <vector>

#include "outside/library.h"
#include "outside/saved_settings.h"

namespace {

HKEY HiveOf(bool currentUser) { return currentUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE; }

class TKey {
 public:
  TKey(HKEY hive, const wchar_t* name, REGSAM rights) {
    RegCreateKeyExW(hive, name, 0, nullptr, 0, rights, nullptr, &FKey, nullptr);
  }
  TKey(const TKey&) = delete;
  TKey& operator=(const TKey&) = delete;
  ~TKey() { RegCloseKey(FKey); }

  HKEY Get() const { return FKey; }

 private:
  HKEY FKey = nullptr;
};

/// Gives a key other rights for as long as it lives.
class TRights {
 public:
  TRights(HKEY hive, const wchar_t* name, const wchar_t* rights)
      : FKey(hive, name, KEY_ALL_ACCESS) {
    GetSecurityInfo(FKey.Get(), SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION, nullptr, nullptr,
                    nullptr, nullptr, &FBefore);
    Set(rights);
  }
  ~TRights() {
    RegSetKeySecurity(FKey.Get(), DACL_SECURITY_INFORMATION, FBefore);
    LocalFree(FBefore);
  }

 private:
  void Set(const wchar_t* rights) {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    ConvertStringSecurityDescriptorToSecurityDescriptorW(rights, SDDL_REVISION_1, &descriptor,
                                                         nullptr);
    RegSetKeySecurity(FKey.Get(), DACL_SECURITY_INFORMATION, descriptor);
    LocalFree(descriptor);
  }

  TKey FKey;
  PSECURITY_DESCRIPTOR FBefore = nullptr;
};

class Settings : public testing::Test {
 protected:
  struct TRead {
    long Code;
    std::string Text;
    bool operator==(const TRead&) const = default;
    friend void PrintTo(const TRead& read, std::ostream* out) {
      *out << read.Code << " \"" << read.Text << '"';
    }
  };

  /// Into a buffer of that size, with a guard behind it.
  TRead Get(const char* name, bool currentUser = true, unsigned long size = 255) const {
    std::vector<char> buffer(size + 16, '#');
    const long code = Library.GetRegConf(buffer.data(), size, name, currentUser);
    for (unsigned long at = size; at < buffer.size(); ++at)
      EXPECT_EQ(buffer[at], '#') << "written past the buffer";
    const std::string text(buffer.data(), size);
    const std::size_t end = text.find('\0');
    return {code, end == std::string::npos ? "(unterminated)" : text.substr(0, end)};
  }
  long Set(const char* name, const char* value, bool currentUser = true) const {
    return Library.SetRegConf(name, value, currentUser);
  }
  /// As another program would.
  static void Write(const wchar_t* name, DWORD type, const std::string& bytes) {
    const TKey key(HKEY_CURRENT_USER, TSavedSettings::Product, KEY_WRITE);
    RegSetValueExW(key.Get(), name, 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                   static_cast<DWORD>(bytes.size()));
  }

  const TSavedSettings Saved;
  const TLibrary Library;
};

TEST_F(Settings, NothingIsThereUntilWritten) {
  for (const bool currentUser : {true, false}) {
    EXPECT_EQ(Get("Rien", currentUser), (TRead{ERROR_FILE_NOT_FOUND, ""}));
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HiveOf(currentUser), TSavedSettings::Company, 0, KEY_READ, &key),
              ERROR_FILE_NOT_FOUND)
        << "reading makes no key";
  }
  EXPECT_EQ(Set("Autre", "x"), 0);
  EXPECT_EQ(Get("Rien"), (TRead{ERROR_FILE_NOT_FOUND, ""}));
}

TEST_F(Settings, AreReadBackFromTheirOwnHive) {
  const std::string values[] = {"C:\\Comptes", "", "d\xE9j\xE0 \x80 vu", std::string(254, 'x')};
  for (const bool currentUser : {true, false}) {
    for (const auto& value : values) {
      ASSERT_EQ(Set("Dossier", value.c_str(), currentUser), 0);
      EXPECT_EQ(Get("Dossier", currentUser), (TRead{0, value}));
    }
  }
  EXPECT_EQ(Set("Deux", "utilisateur", true), 0);
  EXPECT_EQ(Get("Deux", false).Code, ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(Set("Deux", "machine", false), 0);
  EXPECT_EQ(Get("Deux", true), (TRead{0, "utilisateur"}));
  EXPECT_EQ(Get("Deux", false), (TRead{0, "machine"}));

  const TKey key(HKEY_CURRENT_USER, TSavedSettings::Product, KEY_READ);
  DWORD type = 0;
  DWORD size = 0;
  EXPECT_EQ(RegQueryValueExA(key.Get(), "Deux", nullptr, &type, nullptr, &size), ERROR_SUCCESS);
  EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
  EXPECT_EQ(size, sizeof "utilisateur");
}

TEST_F(Settings, BufferTakesTheTextWithItsEndOrNothing) {
  ASSERT_EQ(Set("Cinq", "cinq!"), 0);
  for (unsigned long size = 0; size < 6; ++size)
    EXPECT_EQ(Get("Cinq", true, size), (TRead{ERROR_MORE_DATA, size ? "" : "(unterminated)"}))
        << size;
  EXPECT_EQ(Get("Cinq", true, 6), (TRead{0, "cinq!"}));
  const std::string large(100'000, 'g');
  ASSERT_EQ(Set("Grand", large.c_str()), 0);
  EXPECT_EQ(Get("Grand"), (TRead{ERROR_MORE_DATA, ""}));
  EXPECT_EQ(Get("Grand", true, 100'001), (TRead{0, large}));
}

TEST_F(Settings, WhatOtherProgramsWroteIsReadWithoutHarm) {
  using namespace std::string_literals;
  const std::string wide(reinterpret_cast<const char*>(L"sans fin"), 16);
  const struct {
    const wchar_t* Name;
    DWORD Type;
    std::string Bytes;
    unsigned long Size;
    TRead Expected;
  } cases[] = {
      {L"unterminated", REG_SZ, wide, 255, {0, "sans fin"}},
      {L"unterminated, just room", REG_SZ, wide, 9, {0, "sans fin"}},
      {L"unterminated, no room for the end", REG_SZ, wide, 8, {ERROR_MORE_DATA, ""}},
      {L"no bytes", REG_SZ, "", 255, {0, ""}},
      {L"number", REG_DWORD, "AB\0\0"s, 255, {0, "AB"}},
      {L"number, too large", REG_DWORD, "AB\0\0"s, 3, {ERROR_MORE_DATA, ""}},
      {L"bytes without a zero", REG_BINARY, "ABCD", 255, {0, "ABCD"}},
      {L"bytes, too many", REG_BINARY, "ABCD", 3, {ERROR_MORE_DATA, ""}},
      {L"expandable",
       REG_EXPAND_SZ,
       std::string(reinterpret_cast<const char*>(L"%TEMP%"), 14),
       255,
       {0, "%TEMP%"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.Name);
    Write(c.Name, c.Type, c.Bytes);
    const std::wstring name = c.Name;
    EXPECT_EQ(Get(std::string(name.begin(), name.end()).c_str(), true, c.Size), c.Expected);
  }
}

TEST_F(Settings, RefusedKeysGiveTheSystemsCode) {
  ASSERT_EQ(Set("Nom", "avant"), 0);
  for (const wchar_t* refused : {TSavedSettings::Company, TSavedSettings::Product}) {
    SCOPED_TRACE(testing::Message() << refused);
    {
      const TRights none(HKEY_CURRENT_USER, refused, L"D:(D;;KA;;;WD)");
      EXPECT_EQ(Get("Nom"), (TRead{ERROR_ACCESS_DENIED, ""}));
      EXPECT_EQ(Set("Nom", "apr\xE8s"), ERROR_ACCESS_DENIED);
    }
    {
      const TRights reading(HKEY_CURRENT_USER, refused, L"D:(A;;KR;;;WD)");
      EXPECT_EQ(Get("Nom"), (TRead{0, "avant"}));
      EXPECT_EQ(Set("Nom", "apr\xE8s"), ERROR_ACCESS_DENIED);
    }
    EXPECT_EQ(Get("Nom"), (TRead{0, "avant"}));
  }
}

TEST_F(Settings, NullArgumentsAreRefused) {
  char buffer[4] = "abc";
  EXPECT_EQ(Library.GetRegConf(buffer, sizeof buffer, nullptr, true), ERROR_INVALID_PARAMETER);
  EXPECT_STREQ(buffer, "");
  EXPECT_EQ(Library.GetRegConf(nullptr, 255, "Nom", true), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(Set(nullptr, "x"), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(Set("Nom", nullptr), 0);
  EXPECT_EQ(Get("Nom"), (TRead{0, ""}));
}

/// By trying them all: not every system this runs on counts them.
int OpenHandles() {
  constexpr std::uintptr_t Highest = 0x4000;
  int count = 0;
  for (std::uintptr_t handle = 4; handle < Highest; handle += 4) {
    DWORD flags = 0;
    if (GetHandleInformation(reinterpret_cast<HANDLE>(handle), &flags)) ++count;
  }
  return count;
}

TEST_F(Settings, LeaveNoKeyOpen) {
  Set("Nom", "v");
  Get("Nom");
  const int before = OpenHandles();
  {
    const TKey witness(HKEY_CURRENT_USER, L"Software", KEY_READ);
    ASSERT_EQ(OpenHandles(), before + 1) << "keys are among them";
  }
  for (int round = 0; round < 20; ++round) {
    for (const bool currentUser : {true, false}) {
      Set("Nom", "v", currentUser);
      Get("Nom", currentUser);
      Get("Rien", currentUser);
      Get("Nom", currentUser, 1);
    }
  }
  EXPECT_EQ(OpenHandles(), before);
}

TEST(DigestExport, WritesThePublishedDigestsAndNothingElse) {
  const TLibrary library;
  const struct {
    const char* Text;
    const char* Digest;
  } cases[] = {
      {"", "d41d8cd98f00b204e9800998ecf8427e"},
      {nullptr, "d41d8cd98f00b204e9800998ecf8427e"},
      {"a", "0cc175b9c0f1b6a831c399e269772661"},
      {"abc", "900150983cd24fb0d6963f7d28e17f72"},
      {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
      {"abcdefghijklmnopqrstuvwxyz", "c3fcd3d76192e4007dfb496cca67e13b"},
      {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789",
       "d174ab98d277d9f5a5611c2c9f419d9f"},
      {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
       "57edf4a22be3c955ac49da2e2107b67a"},
      {"\xE9", "3406877694691ddd1dfb0aca54681407"},
  };
  for (const auto& c : cases) {
    char digest[40];
    std::fill(std::begin(digest), std::end(digest), '#');
    library.MD5(digest, c.Text);
    EXPECT_STREQ(digest, c.Digest);
    EXPECT_EQ(std::string(digest + 33, digest + 40), "#######");
  }
  library.MD5(nullptr, "a");
}

}  // namespace
