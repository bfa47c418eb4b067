#pragma once

#include "input.h"
#include "memory_store.h"

inline void Fill(TMemoryStore& store, TInput& input) {
  const char* const names[] = {"DirAliasName", "DirAliasPath", "NbDirAlias", "DirAliasDefault",
                               "DirAliasPending"};
  for (int count = input.Below(32); count > 0; --count) {
    const int name = input.Below(5);
    store.Values[names[name] + (name < 2 ? input.Text(',') : "")] = input.Text();
  }
}

inline void Change(TDirectoryList& list, TInput& input) {
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

/// Whatever is stored, the list is read, changed and saved while a change or a reading of the store
/// fails, again and again. Each time the list before is found or the list after, whole, and a save
/// that gets through settles it.
inline void SaveAgainAndAgain(TInput input) {
  TMemoryStore store;
  Fill(store, input);
  do {
    TDirectoryList list, later;
    list.Load(store);
    const std::string before = Shown(list);
    Check(Loaded(store) == before);
    for (int changes = input.Below(16); changes > 0; --changes) Change(list, input);
    TMemoryStore failing;
    failing.Values = store.Values;
    const int number = input.Below(64);
    failing.FailAfter = input.Bit();
    const bool reading = input.Bit();
    (reading ? failing.UnreadableAt : failing.FailAt) = number;
    const bool saved = list.Save(failing);
    // What is noted before anything else is as good as saved.
    Check(saved || reading || number == 0);
    store.Values = failing.Values;
    const std::string after = saved ? Shown(list) : before;
    Check(Loaded(store) == after);
    later.Load(store);
    Check(later.Save(store) && !store.Values.contains("DirAliasPending") && Loaded(store) == after);
  } while (!input.Empty());
}
