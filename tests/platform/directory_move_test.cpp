#include "directories/rules/directory_move.h"

#include <gtest/gtest.h>

#include <map>

#include "directories/system_stores.h"
#include "platform/code_page.h"
#include "rules/memory_store.h"
#include "temporary_folder.h"

namespace {

namespace fs = std::filesystem;

std::string Ansi(const fs::path& path) { return ToAnsi(path.wstring()); }

/// What lies below a directory: each path with the bytes of its file, or "dir".
std::map<std::string, std::string> Contents(const fs::path& directory) {
  std::map<std::string, std::string> contents;
  std::error_code none;
  for (const auto& entry : fs::recursive_directory_iterator(directory, none)) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    contents[Ansi(entry.path().lexically_relative(directory))] =
        entry.is_directory() ? "dir" : bytes;
  }
  return contents;
}

HANDLE Open(const fs::path& path, DWORD access, DWORD share) {
  return CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING,
                     FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

/// To a folder on the same volume as the source, or on the other one.
class MoveDirectory : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    Target = FHome.Path / "cible";
    if (GetParam()) {
      if (GetDriveTypeA("D:\\") == DRIVE_NO_ROOT_DIR) GTEST_SKIP() << "no second drive";
      Target = "D:\\zefext_" + std::to_string(GetCurrentProcessId());
    }
    fs::create_directories(Target);
    Source = FHome.Path / L"Comptes d'\u00E9t\u00E9";
    fs::create_directories(Source / "2026" / "janvier");
    fs::create_directories(Source / "vide");
    WriteBytes(Source / "ZEF.INI", "[zef]");
    WriteBytes(Source / File, std::string(300000, '\x1A'));
    WriteBytes(Source / "2026" / "vide.dat", "");
    SetFileAttributesW((Source / "ZEF.INI").c_str(), FILE_ATTRIBUTE_READONLY);
    Before = Contents(Source);
    ASSERT_EQ(Before.size(), 6u);
    Store.Values = {{"NbDirAlias", "1"}, {"DirAliasName0", "n"}, {"DirAliasPath0", Ansi(Source)}};
  }
  void TearDown() override {
    for (const fs::path& ini : {Source / "ZEF.INI", Moved() / "ZEF.INI"})
      SetFileAttributesW(ini.c_str(), FILE_ATTRIBUTE_NORMAL);
    if (!Target.empty()) RemoveDirectoryTree(Ansi(Target));
  }
  fs::path Moved() const { return Target / Source.filename(); }
  bool Move(const fs::path& from, const fs::path& folder, TCopyProgress* progress = nullptr) {
    TDiskFiles files(progress);
    return MoveDirectoryInto(files, Store, Ansi(from), Ansi(folder)).has_value();
  }
  void ExpectAllWhereItWas(const char* what) const {
    EXPECT_EQ(Contents(Source), Before) << what;
    EXPECT_EQ(Store.Read("DirAliasPath0"), Ansi(Source)) << what;
    EXPECT_EQ(Store.Values.size(), 3u) << what;
  }

  const fs::path File = fs::path("2026") / "janvier" / L"caf\u00E9.dat";
  fs::path Source, Target;
  std::map<std::string, std::string> Before;
  TMemoryStore Store;

 private:
  TTemporaryFolder FHome;
};

TEST_P(MoveDirectory, TakesEverythingAlongBelowAndBeyondTheLimitOfPaths) {
  const auto written = fs::last_write_time(Source / File);
  TCopyProgress progress;
  EXPECT_TRUE(Move(Source, Target, &progress));
  EXPECT_EQ(progress.Percent, GetParam() ? 100 : 0);
  EXPECT_FALSE(fs::exists(Source));
  EXPECT_EQ(Contents(Moved()), Before);
  EXPECT_EQ(Store.Read("DirAliasPath0"), Ansi(Moved()));
  EXPECT_TRUE(GetFileAttributesW((Moved() / "ZEF.INI").c_str()) & FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(fs::last_write_time(Moved() / File), written);

  const std::string name(100, 'n');
  fs::create_directories(Moved() / name);
  Before = Contents(Moved());
  fs::path deep = Source.parent_path();
  while (deep.native().size() < 150) deep /= "un dossier";
  fs::create_directories(deep);
  ASSERT_GT((deep / Source.filename() / name).native().size(), 259u);
  EXPECT_TRUE(Move(Moved(), deep));
  EXPECT_TRUE(Move(deep / Source.filename(), Source.parent_path()));
  ExpectAllWhereItWas("there and back");
}

TEST_P(MoveDirectory, LeavesAllWhereItWasWhenTheSystemRefuses) {
  const fs::path forbidden = fs::exists("Z:\\proc") ? "Z:\\proc" : "?:";
  const std::pair<fs::path, fs::path> refused[] = {{Source / "ZEF.INI", Target},
                                                   {"C:\\", Target},
                                                   {Source, Target / "a:b?"},
                                                   {Source, forbidden},
                                                   {Source, Target}};
  for (const auto& [from, folder] : refused) {
    EXPECT_TRUE(fs::is_empty(Target));
    // The last finds a file of its name there.
    if (&from == &std::end(refused)[-1].first) WriteBytes(Moved(), "a file");
    EXPECT_FALSE(Move(from, folder)) << from;
    ExpectAllWhereItWas("refused");
  }
  EXPECT_EQ(fs::file_size(Moved()), 6u);
}

TEST_P(MoveDirectory, AFileInUseIsNotTornInTwo) {
  for (const DWORD share : {0, FILE_SHARE_READ, FILE_SHARE_READ | FILE_SHARE_WRITE}) {
    const HANDLE user = Open(Source / "2026" / "vide.dat", GENERIC_READ | GENERIC_WRITE, share);
    ASSERT_NE(user, INVALID_HANDLE_VALUE);
    const bool moved = Move(Source, Target);
    CloseHandle(user);
    // A system that renames around open files: they are all there, under the new name.
    EXPECT_TRUE(!moved || (!GetParam() && Move(Moved(), Source.parent_path())));
    ExpectAllWhereItWas("in use");
    EXPECT_TRUE(fs::is_empty(Target));
  }
}

TEST_P(MoveDirectory, DeletesWhatIsCopiedAlone) {
  TDiskFiles files;
  fs::create_directories(Moved());
  WriteBytes(Moved() / "ZEF.INI", "[zef]");
  EXPECT_FALSE(files.IsCopied(Ansi(Source), Ansi(Moved())));
  EXPECT_TRUE(files.IsCopied(Ansi(Moved()), Ansi(Source)));
  EXPECT_TRUE(files.RemoveCopied(Ansi(Moved()), Ansi(Source)));
  EXPECT_TRUE(RemoveDirectoryTree(Ansi(Source)));
  EXPECT_FALSE(fs::exists(Source));
}

INSTANTIATE_TEST_SUITE_P(Volumes, MoveDirectory, testing::Bool(), [](const auto& info) {
  return std::string(info.param ? "AnotherVolume" : "SameVolume");
});

}  // namespace
