#include "directories/rules/directory_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <optional>
#include <set>

#include "directories/rules/directory_move.h"
#include "memory_store.h"
#include "text/collation.h"

namespace {

/// The program dies here.
struct TDeath {};

/// Directories, each a set of files. What takes many steps can be broken off between any two.
class TFakeFiles : public TDirectoryFiles {
 public:
  using TFiles = std::set<std::string>;

  std::string Current() const override { return Here; }
  bool Enter(const std::string& path) override {
    if (!DirectoryExists(path)) return false;
    Here = path;
    return true;
  }
  bool DirectoryExists(const std::string& path) const override { return Find(path).has_value(); }
  TRenaming Rename(const std::string& from, const std::string& to) override {
    Step();
    const auto found = Find(from);
    if (!found || DirectoryExists(to) || Stuck || IsOrLiesInside(Here, from))
      return TRenaming::Refused;
    if (UpperText(from.substr(0, 1)) != UpperText(to.substr(0, 1))) return TRenaming::OtherVolume;
    TFiles moved = Below(*found);
    moved.insert(*found);
    for (const auto& path : moved) {
      Directories[to + path.substr(found->size())] = Directories[path];
      Directories.erase(path);
    }
    Step();
    return TRenaming::Done;
  }
  std::shared_ptr<void> Copy(const std::string& from, const std::string& to) override {
    if (Stuck) return nullptr;
    for (const auto& file : Directories[*Find(from)]) {
      Step();
      if (CopyFails && !Directories[to].empty()) return nullptr;
      Directories[to].insert(file);
    }
    for (const auto& below : Below(*Find(from)))
      Directories[to + below.substr(from.size())] = Directories[below];
    Step();
    return std::make_shared<int>();
  }
  bool Remove(const std::string& path) override { return RemoveCopied(path, path); }
  bool IsCopied(const std::string& path, const std::string& other) const override {
    const auto copy = Find(other);
    return copy && std::ranges::includes(Directories.at(*copy), Directories.at(*Find(path)));
  }
  bool RemoveCopied(const std::string& path, const std::string& other) override {
    if (!DirectoryExists(other)) return false;
    const TFiles copied = Directories[*Find(other)];
    TFiles& files = Directories[*Find(path)];
    for (const auto& file : copied) {
      Step();
      files.erase(file);
    }
    if (!files.empty()) return false;
    for (const auto& below : Below(path)) Directories.erase(below);
    Directories.erase(path);
    Step();
    return true;
  }
  std::string NewMark() override { return ".mark"; }
  std::shared_ptr<void> HoldMoves() override { return Busy ? nullptr : std::make_shared<int>(); }

  void Step() {
    if (DieAt-- == 0) throw TDeath();
  }
  std::optional<std::string> Find(const std::string& path) const {
    for (const auto& [name, files] : Directories)
      if (SameDirectory(name, path)) return name;
    return std::nullopt;
  }

  std::map<std::string, TFiles> Directories = {
      {"c:\\", {}}, {"c:\\zef", {"1", "2"}}, {"c:\\zef\\2026", {}}, {"d:\\", {}}, {"d:\\data", {}}};
  std::string Here = "c:\\";
  bool Stuck = false, CopyFails = false, Busy = false;
  int DieAt = -1;

