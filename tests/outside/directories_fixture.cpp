#include "outside/directories_fixture.h"

#include <fstream>

namespace fs = std::filesystem;

/// The shell of some systems takes a folder for another one when its time of access differs from
/// the one it saw first: this far ahead, looking at a folder does not change it.
static void FixAccessTime(const fs::path& directory) {
  const HANDLE handle = CreateFileW(directory.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ,
                                    nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  FILETIME time;
  GetSystemTimeAsFileTime(&time);
  time.dwHighDateTime += 1;
  SetFileTime(handle, nullptr, &time, nullptr);
  CloseHandle(handle);
}

void TDirectoriesTest::SetUp() {
  FCurrent = fs::current_path();
  FRoot = L"C:\\zefext_" + std::to_wstring(GetCurrentProcessId());
  fs::create_directories(FRoot);
  FSettings.emplace();
  TOutsideTest::SetUp();
}

void TDirectoriesTest::TearDown() {
  TOutsideTest::TearDown();
  fs::current_path(FCurrent);
  FSettings.reset();
  std::error_code ignored;
  fs::remove_all(FRoot, ignored);
}

std::string TDirectoriesTest::Path(std::string_view name) const {
  return Utf8((FRoot / Wide(name)).make_preferred().wstring());
}

std::string TDirectoriesTest::MakeDirectory(std::string_view name, bool withData) const {
  const fs::path directory = Wide(Path(name));
  fs::create_directories(directory);
  if (withData) std::ofstream(directory / "ZEF.INI") << "[zef]";
  for (fs::path each = directory; each != FRoot; each = each.parent_path()) FixAccessTime(each);
  FixAccessTime(FRoot);
  return Path(name);
}

void TDirectoriesTest::Store(const std::vector<std::pair<std::string, std::string>>& entries,
                             const std::string& defaultName) const {
  const auto set = [](const std::string& name, const std::string& value) {
    const std::wstring wide = Wide(value);
    RegSetKeyValueW(HKEY_CURRENT_USER, TSavedSettings::Product, Wide(name).c_str(), REG_SZ,
                    wide.c_str(), static_cast<DWORD>((wide.size() + 1) * sizeof(wchar_t)));
  };
  for (size_t i = 0; i < entries.size(); ++i) {
    set("DirAliasName" + std::to_string(i), entries[i].first);
    set("DirAliasPath" + std::to_string(i), entries[i].second);
  }
  set("NbDirAlias", std::to_string(entries.size()));
  set("DirAliasDefault", defaultName);
}

void TDirectoriesTest::Enter(const std::string& path) { fs::current_path(Wide(path)); }
