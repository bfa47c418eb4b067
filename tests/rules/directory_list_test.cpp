#include "directories/rules/directory_list.h"

#include <gtest/gtest.h>

#include <random>

#include "directory_trial.h"

namespace {

void AddWithPath(TDirectoryList& list, const char* name, const char* path) {
  list.SetPath(list.Add(name).value(), path);
}

TEST(DirectoryList, SpoiltValuesGiveWhatIsThere) {
  const struct {
    const char *Count, *Shown;
  } cases[] = {{"2", "a=pa;b=pb;"},
               {" +4", "a=pa;b=pb;"},
               {"2000000000", "a=pa;b=pb;c=pc;d=pd;z=pz;"},
               {"12345", "a=pa;b=pb;c=pc;d=pd;"},
               {"-1", ""},
               {"0", "nothing"},
               {"", "nothing"},
               {"deux", "nothing"},
               {"2x", "nothing"},
               {"99999999999", "nothing"}};
  for (const auto& c : cases) {
    TMemoryStore store;
    store.Values = {
        {"NbDirAlias", c.Count},    {"DirAliasName0", "b"},      {"DirAliasPath0", "pb"},
        {"DirAliasName1", "a"},     {"DirAliasPath1", "pa"},     {"DirAliasName2", ""},
        {"DirAliasName12345", "z"}, {"DirAliasPath12345", "pz"}, {"DirAliasName77", "c"},
        {"DirAliasPath77", "pc"},   {"DirAliasName007", "no"},   {"DirAliasName-1", "no"},
        {"DirAliasName1000", "d"},  {"DirAliasPath1000", "pd"},  {"DirAliasNameX", "no"},
        {"DirAliasDefault", "A"}};  // not the exact name
    TDirectoryList list;
    list.Load(store);
    EXPECT_EQ(Shown(list) + (list.NothingStored() ? "nothing" : ""), c.Shown) << c.Count;
    EXPECT_EQ(store.Changes, 0) << "reading writes nothing";
  }
}

TEST(DirectoryList, KeepsItsOrderAndItsDefault) {
  using TChange = std::function<std::optional<int>(TDirectoryList&)>;
  const auto rename = [](int index, const char* name) {
    return [=](TDirectoryList& list) { return list.Rename(index, name); };
  };
  const struct {
    TChange Change;
    std::optional<int> Index;
    const char* Shown;
  } cases[] = {
      {rename(0, "z"), 2, "b=;c=;z=*;"},
      {rename(2, "A1"), 1, "a=*;A1=;b=;"},
      {rename(1, "B1"), 1, "a=*;B1=;c=;"},
      {rename(1, "A1"), 1, "a=*;A1=;c=;"},
      {rename(0, "A"), std::nullopt, "a=*;b=;c=;"},
      {[](auto& list) { return list.Add("A"); }, std::nullopt, "a=*;b=;c=;"},
      {[](auto& list) { return list.Add("aa"); }, 1, "a=*;aa=;b=;c=;"},
      {[](auto& list) { return list.Import("B", "p"); }, 2, "a=*;b=;B=p;c=;"},
      {[](auto& list) { return list.Remove(1), list.IndexToOpen(""); }, 0, "a=*;c=;"},
      // Of those with one path, the one that came last.
      {[](auto& list) {
         for (int i = 0; i < 3; ++i) list.SetPath(i, i < 2 ? "X" : "x\\");
         return list.IndexOfPath("x");
       },
       1, "a=X*;b=X;c=x\\;"},
      {[](auto& l) { return l.Import("aa", "x"), l.SetPath(0, "X"), l.IndexOfPath("x"); }, 0,
       "a=X*;aa=x;b=;c=;"},
      {[](auto& l) { return l.SetPath(1, "x"), l.Repoint("X", "y"), l.IndexOfPath("y"); }, 1,
       "a=*;b=y;c=;"},
      {[](auto& list) { return list.IndexOfPath("y"); }, -1, "a=*;b=;c=;"},
      {[](auto& list) { return list.Remove(0), list.IndexToOpen("C"); }, 1, "b=;c=;"},
  };
  for (const auto& c : cases) {
    TDirectoryList list;
    for (const char* name : {"a", "c", "b"}) list.Add(name);
    EXPECT_EQ(c.Change(list), c.Index);
    EXPECT_EQ(Shown(list), c.Shown);
  }
}

TEST(DirectoryList, ABrokenSaveLeavesOneWholeList) {
  std::mt19937 random(4711);
  const std::string_view signs("\0\1\2\3\4abcd,\"\n\n\n", 15);
  for (int run = 0; run < 1000; ++run) {
    std::string input(1, '\0');  // nothing stored yet
    for (int i = 0; i < 200; ++i)
      input += random() % 3 != 0 ? signs[random() % signs.size()] : static_cast<char>(random());
    SaveAgainAndAgain(TInput(input));
  }
}

// A save that was broken off is finished, but never over what was written since by other means.
TEST(DirectoryList, WhatAPendingListSaysAndWhatWasWrittenSince) {
  using TValues = std::map<std::string, std::string>;
  const std::string broken =
      "DirAliasName0,neuf,n,DirAliasPath0,np,p,NbDirAlias,1,1,DirAliasDefault,,,.";
  const struct {
    std::string Pending;
    TValues Since;
    const char* Shown;
  } cases[] = {{broken, {}, "neuf=np;"},
               {broken, {{"DirAliasName0", "neuf"}}, "neuf=np;"},
               {broken, {{"DirAliasPath0", "np"}}, "n=np;"},
               {broken, {{"DirAliasDefault", "n"}}, "n=p*;"},
               {broken, {{"DirAliasName0", "autre"}}, "autre=p;"},
               {broken, {{"NbDirAlias", "2"}, {"DirAliasName1", "x"}}, "n=p;x=;"},
               {broken.substr(0, broken.size() - 2), {}, "n=p;"},
               {broken + ",", {}, "n=p;"},
               {broken + "x", {}, "n=p;"},
               {"d,a,p", {}, "n=p;"}};
  for (int run = 0; run < 32 * static_cast<int>(std::size(cases)); ++run) {
    const auto& c = cases[run / 32];
    TMemoryStore store;
    store.Values = {{"NbDirAlias", "1"}, {"DirAliasName0", "n"}, {"DirAliasPath0", "p"}};
    store.Values["DirAliasPending"] = c.Pending;
    for (const auto& [name, value] : c.Since) store.Values[name] = value;
    // A reading that fails breaks nothing.
    store.UnreadableAt = run % 32;
    Loaded(store), store.ReadAgain();
    // While another process saves.
    store.Busy = true, store.Changes = 0;
    EXPECT_TRUE(Loaded(store) == c.Shown && store.Changes == 0) << c.Pending;
    store.Busy = false;
    EXPECT_EQ(Loaded(store), c.Shown) << c.Pending;
    EXPECT_TRUE(std::string(c.Shown).starts_with(store.Read("DirAliasName0") + "=")) << c.Pending;
    EXPECT_FALSE(store.Values.contains("DirAliasPending"));
  }
}

TEST(DirectoryList, TwoProgramsSave) {
  using TChange = std::function<void(TDirectoryList&)>;
  const TChange nothing = [](auto&) {}, removeFirst = [](auto&list) { list.Remove(0); };
  const auto set = [](int index, const char* path) {
    return [=](TDirectoryList& list) { list.SetPath(index, path); };
  };
  const auto add = [](const char* name, const char* path) {
    return [=](TDirectoryList& list) { AddWithPath(list, name, path); };
  };
  const struct {
    TChange Theirs, Mine;
    const char* Stored;
  } cases[] = {
      {set(0, "x"), nothing, "a=x*;b=q;"},
      {set(0, "x"), set(1, "y"), "a=x*;b=y;"},
      {set(0, "x"), set(0, "y"), "a=y*;a (2)=x;b=q;"},
      {set(0, "x"), set(0, "X"), "a=X*;b=q;"},
      {add("c", "x"), add("d", "y"), "a=p*;b=q;c=x;d=y;"},
      {add("c", "x"), add("C", "y"), "a=p*;b=q;C=y;c (2)=x;"},
      {[&](auto& list) { add("c", "x")(list), add("c (2)", "z")(list); }, add("C", "y"),
       "a=p*;b=q;C=y;c (2)=z;c (3)=x;"},
      {removeFirst, set(0, "y"), "a=y;b=q;"},
      {set(0, "x"), removeFirst, "a=x;b=q;"},
      {removeFirst, [](auto& list) { list.Remove(1); }, ""},
      {nothing, [](auto& list) { list.Import("b", "x"); }, "a=p*;b=q;b=x;"},
      {set(1, "x"), add("0", "y"), "0=y;a=p*;b=x;"},
      {[](auto& list) { list.SetDefault(1); }, add("c", "y"), "a=p;b=q*;c=y;"},
      {add("c", "x"), [](auto& list) { list.Rename(1, "z"); }, "a=p*;c=x;z=q;"},
  };
  for (int run = 0; run < 2 * static_cast<int>(std::size(cases)); ++run) {
    const auto& c = cases[run / 2];
    TMemoryStore store;
    TDirectoryList mine, theirs;
    AddWithPath(mine, "a", "p");
    AddWithPath(mine, "b", "q");
    ASSERT_TRUE(mine.Save(store));
    if (run % 2 != 0) mine.Load(store);
    theirs.Load(store);
    c.Theirs(theirs);
    ASSERT_TRUE(theirs.Save(store));
    c.Mine(mine);
    store.Busy = true;
    EXPECT_FALSE(mine.Save(store));
    store.Busy = false;
    for (int saves = 0; saves < 2; ++saves) {
      ASSERT_TRUE(mine.Save(store));
      EXPECT_EQ(Loaded(store), c.Stored) << &c - cases;
      const std::string stored = c.Stored, name = store.Read("DirAliasName0");
      EXPECT_TRUE(stored.empty() || stored.starts_with(name)) << stored << name;
    }
  }
}

}  // namespace
