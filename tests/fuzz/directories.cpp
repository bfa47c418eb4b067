// Whatever the store of the directories holds, reading it, changing the list and saving it with a
// write that fails gives the list before or the list after.

#include "../rules/memory_store.h"
#include "fuzz.h"

namespace {

void Fill(TMemoryStore& store, TInput& input) {
  const char* const names[] = {"DirAliasName", "DirAliasPath", "NbDirAlias", "DirAliasDefault",
                               "DirAliasPending"};
  for (int count = input.Below(32); count > 0; --count) {
    const int name = input.Below(5);
    store.Values[names[name] + (name < 2 ? input.Text(',') : "")] = input.Text();
  }
}

void Change(TDirectoryList& list, TInput& input) {
  const int index = list.Count() > 0 ? input.Below(list.Count()) : -1;
  const int action = index < 0 ? 0 : input.Below(5);
  if (action == 1) return list.Remove(index);
  if (action == 2) return list.SetPath(index, input.Text());
  if (action == 3) return list.SetDefault(index);
  const std::string name = input.Text();
  if (name.empty()) return;
  const auto changed = action == 0 ? list.Add(name) : list.Rename(index, name);
  Check(!changed || list.Entry(*changed).Name == name);
}

const bool directories = Target("directories", [](TInput input) {
  TMemoryStore store;
  Fill(store, input);
  TDirectoryList list;
  list.Load(store);
  const std::string before = Shown(list);
  Check(Loaded(store) == before);
  for (int changes = input.Below(16); changes > 0; --changes) Change(list, input);
  store.FailAt = store.Changes + input.Below(64);
  store.FailAfter = input.Bit();
  const bool saved = list.Save(store);
  store.FailAt = -1;
  Check(Loaded(store) == (saved ? Shown(list) : before));
});

}  // namespace
