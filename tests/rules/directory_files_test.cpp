#include "directories/rules/directory_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "directories/rules/directory_move.h"
#include "memory_store.h"
#include "text/collation.h"

namespace {

/// The program dies here.
struct TDeath {};

using TPaths = std::set<std::string>;

bool IsDirectory(const std::string& path) { return path.ends_with('\\'); }

/// Files and directories, whose paths end with a backslash. What takes many steps can be broken off
/// between any two.
class TFakeFiles : public TDirectoryFiles {
 public:
  std::string Current() const override { return Here; }
  bool Enter(const std::string& path) override {
    if (!DirectoryExists(path)) return false;
    Here = path;
    return true;
  }
  bool DirectoryExists(const std::string& path) const override {
    return !path.ends_with(':') && !In(path).empty();
  }
  TRenaming Rename(const std::string& from, const std::string& to) override {
    Step();
    const TPaths moved = In(from);
    if (moved.empty() || DirectoryExists(to) || Stuck || IsOrLiesInside(Here, from))
      return TRenaming::Refused;
    if (UpperText(from.substr(0, 1)) != UpperText(to.substr(0, 1))) return TRenaming::OtherVolume;
    EraseAll(from);
    for (const auto& rest : moved) Paths.insert(to + rest);
    Step();
    return TRenaming::Done;
  }
  std::shared_ptr<void> Copy(const std::string& from, const std::string& to) override {
    if (Stuck) return nullptr;
    for (const auto& rest : In(from)) {
      Step();
      if (CopyFails && DirectoryExists(to)) return nullptr;
      Paths.insert(to + rest);
    }
    Step();
    return std::make_shared<int>();
  }
  bool Remove(const std::string& path) override { return RemoveCopied(path, path); }
  bool IsCopied(const std::string& path, const std::string& other) const override {
    return std::ranges::includes(In(other), In(path));
  }
  bool RemoveCopied(const std::string& path, const std::string& other) override {
    const TPaths copied = In(other);
    for (const auto& rest : copied) {
      Step();
      if (!IsDirectory(rest)) Paths.erase(path + rest);
    }
    if (copied.empty() || !std::ranges::all_of(In(path), IsDirectory)) return false;
    EraseAll(path);
    Step();
    return true;
  }
  std::string NewMark() override { return ".mark"; }
  std::shared_ptr<void> HoldMoves() override { return Busy ? nullptr : std::make_shared<int>(); }

  void Step() {
    if (DieAt-- == 0) throw TDeath();
  }
  /// What a directory holds, from its own backslash on; nothing when it is not there.
  TPaths In(const std::string& directory) const {
    TPaths rests;
    for (const auto& path : Paths)
      if (IsOrLiesInside(path, directory))
        rests.insert(path.substr(WithoutEndSlashes(directory).size()));
    return rests;
  }
  void EraseAll(const std::string& directory) {
    std::erase_if(Paths, [&](const auto& path) { return IsOrLiesInside(path, directory); });
  }

