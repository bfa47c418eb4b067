#include "directories/rules/stored_list.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

#include "directories/rules/directory_files.h"
#include "text/ascii.h"
#include "text/collation.h"
#include "text/comma_text.h"

namespace {

constexpr char kCount[] = "NbDirAlias";
constexpr std::string_view kName = "DirAliasName";
constexpr std::string_view kPath = "DirAliasPath";
constexpr char kDefault[] = "DirAliasDefault";
/// The whole list as one comma text while it is being written over the one before.
constexpr char kPending[] = "DirAliasPending";
/// Up to this count every number is looked up; beyond it, it is probably spoilt, and the names that
/// are there say what to read.
constexpr int kCredibleCount = 1000;

std::string Numbered(std::string_view prefix, int number) {
  return std::string(prefix) + std::to_string(number);
}

/// A decimal number as programs of its time wrote it, blanks before it allowed; else nothing.
std::optional<int> ParseNumber(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  if (text.starts_with('+')) text.remove_prefix(1);
  int number = 0;
  return ReadNumber(text, number) ? std::optional(number) : std::nullopt;
}

/// The number of an entry's name value, though perhaps written in another way.
std::optional<int> EntryNumber(std::string_view valueName) {
  if (!SameText(valueName.substr(0, kName.size()), kName)) return std::nullopt;
  return ParseNumber(valueName.substr(kName.size()));
}

/// The numbers below the count that may have an entry.
std::set<int> Numbers(const TSettingsStore& store, int count) {
  std::set<int> numbers;
  for (int i = 0; i < std::min(count, kCredibleCount); ++i) numbers.insert(i);
  if (count <= kCredibleCount) return numbers;
  for (const auto& valueName : store.Names()) {
    const auto number = EntryNumber(valueName);
    if (number && *number >= kCredibleCount && *number < count) numbers.insert(*number);
  }
  return numbers;
}

using TValues = std::vector<std::pair<std::string, std::string>>;

/// What a list is written as, in the order of writing.
TValues ValuesOf(const TStoredList& list) {
  TValues values;
  int number = 0;
  for (const auto& entry : list.Entries) {
    values.emplace_back(Numbered(kName, number), entry.Name);
    values.emplace_back(Numbered(kPath, number++), entry.Path);
  }
  values.emplace_back(kCount, std::to_string(number));
  values.emplace_back(kDefault, list.DefaultName);
  return values;
}

bool WriteValues(TSettingsStore& store, const TValues& values) {
  return std::ranges::all_of(
      values, [&](const auto& value) { return store.Write(value.first, value.second); });
}

// A pending text: each value that is to be written and the one that it replaces, then the mark of a
// whole text.

std::string PendingText(const TSettingsStore& store, const TValues& values) {
  std::string text;
  for (const auto& [name, value] : values) {
    AppendCommaEntry(text, name);
    AppendCommaEntry(text += ',', value);
    AppendCommaEntry(text += ',', store.Read(name));
    text += ',';
  }
  return text += '.';
}

/// The values of a pending text, when the store is as a writing that was broken off left it: some
/// written, those after them not. Anything else was written later, by other means, and counts.
std::optional<TValues> PendingValues(const TSettingsStore& store, std::string_view text) {
  std::vector<std::string> lines;
  TCommaReader reader(text);
  while (const auto line = reader.Next()) lines.emplace_back(*line);
  if (lines.size() % 3 != 1 || lines.back() != ".") return std::nullopt;
  lines.pop_back();
  TValues values;
  bool written = true;
  for (std::size_t at = 0; at < lines.size(); at += 3) {
    const std::string now = store.Read(lines[at]);
    written = written && now == lines[at + 1];
    if (!written && now != lines[at + 2]) return std::nullopt;
    values.emplace_back(std::move(lines[at]), std::move(lines[at + 1]));
  }
  return values;
}

}  // namespace

TStoredList ReadStoredList(const TSettingsStore& store) {
  TStoredList list;
  const TValues pending = PendingValues(store, store.Read(kPending)).value_or(TValues());
  const auto read = [&](const std::string& name) {
    const auto found = std::ranges::find(pending, name, &TValues::value_type::first);
    return found == pending.end() ? store.Read(name) : found->second;
  };
  list.DefaultName = read(kDefault);
  list.Count = ParseNumber(read(kCount)).value_or(0);
  for (const int number : Numbers(store, list.Count)) {
    std::string name = read(Numbered(kName, number));
    if (!name.empty()) {
      list.Entries.push_back({number, std::move(name), read(Numbered(kPath, number))});
    }
  }
  return list;
}

bool WriteStoredList(TSettingsStore& store, const TStoredList& list) {
  // The many values of a list cannot be replaced at one stroke, but one value can: from here on
  // either reading it or reading the others gives a whole list.
  const TValues values = ValuesOf(list);
  const std::string pending = PendingText(store, values);
  if (store.ReadFailed() || !store.Write(kPending, pending)) return false;
  if (WriteValues(store, values)) store.Remove(kPending);
  return true;
}

bool FinishPendingList(TSettingsStore& store) {
  const std::string text = store.Read(kPending);
  if (text.empty()) return true;
  const auto values = PendingValues(store, text);
  if (store.ReadFailed()) return false;
  return (!values || WriteValues(store, *values)) && store.Remove(kPending);
}

bool RepointStoredList(TSettingsStore& store, const std::string& from, const std::string& to) {
  const TStoredList list = ReadStoredList(store);
  if (store.ReadFailed()) return false;
  return std::ranges::all_of(list.Entries, [&](const TDirectoryEntry& entry) {
    const auto followed = FollowedPath(entry.Path, from, to);
    return !followed || store.Write(Numbered(kPath, entry.Number), *followed);
  });
}
