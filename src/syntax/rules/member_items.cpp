#include "syntax/rules/member_items.h"

#include <algorithm>

#include "text/collation.h"

TMemberItems::TMemberItems(const TSyntaxElement& object) {
  FItems.reserve(object.Members.size());
  for (const TSyntaxMember& member : object.Members) Add(member);
  Arrange();
}

TMemberItems::TMemberItems(const TSyntaxDatabase& functions) {
  for (const TSyntaxElement& element : functions.Elements()) {
    if (element.Function) Add(*element.Function);
  }
  Arrange();
}

void TMemberItems::Add(const TSyntaxMember& member) {
  if (member.Name.empty()) return;
  if (member.Kind == TSyntaxKind::Method) FItems.push_back({member.Name + "()", MethodImage});
  if (member.Kind == TSyntaxKind::Data) FItems.push_back({member.Name, DataImage});
}

void TMemberItems::Arrange() {
  std::stable_sort(FItems.begin(), FItems.end(), [](const TItem& a, const TItem& b) {
    return CompareText(a.Text, b.Text, false) < 0;
  });
  FIndex.reserve(FItems.size());
  for (int i = 0; i < Count(); ++i) FIndex.emplace(UpperText(Name(i)), i);
}

std::string_view TMemberItems::Name(int index) const {
  std::string_view name = Item(index).Text;
  if (Item(index).Image == MethodImage) name.remove_suffix(2);
  return name;
}

int TMemberItems::Find(std::string_view name) const {
  const auto found = FIndex.find(UpperText(name));
  return found == FIndex.end() ? -1 : found->second;
}
