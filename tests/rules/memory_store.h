#pragma once

#include <functional>
#include <map>
#include <utility>

#include "directories/rules/directory_list.h"

/// Settings in memory, with changes that fail or do not come back.
class TMemoryStore : public TSettingsStore {
 public:
  std::string Read(const std::string& name) const override {
    const bool there = Values.contains(name), lost = there && Reads == UnreadableAt;
    ++Reads;
    Unreadable = Unreadable || lost;
    return there && !lost ? Values.at(name) : std::string();
  }
  bool ReadFailed() const override { return Unreadable; }
  std::vector<std::string> Names() const override {
    std::vector<std::string> names;
    for (const auto& value : Values) names.push_back(value.first);
    return names;
  }
  bool Write(const std::string& name, const std::string& value) override {
    if (!Allowed()) return false;
    Values[name] = value;
    Changed();
    return true;
  }
  bool Remove(const std::string& name) override {
    if (!Allowed() || Values.erase(name) == 0) return false;
    Changed();
    return true;
  }
  std::shared_ptr<void> Hold() override { return Busy ? nullptr : std::make_shared<int>(); }

  std::map<std::string, std::string> Values;
  std::function<void()> Changed = [] {};
  bool Busy = false;       ///< another process holds it
  int FailAt = -1;         ///< number of the change that is refused; -1: none
  bool FailAfter = false;  ///< and every later one
  int Changes = 0;
  int UnreadableAt = -1;  ///< number of the reading that fails; -1: none
  /// As the next object for the same settings; whether all texts were met that were to fail.
  bool ReadAgain() {
    const bool met = Reads > std::exchange(UnreadableAt, -1);
    Unreadable = false;
    return met;
  }

 private:
  mutable int Reads = 0;
  mutable bool Unreadable = false;

  bool Allowed() {
    const int number = Changes++;
    return FailAt < 0 || number < FailAt || (number > FailAt && !FailAfter);
  }
};

inline std::string Shown(const TDirectoryList& list) {
  std::string text;
  for (int i = 0; i < list.Count(); ++i)
    text += list.Entry(i).Name + "=" + list.Entry(i).Path + (list.IsDefault(i) ? "*;" : ";");
  return text;
}

/// What is read of a store.
inline std::string Loaded(TSettingsStore& store) {
  TDirectoryList list;
  list.Load(store);
  return Shown(list);
}
