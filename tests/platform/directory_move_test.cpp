#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <thread>

#include "platform/code_page.h"
#include "platform/file_system.h"
#include "temporary_folder.h"

namespace {

namespace fs = std::filesystem;

std::string Ansi(const fs::path& path) { return ToAnsi(path.wstring()); }

bool Move(const fs::path& from, const fs::path& to) {
  return MoveDirectoryTree(Ansi(from), Ansi(to));
}

void Write(const fs::path& path, std::string_view bytes) {
  std::ofstream file(path, std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

/// What lies below a directory: each path with the bytes of its file, or "dir".
std::map<std::string, std::string> Contents(const fs::path& directory) {
  std::map<std::string, std::string> contents;
  if (!fs::exists(directory)) return contents;
  contents["."] = "dir";
  for (const auto& entry : fs::recursive_directory_iterator(directory)) {
    std::string text = "dir";
    if (entry.is_regular_file()) {
      std::ifstream file(entry.path(), std::ios::binary);
      text.assign(std::istreambuf_iterator<char>(file), {});
    }
    contents[Ansi(entry.path().lexically_relative(directory))] = text;
  }
  return contents;
}

/// A folder on the same volume as the source, or on the other one.
class MoveDirectory : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    Target = FHome.Path() / "cible";
    if (GetParam()) {
      if (GetDriveTypeA("D:\\") == DRIVE_NO_ROOT_DIR) GTEST_SKIP() << "no second drive";
      Target = "D:\\zefext_" + std::to_string(GetCurrentProcessId());
    }
    fs::create_directories(Target);
    Source = FHome.Path() / L"Comptes d'\u00E9t\u00E9";
    fs::create_directories(Source / "2026" / "janvier");
    fs::create_directories(Source / "vide");
    Write(Source / "ZEF.INI", "[zef]");
    Write(Source / "2026" / "janvier" / L"caf\u00E9.dat", std::string(300000, '\x1A'));
    Write(Source / "2026" / "vide.dat", "");
    SetFileAttributesW((Source / "ZEF.INI").c_str(), FILE_ATTRIBUTE_READONLY);
    Before = Contents(Source);
    ASSERT_EQ(Before.size(), 7u);
  }
  void TearDown() override {
    for (const fs::path& ini : {Source / "ZEF.INI", Moved() / "ZEF.INI"}) {
      SetFileAttributesW(ini.c_str(), FILE_ATTRIBUTE_NORMAL);
    }
    std::error_code ignored;
    if (!Target.empty()) fs::remove_all(Target, ignored);
  }

  fs::path Moved() const { return Target / Source.filename(); }
  bool Move() const { return ::Move(Source, Moved()); }
  void ExpectAllWhereItWas() const {
    EXPECT_EQ(Contents(Source), Before);
    EXPECT_FALSE(fs::exists(Moved()));
  }

  fs::path Source;
  fs::path Target;
  std::map<std::string, std::string> Before;

 private:
  TTemporaryFolder FHome;
};

TEST_P(MoveDirectory, TakesEverythingAlong) {
  const auto written = fs::last_write_time(Source / "2026" / "janvier" / L"caf\u00E9.dat");
  EXPECT_TRUE(Move());
  EXPECT_FALSE(fs::exists(Source));
  EXPECT_EQ(Contents(Moved()), Before);
  EXPECT_TRUE(GetFileAttributesW((Moved() / "ZEF.INI").c_str()) & FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(fs::last_write_time(Moved() / "2026" / "janvier" / L"caf\u00E9.dat"), written);
}

TEST_P(MoveDirectory, MergesIntoNothingThatIsThere) {
  fs::create_directories(Moved());
  EXPECT_FALSE(Move());
  EXPECT_TRUE(fs::is_empty(Moved()));
  fs::remove(Moved());
  std::ofstream(Moved()) << "a file";
  EXPECT_FALSE(Move());
  EXPECT_EQ(Contents(Source), Before);
  EXPECT_EQ(fs::file_size(Moved()), 6u);
}

TEST_P(MoveDirectory, RefusesWhatIsNoDirectory) {
  const struct {
    fs::path From;
    fs::path To;
  } cases[] = {{Source / "absent", Target / "absent"},
               {Source / "ZEF.INI", Target / "ZEF.INI"},
               {"", Target / "x"},
               {"C:\\", Target / "x"},
               {Source, Target / "absent" / "x"},
               {Source, ""},
               {Source, Source / "2026" / "x"},
               {Source, Target / "a:b?"}};
  for (const auto& c : cases) EXPECT_FALSE(::Move(c.From, c.To)) << c.From << c.To;
  EXPECT_TRUE(fs::is_empty(Target));
  ExpectAllWhereItWas();
}

TEST_P(MoveDirectory, AFileInUseIsNotTornInTwo) {
  for (const DWORD share :
       {DWORD{0}, DWORD{FILE_SHARE_READ}, DWORD{FILE_SHARE_READ | FILE_SHARE_WRITE}}) {
    const HANDLE user =
        CreateFileW((Source / "2026" / "vide.dat").c_str(), GENERIC_READ | GENERIC_WRITE, share,
                    nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(user, INVALID_HANDLE_VALUE);
    const bool moved = Move();
    CloseHandle(user);
    if (GetParam()) {
      EXPECT_FALSE(moved);
      ExpectAllWhereItWas();
    } else if (moved) {
      // A system that renames around open files: they are all there, under the new name.
      EXPECT_EQ(Contents(Moved()), Before);
      ASSERT_TRUE(::Move(Moved(), Source));
    } else {
      ExpectAllWhereItWas();
    }
  }
}

TEST_P(MoveDirectory, WhereNothingMayBeWritten) {
  const fs::path forbidden = "Z:\\proc";
  if (!fs::exists(forbidden)) GTEST_SKIP() << "no such place here";
  EXPECT_FALSE(::Move(Source, forbidden / Source.filename()));
  ExpectAllWhereItWas();
}

// Below the limit at home, beyond it where it goes.
TEST_P(MoveDirectory, LongPaths) {
  const std::string name(100, 'n');
  fs::create_directories(Source / name);
  Before = Contents(Source);
  fs::path deep = Target;
  while (deep.native().size() < 150) deep /= "un dossier";
  fs::create_directories(deep);
  const fs::path moved = deep / Source.filename();
  ASSERT_GT((moved / name).native().size(), 259u);
  EXPECT_TRUE(::Move(Source, moved));
  EXPECT_TRUE(::Move(moved, Source));
  ExpectAllWhereItWas();
}

/// Where moving is copying.
class CopyDirectory : public MoveDirectory {};

// The last file cannot be copied: someone has put another of its name where it would go.
TEST_P(CopyDirectory, IsTakenBackWhenItFails) {
  for (int i = 0; i < 300; ++i) Write(Source / ("a" + std::to_string(i)), "comptes");
  Write(Source / "zz", "comptes");
  Before = Contents(Source);
  std::atomic<bool> done = false;
  std::thread someone([&] {
    while (!done && !fs::exists(Moved())) std::this_thread::yield();
    Write(Moved() / "zz", "d'un autre");
  });
  const bool moved = Move();
  done = true;
  someone.join();
  EXPECT_FALSE(moved);
  EXPECT_EQ(Contents(Source), Before);
  const std::map<std::string, std::string> left = {{".", "dir"}, {"zz", "d'un autre"}};
  EXPECT_EQ(Contents(Moved()), left);
}

INSTANTIATE_TEST_SUITE_P(Volumes, CopyDirectory, testing::Values(true));
INSTANTIATE_TEST_SUITE_P(Volumes, MoveDirectory, testing::Bool(), [](const auto& info) {
  return std::string(info.param ? "AnotherVolume" : "SameVolume");
});

}  // namespace
