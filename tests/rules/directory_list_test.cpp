#include "directories/rules/directory_list.h"

#include <gtest/gtest.h>

#include <map>

#include "text/collation.h"

namespace {

class TMemoryStore : public TSettingsStore {
 public:
  std::string Read(const std::string& name) const override {
    const auto found = Values.find(name);
    return found == Values.end() ? std::string() : found->second;
  }
  std::vector<std::string> Names() const override {
    std::vector<std::string> names;
    for (const auto& value : Values) names.push_back(value.first);
    return names;
  }
  bool Write(const std::string& name, const std::string& value) override {
    if (!Allowed()) return false;
    Values[name] = value;
    return true;
  }
  bool Remove(const std::string& name) override { return Allowed() && Values.erase(name) > 0; }

  std::map<std::string, std::string> Values;
  int FailAt = -1;         ///< number of the change that is refused; -1: none
  bool FailAfter = false;  ///< and every later one
  int Changes = 0;

 private:
  bool Allowed() {
    const int number = Changes++;
    return FailAt < 0 || number < FailAt || (number > FailAt && !FailAfter);
  }
};

std::string Shown(const TDirectoryList& list) {
  std::string text;
  for (int i = 0; i < list.Count(); ++i) {
    text += list.Entry(i).Name + "=" + list.Entry(i).Path + (list.IsDefault(i) ? "*" : "") + ";";
  }
  return text;
}

std::string Loaded(const TMemoryStore& store) {
  TDirectoryList list;
  list.Load(store);
  return Shown(list);
}

void AddWithPath(TDirectoryList& list, const char* name, const char* path) {
  const auto index = list.Add(name);
  ASSERT_TRUE(index.has_value());
  list.SetPath(*index, path);
}

TEST(DirectoryList, SpoiltValuesGiveWhatIsThere) {
  const struct {
    const char* Count;
    const char* Shown;
    bool NothingStored;
  } cases[] = {{"2", "a=pa;b=pb;", false},
               {"2000000000", "a=pa;b=pb;c=pc;z=pz;", false},
               {" 4", "a=pa;b=pb;", false},
               {"-1", "", false},
               {"0", "", true},
               {"", "", true},
               {"deux", "", true},
               {"2x", "", true},
               {"99999999999", "", true}};
  for (const auto& c : cases) {
    TMemoryStore store;
    store.Values = {
        {"NbDirAlias", c.Count},    {"DirAliasName0", "b"},      {"DirAliasPath0", "pb"},
        {"DirAliasName1", "a"},     {"DirAliasPath1", "pa"},     {"DirAliasName2", ""},
        {"DirAliasName12345", "z"}, {"DirAliasPath12345", "pz"}, {"DirAliasName77", "c"},
        {"DirAliasPath77", "pc"},   {"DirAliasName007", "no"},   {"DirAliasName-1", "no"},
        {"DirAliasNameX", "no"}};
    TDirectoryList list;
    list.Load(store);
    EXPECT_EQ(Shown(list), c.Shown) << c.Count;
    EXPECT_EQ(list.NothingStored(), c.NothingStored) << c.Count;
    EXPECT_EQ(store.Changes, 0);
  }
}

TEST(DirectoryList, LastReadOfSeveralEntriesWithOnePath) {
  TMemoryStore store;
  store.Values = {{"NbDirAlias", "3"},         {"DirAliasName0", "z"},
                  {"DirAliasPath0", "C:\\X"},  {"DirAliasName1", "m"},
                  {"DirAliasPath1", "c:\\x"},  {"DirAliasName2", "a"},
                  {"DirAliasPath2", "c:\\x\\"}};
  TDirectoryList list;
  list.Load(store);
  EXPECT_EQ(list.Entry(list.IndexOfPath("c:\\X")).Name, "m");
  EXPECT_EQ(list.IndexOfPath("c:\\y"), -1);
}

// Every change of a save is refused in turn, alone or with all that follow.
TEST(DirectoryList, ABrokenSaveLeavesOneWholeList) {
  TDirectoryList before;
  for (const char* name : {"b", "d", "f"}) AddWithPath(before, name, "old");
  TDirectoryList after;
  for (const char* name : {"a", "", "c,\" ", "d", "e"}) {
    if (*name) AddWithPath(after, name, *name == 'd' ? "" : "new");
  }
  after.SetDefault(2);
  TMemoryStore start;
  ASSERT_TRUE(before.Save(start));
  TMemoryStore whole;
  whole.Values = start.Values;
  ASSERT_TRUE(after.Save(whole));
  ASSERT_EQ(Loaded(whole), Shown(after));
  // The default is remembered by its exact name.
  TMemoryStore otherCase;
  otherCase.Values = whole.Values;
  otherCase.Values["DirAliasDefault"] = "D";
  EXPECT_EQ(Loaded(otherCase).find('*'), std::string::npos);

  for (const bool failAfter : {false, true}) {
    for (int failAt = 0; failAt < whole.Changes; ++failAt) {
      TMemoryStore store;
      store.Values = start.Values;
      store.FailAt = failAt;
      store.FailAfter = failAfter;
      const bool saved = after.Save(store);
      EXPECT_EQ(Loaded(store), Shown(saved ? after : before)) << failAt << failAfter;
      EXPECT_EQ(saved, failAt > 0);
      // A later save that gets through settles it all.
      store.FailAt = -1;
      ASSERT_TRUE(before.Save(store));
      EXPECT_EQ(Loaded(store), Shown(before));
      EXPECT_EQ(store.Values.count("DirAliasPending"), 0u);
    }
  }
}

TEST(DirectoryList, ASpoiltPendingListIsNotRead) {
  for (const char* pending : {"x", "d,a", "d,a,p", "d,a,p,.,", "\"", "d,a,."}) {
    TMemoryStore store;
    store.Values = {{"NbDirAlias", "1"},
                    {"DirAliasName0", "n"},
                    {"DirAliasPath0", "p"},
                    {"DirAliasPending", pending}};
    EXPECT_EQ(Loaded(store), "n=p;") << pending;
  }
}

}  // namespace