  TPaths Paths = {"c:\\", "c:\\zef\\", "c:\\zef\\1", "c:\\zef\\2", "c:\\zef\\2026\\",
                  "d:\\", "d:\\data\\"};
  std::string Here = "c:\\";
  bool Stuck = false, CopyFails = false, Busy = false;
  int DieAt = -1;
};

const TPaths kWhole = {"\\", "\\1", "\\2", "\\2026\\"};

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
    const char* Followed;  ///< once the directory is "d:\\x"; null: not inside
  } cases[] = {{"c:\\a", "c:\\a", "d:\\x"},    {"C:\\A\\b", "c:\\a", "d:\\x\\b"},
               {"c:\\ab", "c:\\a", nullptr},   {"c:\\a\\b", "c:\\a\\", "d:\\x\\b"},
               {"c:\\a\\", "C:\\a", "d:\\x"},  {"c:\\a\\B\\c\\", "c:\\A", "d:\\x\\B\\c\\"},
               {"c:\\", "c:\\a", nullptr},     {"c:\\y", "c:\\", "d:\\x\\y"},
               {"d:\\a\\b", "c:\\a", nullptr}, {"", "c:\\a", nullptr}};
  EXPECT_FALSE(FollowedPath("c:\\a\\../b", "c:\\a", "d:\\x"));
  EXPECT_EQ(FollowedPath("c:\\a\\..b", "c:\\a", "d:\\"), "d:\\..b");
  for (const auto& c : cases) {
    EXPECT_EQ(IsOrLiesInside(c.Path, c.Directory), c.Followed != nullptr) << c.Path;
    EXPECT_EQ(FollowedPath(c.Path, c.Directory, "d:\\x").value_or("none"),
              c.Followed ? c.Followed : "none");
  }
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
  enum { None, Stuck, HalfACopy, OthersMove, OthersSave, NothingNoted, NotSaved, CopyNotSaved };
  const struct {
    const char *Directory, *Folder, *Current;
    const char* Moved;  ///< null: refused
    const char* CurrentAfter;
    int Trouble = None;
    const char* Exists = "c:\\";
  } cases[] = {
      {"c:\\zef", "d:\\data", "d:\\", "d:\\data\\zef", "d:\\"},
      {"c:\\zef\\", "d:\\data\\", "d:\\", "d:\\data\\zef", "d:\\"},
      {"d:\\data", "d:\\x", "c:\\", "d:\\x\\data", "c:\\", None, "d:\\x\\"},
      {"c:\\zef", "d:\\data", "c:\\zef", "d:\\data\\zef", "d:\\data\\zef"},
      {"C:\\ZEF", "d:\\data", "c:\\zef", "d:\\data\\ZEF", "d:\\data\\ZEF"},
      {"c:\\zef", "d:\\data", "c:\\zef\\2026", "d:\\data\\zef", "d:\\data\\zef\\2026"},
      {"c:\\zef", "d:\\data", "c:\\zef\\gone", "d:\\data\\zef", "d:\\data\\zef"},
      {"c:\\zef", "d:\\data", "c:\\zef", nullptr, "c:\\zef", Stuck},
      {"c:\\zef", "d:\\data", "c:\\", nullptr, "c:\\", HalfACopy},
      {"c:\\zef", "d:\\data", "c:\\", nullptr, "c:\\", OthersMove},
      {"c:\\zef", "d:\\data", "c:\\zef", nullptr, "c:\\zef", OthersSave},
      {"c:\\zef", "c:\\x", "c:\\zef", nullptr, "c:\\zef", OthersSave, "c:\\x\\"},
      {"c:\\zef", "d:\\data", "c:\\", nullptr, "c:\\", NothingNoted},
      {"c:\\zef", "c:\\x", "c:\\zef", nullptr, "c:\\zef", NotSaved, "c:\\x\\"},
      {"c:\\zef", "d:\\data", "c:\\zef", nullptr, "c:\\zef", CopyNotSaved},
      {"c:\\zef", "d:\\data", "c:\\zef", nullptr, "c:\\zef", None, "d:\\data\\zef\\"},
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
    files.Paths.insert(c.Exists);
    TListOfOne store(c.Directory);
    store.Busy = c.Trouble == OthersSave;
    if (c.Trouble >= NothingNoted) store.FailAt = c.Trouble - NothingNoted;
    const TPaths before = files.Paths;
    const auto moved = MoveDirectoryInto(files, store, c.Directory, c.Folder);
    EXPECT_EQ(files.Here, c.CurrentAfter);
    EXPECT_EQ(store.Read("DirAliasPath0"), c.Moved ? c.Moved : c.Directory);
    EXPECT_EQ(store.Read("DirAliasMove"), "");
    EXPECT_EQ(moved.value_or("refused"), c.Moved ? c.Moved : "refused");
    EXPECT_TRUE(c.Moved || files.Paths == before);
    for (const auto& path : files.Paths) EXPECT_EQ(path.find(".mark"), std::string::npos);
  }
}

/// What goes wrong, by number from 0 on: none is -1. Set to -1 when it did not come to that.
struct TFaults {
  int MoveStep = -1, SettleStep = -1;  ///< of the move, of the next opening: the program dies there
  int Reading = -1;                    ///< of the move: the text cannot be read
  int Writing = -1, LastWriting = -1;  ///< of the move: it fails, or it and all after it
};

/// Breaks a move off, then goes on.
void BreakOff(const std::string& folder, TFaults& faults) {
  SCOPED_TRACE(std::to_string(faults.MoveStep) + " " + std::to_string(faults.SettleStep));
  TFakeFiles files;
  // An earlier move left a copy, which only its note tells of, and a save the list half written.
  files.Paths.insert({"c:\\old\\", "c:\\x\\", "d:\\old.m\\"});
  TMemoryStore store;
  store.Values = {{"NbDirAlias", "3"},         {"DirAliasMove", "c:\\old,d:\\old,.m,begun"},
                  {"DirAliasName0", "n"},      {"DirAliasPath0", "c:\\zef"},
                  {"DirAliasName1", "inside"}, {"DirAliasPath1", "C:\\Zef\\2026"},
                  {"DirAliasName2", "beside"}, {"DirAliasPath2", "?"}};
  store.Values["DirAliasPending"] = "DirAliasPath0,c:\\zef,?,DirAliasPath2,c:\\zef2,?,.";
  store.Changed = [&] { files.Step(); };
  store.UnreadableAt = faults.Reading;
  store.FailAt = std::max(faults.Writing, faults.LastWriting);
  store.FailAfter = faults.LastWriting >= 0;
  const auto whole = [&](const std::string& path) { return files.In(path) == kWhole; };
  const auto stored = [&] { return store.Read("DirAliasPath0"); };
  const auto run = [&](int& step, auto&& action) {
    files.DieAt = step;
    try {
      action();
      step = -1;
    } catch (const TDeath&) {
    }
  };
  // A renaming is told to the list right after it, and the note says so until then.
  const bool copies = folder[0] != 'c';
  run(faults.MoveStep, [&] {
    const auto moved = MoveDirectoryInto(files, store, "c:\\zef", folder);
    EXPECT_TRUE(copies || moved.has_value() != whole("c:\\zef"));
  });
  if (!store.ReadAgain()) faults.Reading = -1;
  if (store.Changes <= std::exchange(store.FailAt, -1)) faults.Writing = faults.LastWriting = -1;
  EXPECT_TRUE(!copies || whole(stored()));
  run(faults.SettleStep, [&] { SettleMove(files, store); });
  EXPECT_TRUE(!copies || whole(stored()));
  files.DieAt = -1;
  SettleMove(files, store);
  EXPECT_TRUE(whole(stored()));
  for (const auto& path : files.Paths) EXPECT_EQ(path.find(".mark"), std::string::npos);
  MoveDirectoryInto(files, store, "c:\\zef", folder);
  const std::string target = MovedPath("c:\\zef", folder);
  EXPECT_TRUE(stored() == target && whole(target));
  EXPECT_EQ(store.Read("DirAliasPath1") + store.Read("DirAliasPath2"), target + "\\2026c:\\zef2");
  EXPECT_EQ(store.Read("DirAliasMove"), "");
  files.EraseAll(target);
  EXPECT_EQ(files.Paths, (TPaths{"c:\\", "c:\\old\\", "c:\\x\\", "d:\\", "d:\\data\\"}));
}

