#include "text/string_list.h"

#include <exception>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "text/collation.h"
#include "text/comma_text.h"
#include "text/line_index.h"
#include "text/line_sequence.h"
#include "text/line_store.h"

namespace {

/// An index made when it is first asked for, and dropped, to be made again, when memory runs short.
class TLazyIndex {
 public:
  TLazyIndex(const TLineStore& store, const TLineSequence& sequence, TLineKey key,
             bool caseSensitive)
      : FStore(store), FSequence(sequence), FKey(key), FCaseSensitive(caseSensitive) {}

  std::optional<TLineId> First(std::string_view key) {
    if (!FIndex) FIndex.emplace(FStore, FSequence, FKey, FCaseSensitive);
    return FIndex->First(key);
  }
  void Insert(TLineId line) noexcept {
    if (!FIndex) return;
    try {
      FIndex->Insert(line);
    } catch (const std::exception&) {
      FIndex.reset();
    }
  }
  void Remove(TLineId line) noexcept {
    if (FIndex) FIndex->Remove(line);
  }
  void Drop() noexcept { FIndex.reset(); }

 private:
  const TLineStore& FStore;
  const TLineSequence& FSequence;
  const TLineKey FKey;
  const bool FCaseSensitive;
  std::optional<TLineIndex> FIndex;
};

/// Any order will do that needs no memory.
struct TNameBefore {
  bool CaseSensitive;
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const noexcept {
    return (CaseSensitive ? a.compare(b) : CompareUpperBytes(a, b)) < 0;
  }
};

std::string NameValueLine(std::string_view name, std::string_view value) {
  std::string line;
  line.reserve(name.size() + 1 + value.size());
  line.append(name).append(1, '=').append(value);
  return line;
}

}  // namespace

struct TStringList::TImpl {
  using TLastSet = std::map<std::string, TLineId, TNameBefore>;

  explicit TImpl(TOptions options)
      : Options(options),
        Lines(Store, Sequence, TLineKey::Line, options.CaseSensitive),
        Names(Store, Sequence, TLineKey::Name, options.CaseSensitive),
        LastSet(TNameBefore{options.CaseSensitive}) {}

  TLineId Checked(int index) const {
    if (index < 0 || index >= Sequence.Count()) throw std::out_of_range("line index");
    return Sequence.At(index);
  }

  TLineSequence::TPlace PlaceFor(std::string_view line) const {
    if (!Options.Sorted) return Sequence.End();
    // After its equals: lines that are kept twice stay in order of arrival.
    return Sequence.PartitionPoint([&](TLineId other) {
      return CompareText(Store.Text(other), line, Options.CaseSensitive) <= 0;
    });
  }

  int Add(std::string_view line) {
    if (!Options.KeepDuplicates) {
      if (const auto same = Lines.First(line)) return Sequence.IndexOf(*same);
    }
    const TLineId id = Store.New(line);
    int index;
    try {
      index = Sequence.Insert(PlaceFor(Store.Text(id)), id);
    } catch (...) {
      Store.Free(id);
      throw;
    }
    Lines.Insert(id);
    Names.Insert(id);
    return index;
  }

  /// The line that a name stands for.
  std::optional<TLineId> Named(std::string_view name) {
    const auto set = LastSet.find(name);
    return set == LastSet.end() ? Names.First(name) : set->second;
  }

  TLastSet::iterator LastSetOf(TLineId id) noexcept {
    if (LastSet.empty()) return LastSet.end();
    const auto name = KeyOf(Store.Text(id), TLineKey::Name);
    const auto set = name ? LastSet.find(*name) : LastSet.end();
    return set != LastSet.end() && set->second == id ? set : LastSet.end();
  }

  void Delete(TLineId id) noexcept {
    if (const auto set = LastSetOf(id); set != LastSet.end()) LastSet.erase(set);
    Lines.Remove(id);
    Names.Remove(id);
    Sequence.Erase(id);
    Store.Free(id);
    if (Store.Sparse()) Pack();
  }

  /// Copies the texts, in the order of the lines, into a store without holes.
  void Pack() noexcept {
    TLineStore packed;
    std::vector<TLineId> names;
    TLastSet lastSet(LastSet.key_comp());
    try {
      names.reserve(static_cast<std::size_t>(Sequence.Count()));
      Sequence.ForEach([&](TLineId line) {
        const TLineId name = packed.New(Store.Text(line));
        packed.Tag(name) = Store.Tag(line);
        names.push_back(name);
        if (const auto set = LastSetOf(line); set != LastSet.end()) lastSet[set->first] = name;
      });
    } catch (const std::exception&) {
      return;  // sparse but right
    }
    Lines.Drop();
    Names.Drop();
    auto name = names.begin();
    Sequence.Rename([&](TLineId) { return *name++; });
    Store = std::move(packed);
    LastSet.swap(lastSet);
  }

