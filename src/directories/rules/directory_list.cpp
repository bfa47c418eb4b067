#include "directories/rules/directory_list.h"

#include <algorithm>
#include <charconv>

#include "text/collation.h"
#include "text/comma_text.h"

namespace {

constexpr char kCount[] = "NbDirAlias";
constexpr std::string_view kName = "DirAliasName";
constexpr std::string_view kPath = "DirAliasPath";
constexpr char kDefault[] = "DirAliasDefault";
/// The whole list as one comma text while it is being written over the one before.
constexpr char kPending[] = "DirAliasPending";

std::string Numbered(std::string_view prefix, int number) {
  return std::string(prefix) + std::to_string(number);
}

/// A decimal number as programs of its time wrote it, blanks before it allowed; else nothing.
std::optional<int> ParseNumber(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  if (text.starts_with('+')) text.remove_prefix(1);
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

/// The number of an entry's name value, when it is one that is written so.
std::optional<int> EntryNumber(std::string_view valueName) {
  if (!SameText(valueName.substr(0, kName.size()), kName)) return std::nullopt;
  const auto digits = valueName.substr(kName.size());
  const auto number = ParseNumber(digits);
  if (!number || *number < 0 || std::to_string(*number) != digits) return std::nullopt;
  return number;
}

bool NameBefore(const TDirectoryEntry& a, const TDirectoryEntry& b) {
  return CompareText(a.Name, b.Name, false) < 0;
}

}  // namespace

// ---- the stored list ----

void TDirectoryList::Load(const TSettingsStore& store) {
  FEntries.clear();
  FDefaultName.clear();
  if (!LoadPending(store)) {
    FDefaultName = store.Read(kDefault);
    const int count = ParseNumber(store.Read(kCount)).value_or(0);
    FNothingStored = count == 0;
    LoadEntries(store, count);
  }
  std::ranges::stable_sort(FEntries, NameBefore);
}

void TDirectoryList::LoadEntries(const TSettingsStore& store, int count) {
  // A count spoilt by hand may be huge: the names that exist say what there is to read.
  std::vector<int> numbers;
  for (const auto& valueName : store.Names()) {
    const auto number = EntryNumber(valueName);
    if (number && *number < count) numbers.push_back(*number);
  }
  std::ranges::sort(numbers);
  for (const int number : numbers) {
    std::string name = store.Read(Numbered(kName, number));
    if (name.empty()) continue;
    FEntries.push_back({number, std::move(name), store.Read(Numbered(kPath, number))});
  }
}

bool TDirectoryList::LoadPending(const TSettingsStore& store) {
  const std::string text = store.Read(kPending);
  if (text.empty()) return false;
  std::vector<std::string> lines;
  TCommaReader reader(text);
  while (const auto line = reader.Next()) lines.emplace_back(*line);
  // The default name, then a name and a path for each entry, then the mark of a whole text.
  if (lines.size() % 2 != 0 || lines.back() != ".") return false;
  FDefaultName = lines[0];
  for (std::size_t at = 1; at + 2 < lines.size(); at += 2) {
    FEntries.push_back({Count(), std::move(lines[at]), std::move(lines[at + 1])});
  }
  FNothingStored = FEntries.empty();
  return true;
}

std::string TDirectoryList::PendingText() const {
  std::string text;
  AppendCommaEntry(text, FDefaultName);
  for (const auto& entry : FEntries) {
    AppendCommaEntry(text += ',', entry.Name);
    AppendCommaEntry(text += ',', entry.Path);
  }
  return text += ",.";
}

bool TDirectoryList::Save(TSettingsStore& store) const {
  // The many values of a list cannot be replaced at one stroke, but one value can: from here on
  // either reading it or reading the others gives a whole list.
  if (!store.Write(kPending, PendingText())) return false;
  if (WriteEntries(store)) store.Remove(kPending);
  return true;
}

bool TDirectoryList::WriteEntries(TSettingsStore& store) const {
  for (int i = 0; i < Count(); ++i) {
    if (!store.Write(Numbered(kName, i), Entry(i).Name) ||
        !store.Write(Numbered(kPath, i), Entry(i).Path)) {
      return false;
    }
  }
  return store.Write(kCount, std::to_string(Count())) && store.Write(kDefault, FDefaultName);
}

// ---- look-up ----

int TDirectoryList::IndexOf(std::string_view name) const {
  const auto found = std::ranges::find_if(
      FEntries, [&](const TDirectoryEntry& entry) { return SameText(entry.Name, name); });
  return found == FEntries.end() ? -1 : static_cast<int>(found - FEntries.begin());
}

int TDirectoryList::IndexOfPath(std::string_view path) const {
  int found = -1;
  for (int i = 0; i < Count(); ++i) {
    if (!SameText(Entry(i).Path, path)) continue;
    if (found < 0 || Entry(i).Number > Entry(found).Number) found = i;
  }
  return found;
}

int TDirectoryList::IndexToOpen(std::string_view name) const {
  return IndexOf(name.empty() ? std::string_view(FDefaultName) : name);
}

// ---- changes ----

int TDirectoryList::Insert(TDirectoryEntry entry) {
  const auto at = std::ranges::upper_bound(FEntries, entry, NameBefore);
  const auto inserted = FEntries.insert(at, std::move(entry));
  return static_cast<int>(inserted - FEntries.begin());
}

int TDirectoryList::Import(const std::string& name, const std::string& path) {
  return Insert({0, name, path});
}

std::optional<int> TDirectoryList::Add(const std::string& name) {
  if (IndexOf(name) >= 0) return std::nullopt;
  if (FEntries.empty()) FDefaultName = name;
  return Insert({Count(), name, {}});
}

std::optional<int> TDirectoryList::Rename(int index, const std::string& name) {
  if (IndexOf(name) >= 0) return std::nullopt;
  if (IsDefault(index)) FDefaultName = name;
  TDirectoryEntry entry = Entry(index);
  entry.Name = name;
  FEntries.erase(FEntries.begin() + index);
  return Insert(std::move(entry));
}

void TDirectoryList::Remove(int index) {
  if (IsDefault(index)) ClearDefault();
  FEntries.erase(FEntries.begin() + index);
}

void TDirectoryList::SetPath(int index, std::string path) {
  FEntries.at(static_cast<std::size_t>(index)).Path = std::move(path);
}