 private:
  TFiles Below(const std::string& path) const {
    TFiles below;
    for (const auto& [name, files] : Directories)
      if (name != path && IsOrLiesInside(name, path)) below.insert(name);
    return below;
  }
};

const TFakeFiles::TFiles kWhole = {"1", "2"};

/// A stored list of one entry.
struct TListOfOne : TMemoryStore {
  explicit TListOfOne(const std::string& path) {
    Values = {{"NbDirAlias", "1"}, {"DirAliasName0", "n"}, {"DirAliasPath0", path}};
  }
};

TEST(DirectoryFiles, PathsOfMoves) {
  EXPECT_EQ(MovedPath("c:\\a\\b\\", "d:\\data"), "d:\\data\\b");
  EXPECT_EQ(MovedPath("c:\\a", "d:\\"), "d:\\a");
  EXPECT_EQ(MovedPath("relatif", "d:\\data"), "d:\\data\\relatif");
  const struct {
    const char *Path, *Directory;
    bool Inside;
  } cases[] = {{"c:\\a", "c:\\a", true},    {"C:\\A\\b", "c:\\a", true},
               {"c:\\ab", "c:\\a", false},  {"c:\\a\\b", "c:\\a\\", true},
               {"c:\\", "c:\\a", false},    {"c:\\x", "c:\\", true},
               {"d:\\a\\b", "c:\\a", false}};
  for (const auto& c : cases) EXPECT_EQ(IsOrLiesInside(c.Path, c.Directory), c.Inside) << c.Path;
}

TEST(DirectoryFiles, OpeningAndEntering) {
  TFakeFiles files;
  TDirectoryList list;
  list.Import("a", "c:\\zef");
  list.Import("b", "c:\\away");
  const TOpening openings[] = {TOpening::NothingSelected, TOpening::Allowed,
                               TOpening::DirectoryMissing};
  for (int i = -1; i < 2; ++i) EXPECT_EQ(CanOpen(files, list, i), openings[i + 1]);
  EXPECT_EQ(EnterDirectory(files, "C:\\"), TEntering::AlreadyThere);
  EXPECT_EQ(EnterDirectory(files, "c:\\away"), TEntering::Failed);
  EXPECT_EQ(EnterDirectory(files, "c:\\zef"), TEntering::Entered);
  EXPECT_EQ(files.Here, "c:\\zef");
}

TEST(DirectoryFiles, MovesAndRefusals) {
  enum { None, Stuck, HalfACopy, OthersMove, OthersSave, NothingNoted };
  const struct {
    const char *Directory, *Folder, *Current;
    const char* Moved;  ///< null: refused
    const char* CurrentAfter;
    int Trouble = None;
    const char* Exists = "c:\\";
  } cases[] = {
      {"c:\\zef", "d:\\data", "d:\\", "d:\\data\\zef", "d:\\"},
      {"c:\\zef\\", "d:\\data\\", "d:\\", "d:\\data\\zef", "d:\\"},
      {"d:\\data", "d:\\x", "c:\\", "d:\\x\\data", "c:\\", None, "d:\\x"},
      {"c:\\zef", "d:\\data", "c:\\zef", "d:\\data\\zef", "d:\\data\\zef"},
      {"C:\\ZEF", "d:\\data", "c:\\zef", "d:\\data\\ZEF", "d:\\data\\ZEF"},
      {"c:\\zef", "d:\\data", "c:\\zef\\2026", "d:\\data\\zef", "d:\\data\\zef\\2026"},
      {"c:\\zef", "d:\\data", "c:\\zef", nullptr, "c:\\zef", Stuck},
      {"c:\\zef", "d:\\data", "c:\\", nullptr, "c:\\", HalfACopy},
      {"c:\\zef", "d:\\data", "c:\\", nullptr, "c:\\", OthersMove},
      {"c:\\zef", "d:\\data", "c:\\zef", nullptr, "c:\\zef", OthersSave},
      {"c:\\zef", "c:\\x", "c:\\zef", nullptr, "c:\\zef", OthersSave, "c:\\x"},
      {"c:\\zef", "d:\\data", "c:\\", nullptr, "c:\\", NothingNoted},
      {"c:\\zef", "d:\\data", "c:\\zef", nullptr, "c:\\zef", None, "d:\\data\\zef"},
      {"c:\\zef", "c:\\", "c:\\zef", nullptr, "c:\\zef"},
      {"c:\\zef", "c:\\zef", "c:\\zef", nullptr, "c:\\zef"},
      {"c:\\zef", "C:\\Zef\\sub", "c:\\", nullptr, "c:\\"},
      {"e:\\zef", "d:\\data", "c:\\", nullptr, "c:\\"},
      {"", "d:\\data", "c:\\", nullptr, "c:\\"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(&c - cases);
    TFakeFiles files;
    files.Here = c.Current;
    files.Stuck = c.Trouble == Stuck;
    files.CopyFails = c.Trouble == HalfACopy;
    files.Busy = c.Trouble == OthersMove;
    files.Directories[c.Exists];
    TListOfOne store(c.Directory);
    store.Busy = c.Trouble == OthersSave;
    if (c.Trouble == NothingNoted) store.FailAt = 0;
    const auto before = files.Directories;
    const auto moved = MoveDirectoryInto(files, store, c.Directory, c.Folder);
    EXPECT_EQ(files.Here, c.CurrentAfter);
    EXPECT_EQ(store.Read("DirAliasPath0"), c.Moved ? c.Moved : c.Directory);
    EXPECT_EQ(store.Read("DirAliasMove"), "");
    EXPECT_EQ(moved.value_or("refused"), c.Moved ? c.Moved : "refused");
    EXPECT_TRUE(c.Moved || files.Directories == before);
    for (const auto& each : files.Directories)
      EXPECT_EQ(each.first.find(".mark"), std::string::npos);
  }
}

/// Dies at one step of the move and at one of the next opening, then goes on.
void DieTwice(const std::string& folder, int moveStep, int settleStep, bool& died,
              bool& diedAgain) {
  SCOPED_TRACE(std::to_string(moveStep) + " " + std::to_string(settleStep));
  TFakeFiles files;
  files.Directories["c:\\x"];
  TListOfOne store("c:\\zef");
  store.Changed = [&] { files.Step(); };
  const auto whole = [&](const std::string& path) {
    return files.DirectoryExists(path) && files.Directories[*files.Find(path)] == kWhole;
  };
  const auto stored = [&] { return store.Read("DirAliasPath0"); };
  const auto dies = [&](int step, auto&& action) {
    files.DieAt = step;
    try {
      action();
    } catch (const TDeath&) {
      return true;
    }
    return false;
  };
  // A renaming is told to the list right after it, and the note says so until then.
  const bool copies = folder[0] != 'c';
  died = dies(moveStep, [&] { MoveDirectoryInto(files, store, "c:\\zef", folder); });
  EXPECT_TRUE(!copies || whole(stored()));
  diedAgain = dies(settleStep, [&] { SettleMove(files, store); });
  EXPECT_TRUE(!copies || whole(stored()));
  files.DieAt = -1;
  SettleMove(files, store);
  EXPECT_TRUE(whole(stored()));
  MoveDirectoryInto(files, store, "c:\\zef", folder);
  const std::string target = MovedPath("c:\\zef", folder);
  EXPECT_TRUE(stored() == target && whole(target));
  EXPECT_EQ(store.Read("DirAliasMove"), "");
  std::set<std::string> names;
  for (const auto& each : files.Directories) names.insert(each.first);
  EXPECT_EQ(names, (std::set<std::string>{"c:\\", "c:\\x", "d:\\", "d:\\data", target,
                                          target + "\\2026"}));
}

TEST(DirectoryFiles, AMoveSurvivesDeathAtEveryStep) {
  for (const char* folder : {"d:\\data", "c:\\x"}) {
    int steps = 0;
    for (bool died = true, again = true; died; ++steps, again = true)
      for (int settleStep = 0; again; ++settleStep)
        DieTwice(folder, steps, settleStep, died, again);
    EXPECT_GT(steps, *folder == 'd' ? 10 : 3) << folder;
  }
}

TEST(DirectoryFiles, AMoveSurvivesEveryTextThatCannotBeRead) {
  for (const char* folder : {"d:\\data", "c:\\x"}) {
    bool met = true;
    for (int number = 0; met; ++number) {
      TFakeFiles files;
      files.Directories["c:\\x"];
      TListOfOne store("c:\\zef");
      store.Values["DirAliasMove"] = "";
      store.UnreadableAt = number;
      const bool moved = MoveDirectoryInto(files, store, "c:\\zef", folder).has_value();
      met = store.ReadAgain();
      SettleMove(files, store);
      const std::string path = store.Read("DirAliasPath0");
      EXPECT_EQ(files.Directories[path], kWhole) << number << path;
      EXPECT_TRUE(met || moved) << number;
    }
  }
}

// What a broken move left is only touched where it is surely the move's own.
TEST(DirectoryFiles, WhatOthersDidSinceStays) {
  // By a letter for each place and a digit for the set of files that it holds.
  const std::pair<char, const char*> places[] = {
      {'c', "c:\\zef"}, {'d', "d:\\zef"}, {'m', "c:\\zef.m"}};
  const TFakeFiles::TFiles sets[] = {{"new"}, kWhole, {"1", "2", "new"}};
  const struct {
    const char* Note;
    std::string There;
    const char* Left;
    bool Noted = false;
  } cases[] = {
      {"c:\\zef,d:\\zef,.m,copied", "c2d1", "c2d1"},  // worked in the original
      {"c:\\zef,d:\\zef,.m,begun", "c1d0", "c1d0"},   // a target of others
      {"c:\\zef,d:\\zef,.m,copied", "d1m2", "c0d1"},  // put aside with something new
      {"c:\\zef,d:\\zef,.m,copied", "m1", "c1"},      // put aside, the target deleted
      {"c:\\zef,e:\\zef,.m,copied", "c1", "c1", true},
      {"c:\\zef,d:\\zef,,begun", "c1d1", "c1d1", true},
      {"c:\\zef", "c1", "c1", true},
  };
  for (const auto& c : cases) {
    TFakeFiles files;
    files.Directories.erase("c:\\zef");
    for (const auto& [letter, path] : places)
      if (const auto at = c.There.find(letter); at != std::string::npos)
        files.Directories[path] = sets[c.There[at + 1] - '0'];
    TListOfOne store("c:\\zef");
    store.Values["DirAliasMove"] = c.Note;
    files.Busy = true;
    SettleMove(files, store);
    EXPECT_EQ(store.Read("DirAliasMove"), c.Note) << "another process is at it";
    files.Busy = false;
    SettleMove(files, store);
    std::string left;
    for (const auto& [letter, path] : places)
      if (const auto found = files.Directories.find(path); found != files.Directories.end())
        left.append(1, letter) += std::to_string(std::ranges::find(sets, found->second) - sets);
    EXPECT_EQ(left, c.Left) << c.Note;
    EXPECT_EQ(store.Read("DirAliasPath0"), "c:\\zef") << c.Note;
    EXPECT_EQ(!store.Read("DirAliasMove").empty(), c.Noted) << c.Note;
  }
}

}  // namespace
