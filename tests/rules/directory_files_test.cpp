#include "directories/rules/directory_files.h"

#include <gtest/gtest.h>

#include <set>

#include "text/collation.h"

namespace {

/// A disk of directories; those of Stuck can neither be moved nor be left for another place.
class TFakeFiles : public TDirectoryFiles {
 public:
  std::string Current() const override { return Here; }
  bool Enter(const std::string& path) override {
    if (!DirectoryExists(path)) return false;
    Here = path;
    return true;
  }
  bool DirectoryExists(const std::string& path) const override {
    for (const auto& each : Directories) {
      if (SameText(each, path)) return true;
    }
    return false;
  }
  bool Move(const std::string& from, const std::string& to) override {
    if (IsOrLiesInside(Here, from) || !DirectoryExists(from) || Stuck) return false;
    Directories.erase(from);
    Directories.insert(to);
    return true;
  }

  std::set<std::string> Directories = {"c:\\", "c:\\zef", "d:\\", "d:\\data"};
  std::string Here = "c:\\";
  bool Stuck = false;
};

TEST(DirectoryFiles, TargetOfAMove) {
  EXPECT_EQ(MovedPath("c:\\a\\b\\", "d:\\data"), "d:\\data\\b");
  EXPECT_EQ(MovedPath("c:\\a", "d:\\"), "d:\\a");
  EXPECT_EQ(MovedPath("relatif", "d:\\data"), "d:\\data\\relatif");
}

TEST(DirectoryFiles, InsideADirectory) {
  const struct {
    const char* Path;
    const char* Directory;
    bool Inside;
  } cases[] = {{"c:\\a", "c:\\a", true},    {"C:\\A\\b", "c:\\a", true},
               {"c:\\ab", "c:\\a", false},  {"c:\\a\\b", "c:\\a\\", true},
               {"c:\\", "c:\\a", false},    {"c:\\x", "c:\\", true},
               {"d:\\a\\b", "c:\\a", false}};
  for (const auto& c : cases) {
    EXPECT_EQ(IsOrLiesInside(c.Path, c.Directory), c.Inside) << c.Path << " in " << c.Directory;
  }
}

TEST(DirectoryFiles, MovesAndRefusals) {
  const struct {
    const char* What;
    const char* Directory;
    const char* Folder;
    const char* Current;
    bool Stuck;
    const char* Moved;  ///< null: refused
    const char* CurrentAfter;
  } cases[] = {
      {"plain", "c:\\zef", "d:\\data", "d:\\", false, "d:\\data\\zef", "d:\\"},
      {"active", "c:\\zef", "d:\\data", "c:\\zef", false, "d:\\data\\zef", "d:\\data\\zef"},
      {"active, refused", "c:\\zef", "d:\\data", "c:\\zef", true, nullptr, "c:\\zef"},
      {"active, in another case", "C:\\ZEF", "d:\\data", "c:\\zef", false, nullptr, "c:\\zef"},
      {"into its own parent", "c:\\zef", "c:\\", "c:\\zef", false, nullptr, "c:\\zef"},
      {"into itself", "c:\\zef", "c:\\zef", "c:\\zef", false, nullptr, "c:\\zef"},
      {"inside itself", "c:\\zef", "C:\\Zef\\sub", "c:\\", false, nullptr, "c:\\"},
      {"gone", "e:\\zef", "d:\\data", "c:\\", false, nullptr, "c:\\"},
  };
  for (const auto& c : cases) {
    TFakeFiles files;
    files.Here = c.Current;
    files.Stuck = c.Stuck;
    const auto before = files.Directories;
    const auto moved = MoveDirectoryInto(files, c.Directory, c.Folder);
    EXPECT_EQ(files.Here, c.CurrentAfter) << c.What;
    if (c.Moved) {
      EXPECT_EQ(moved, c.Moved) << c.What;
      EXPECT_TRUE(files.DirectoryExists(c.Moved)) << c.What;
    } else {
      EXPECT_EQ(moved, std::nullopt) << c.What;
      EXPECT_EQ(files.Directories, before) << c.What;
    }
  }
  TFakeFiles files;
  files.Directories.insert("d:\\data\\zef");
  files.Here = "c:\\zef";
  EXPECT_EQ(MoveDirectoryInto(files, "c:\\zef", "d:\\data"), std::nullopt) << "the target exists";
  EXPECT_EQ(files.Here, "c:\\zef");
}

}  // namespace