TEST(DirectoryFiles, AMoveSurvivesDeathAtEveryStepAndEveryTextThatFails) {
  for (const char* folder : {"d:\\data", "c:\\x"}) {
    int steps = 0;
    for (TFaults faults{0, 0}; faults.MoveStep >= 0; ++steps)
      for (int settle = 0; settle == 0 || faults.SettleStep >= 0; ++settle)
        BreakOff(folder, faults = {steps, settle});
    EXPECT_GT(steps, *folder == 'd' ? 10 : 3) << folder;
    for (const auto fault : {&TFaults::Reading, &TFaults::Writing, &TFaults::LastWriting}) {
      int number = 0;
      for (TFaults faults; number == 0 || faults.*fault >= 0; BreakOff(folder, faults))
        faults = {}, faults.*fault = number++;
      EXPECT_GT(number, 3) << folder;
    }
  }
}

// What a broken move left is only touched where it is surely the move's own.
TEST(DirectoryFiles, WhatOthersDidSinceStays) {
  // By a letter for each place, followed by the names of the files that it holds.
  const std::pair<char, std::string> places[] = {
      {'c', "c:\\zef\\"}, {'d', "d:\\zef\\"}, {'m', "c:\\zef.m\\"}};
  const struct {
    const char *Note, *There, *Left;
    bool Noted = false, OthersSave = false;
  } cases[] = {
      {"c:\\zef,d:\\zef,.m,copied", "c12n d12 ", "c12n d12 "},  // worked in the original
      {"c:\\zef,d:\\zef,.m,begun", "c12 dn ", "c12 dn "},       // a target of others
      {"c:\\zef,d:\\zef,.m,copied", "d12 m12n ", "cn d12 "},    // put aside with something new
      {"c:\\zef,d:\\zef,.m,copied", "m12 ", "c12 "},            // put aside, the target deleted
      {"c:\\zef,e:\\zef,.m,copied", "c12 ", "c12 ", true},
      {"c:\\zef,d:\\zef,,begun", "c12 d12 ", "c12 d12 ", true},
      {"c:\\zef", "c12 ", "c12 ", true},
      {"c:\\zef,d:\\zef,.m,copied", "c12 d12 ", "c12 d12 ", true, true},
      {"c:\\zef,d:\\zef,.m,begun", "d12 ", "d12 ", true, true},
  };
  for (const auto& c : cases) {
    TFakeFiles files;
    files.EraseAll("c:\\zef");
    const std::string there = c.There;
    for (const auto& [letter, path] : places)
      for (auto at = there.find(letter); at < there.size() && there[at] != ' '; ++at)
        files.Paths.insert(there[at] == letter ? path : path + there[at]);
    TListOfOne store("c:\\zef");
    store.Values["DirAliasMove"] = c.Note;
    store.Busy = c.OthersSave;
    files.Busy = true;
    SettleMove(files, store);
    EXPECT_EQ(store.Read("DirAliasMove"), c.Note) << "another process is at it";
    files.Busy = false;
    SettleMove(files, store);
    std::string left;
    for (const auto& [letter, path] : places) {
      for (const auto& rest : files.In(path)) left += rest == "\\" ? letter : rest[1];
      if (files.DirectoryExists(path)) left += ' ';
    }
    EXPECT_EQ(left, c.Left) << c.Note;
    EXPECT_EQ(store.Read("DirAliasPath0"), "c:\\zef") << c.Note;
    EXPECT_EQ(!store.Read("DirAliasMove").empty(), c.Noted) << c.Note;
  }
}

}  // namespace