  bool SameLine(std::string_view a, std::string_view b) const {
    return Options.CaseSensitive ? a == b : SameText(a, b);
  }

  /// Gives a line another value, its name unchanged.
  void Change(TLineId id, const std::string& line) {
    const bool staysEqual = SameLine(Store.Text(id), line);
    if (Options.Sorted && !staysEqual) return MoveToItsPlace(id, line);
    std::optional<TLineId> same;
    if (!Options.KeepDuplicates && !staysEqual) same = Lines.First(line);
    const TLineId changed = Store.New(line);
    if (const auto set = LastSetOf(id); set != LastSet.end()) set->second = changed;
    Lines.Remove(id);
    Names.Remove(id);
    Sequence.Replace(id, changed);
    Store.Free(id);
    Lines.Insert(changed);
    Names.Insert(changed);
    // The equal line goes and the changed one stays, so that the name reads back as it was set
    // whatever other lines of that name stand between the two.
    if (same) Delete(*same);
    if (Store.Sparse()) Pack();
  }

  void MoveToItsPlace(TLineId id, const std::string& line) {
    const std::string key = line.substr(0, line.find('='));
    const auto set = LastSet.insert_or_assign(key, id).first;
    set->second = Sequence.At(Add(line));
    Delete(id);
    try {
      if (Names.First(key) == LastSet.find(key)->second) LastSet.erase(key);
    } catch (const std::exception&) {
      // Noted without need, which changes nothing.
    }
  }

  const TOptions Options;
  TLineStore Store;
  TLineSequence Sequence{Store};
  TLazyIndex Lines;
  TLazyIndex Names;
  /// Names whose value was set in a line that the order put behind another of that name: they read
  /// back as they were set.
  TLastSet LastSet;
};

TStringList::TStringList(TOptions options) : FImpl(std::make_unique<TImpl>(options)) {}
TStringList::~TStringList() = default;
TStringList::TStringList(TStringList&&) noexcept = default;
TStringList& TStringList::operator=(TStringList&&) noexcept = default;

const TStringList::TOptions& TStringList::Options() const { return FImpl->Options; }

int TStringList::Count() const { return FImpl->Sequence.Count(); }

std::string_view TStringList::At(int index) const {
  return FImpl->Store.Text(FImpl->Checked(index));
}

int TStringList::Add(std::string_view line) { return FImpl->Add(line); }

int TStringList::IndexOf(std::string_view line) const {
  const auto id = FImpl->Lines.First(line);
  return id ? FImpl->Sequence.IndexOf(*id) : -1;
}

void TStringList::Delete(int index) { FImpl->Delete(FImpl->Checked(index)); }

void TStringList::Clear() { FImpl = std::make_unique<TImpl>(FImpl->Options); }

int TStringList::IndexOfName(std::string_view name) const {
  const auto id = FImpl->Named(name);
  return id ? FImpl->Sequence.IndexOf(*id) : -1;
}

std::string_view TStringList::Value(std::string_view name) const {
  const auto id = FImpl->Named(name);
  if (!id) return {};
  const std::string_view line = FImpl->Store.Text(*id);
  return line.substr(line.find('=') + 1);
}

void TStringList::SetValue(std::string_view name, std::string_view value) {
  const auto id = FImpl->Named(name);
  if (value.empty()) {
    if (id) FImpl->Delete(*id);
  } else if (id) {
    const std::string_view line = FImpl->Store.Text(*id);
    FImpl->Change(*id, NameValueLine(line.substr(0, line.find('=')), value));
  } else {
    FImpl->Add(NameValueLine(name, value));
  }
}

std::string TStringList::CommaText() const {
  if (Count() == 1 && At(0).empty()) return "\"\"";
  std::string text;
  bool first = true;
  FImpl->Sequence.ForEach([&](TLineId line) {
    if (!first) text += ',';
    first = false;
    AppendCommaEntry(text, FImpl->Store.Text(line));
  });
  return text;
}

void TStringList::SetCommaText(std::string_view text) {
  // Beside the old lines: the text may be one of them, and a failure leaves them untouched.
  auto lines = std::make_unique<TImpl>(FImpl->Options);
  TCommaReader reader(text);
  while (const auto line = reader.Next()) lines->Add(*line);
  FImpl = std::move(lines);
}
