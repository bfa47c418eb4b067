#include "syntax/rules/syntax_names.h"

#include <algorithm>

#include "text/collation.h"

namespace {

constexpr std::size_t kSmallestTable = 16;

std::uint32_t FoldedHash(std::string_view name) {
  return static_cast<std::uint32_t>(HashText(name, false));
}

}  // namespace

void TNameSet::Clear() { *this = TNameSet(); }

std::size_t TNameSet::Count() const { return FCount; }

const TNameSet::TSlot* TNameSet::Find(std::string_view name, std::uint32_t hash) const {
  const std::size_t mask = FSlots.size() - 1;
  for (std::size_t i = hash & mask;; i = (i + 1) & mask) {
    const TSlot& slot = FSlots[i];
    if (slot.Offset == 0) return &slot;
    if (slot.Hash != hash) continue;
    if (SameText(std::string_view(FText).substr(slot.Offset - 1, slot.Length), name)) return &slot;
  }
}

void TNameSet::Add(std::string_view name) {
  if (name.empty()) return;
  // Half of the slots stay free: a miss, the common answer, then ends at once.
  if ((FCount + 1) * 2 > FSlots.size()) Grow();
  const std::uint32_t hash = FoldedHash(name);
  const TSlot* found = Find(name, hash);
  if (found->Offset != 0) return;
  const auto offset = static_cast<std::uint32_t>(FText.size() + 1);
  FText += name;
  FSlots[static_cast<std::size_t>(found - FSlots.data())] = {
      hash, offset, static_cast<std::uint32_t>(name.size())};
  ++FCount;
}

bool TNameSet::Contains(std::string_view name) const {
  return FCount != 0 && Find(name, FoldedHash(name))->Offset != 0;
}

void TNameSet::Grow() {
  std::vector<TSlot> old(std::max(kSmallestTable, FSlots.size() * 2), TSlot{});
  old.swap(FSlots);
  const std::size_t mask = FSlots.size() - 1;
  for (const TSlot& slot : old) {
    if (slot.Offset == 0) continue;
    std::size_t i = slot.Hash & mask;
    while (FSlots[i].Offset != 0) i = (i + 1) & mask;
    FSlots[i] = slot;
  }
}

bool TSyntaxNames::IsMethod(std::string_view word) const {
  return Functions.Contains(word) || Methods.Contains(word);
}

bool TSyntaxNames::IsConstant(std::string_view word) const { return Constants.Contains(word); }

bool TSyntaxNames::IsFunction(std::string_view word) const { return Functions.Contains(word); }

void TSyntaxNames::BuildWords(const TSyntaxDatabase& database) {
  Methods.Clear();
  Functions.Clear();
  Constants.Clear();
  std::string dotted;
  for (const TSyntaxElement& element : database.Elements()) {
    if (element.Kind == TSyntaxKind::Const && element.Text) Methods.Add(element.Name);
    if (element.Kind == TSyntaxKind::Method) Functions.Add(element.Name);
    for (const TSyntaxMember& member : element.Members)
      Methods.Add(dotted.assign(1, '.').append(member.Name));
    for (const TSyntaxConstant& constant : element.Constants) Constants.Add(constant.Name);
  }
}

void CollectTypeNames(const TSyntaxDatabase& database, TStringList& names) {
  for (const TSyntaxElement& element : database.Elements())
    if ((element.Kind == TSyntaxKind::Object || element.Kind == TSyntaxKind::Type) &&
        !element.Name.empty())
      names.Add(element.Name);
}

void TSyntaxNames::BuildTypes(const TSyntaxDatabase& database) {
  Types.Clear();
  CollectTypeNames(database, Types);
  Predefined.Clear();
  std::string line;
  for (const TSyntaxElement& element : database.Elements())
    if (element.Kind == TSyntaxKind::Const && !element.Name.empty())
      Predefined.Add(line.assign(element.Name).append(1, '=').append(element.Type));
}
