#include "zefdb/rules/database_check.h"

#include <algorithm>
#include <map>
#include <set>

#include "syntax/rules/line_analysis.h"
#include "text/collation.h"

namespace {

/// What the library reads: which attributes an element has and which elements stand in it.
struct TElementRule {
  std::string_view Parent;
  std::string_view Element;
  std::vector<std::string_view> Attributes;

  bool Has(std::string_view attribute) const {
    return std::ranges::find(Attributes, attribute) != Attributes.end();
  }
};

constexpr std::string_view kRoot = "objects";

const std::vector<TElementRule>& Rules() {
  static const std::vector<TElementRule> rules = {
      {kRoot, "object", {"name"}},
      {kRoot, "type", {"name"}},
      {kRoot, "const", {"name", "type"}},
      {kRoot, "method", {"name", "type"}},
      {kRoot, "data", {"name", "type"}},
      {kRoot, "list", {"name", "flag", "type"}},
      {"object", "comment", {}},
      {"object", "method", {"name", "type"}},
      {"object", "data", {"name", "type"}},
      {"method", "comment", {}},
      {"method", "return", {"type"}},
      {"method", "param", {"name", "type", "list", "def"}},
      {"method", "oparam", {"name", "type", "list", "def"}},
      {"data", "comment", {}},
      {"data", "return", {"type"}},
      {"data", "param", {"name", "type", "list", "def"}},
      {"data", "oparam", {"name", "type", "list", "def"}},
      {"list", "comment", {}},
      {"list", "listconst", {"name"}},
  };
  return rules;
}

bool IsMember(std::string_view element) { return element == "method" || element == "data"; }
bool IsParameter(std::string_view element) { return element == "param" || element == "oparam"; }
bool IsType(std::string_view element) { return element == "object" || element == "type"; }

/// Whether a call with those values, written in a line, is read back as it was written.
bool ReadBack(std::string_view first, std::string_view second, bool parenthesised) {
  const TSyntaxNames names;
  const std::string call = std::string("o.m") + (parenthesised ? "(" : " ") + std::string(first) +
                           ", " + std::string(second) + (parenthesised ? ")" : "");
  TLineAnalysis line;
  line.CutHostLine(call, 2, names);
  return line.Expression() == call && line.ValueCount() == 2 && line.Value(0) == first &&
         line.Value(1) == second;
}

/// The analysis takes a name behind a dot apart as it does a function's.
bool ReachableMember(std::string_view name) {
  TSyntaxNames names;
  names.Functions.Add(name);
  TLineAnalysis line;
  line.CutHostLine(std::string(name) + "(1)", 0, names);
  return line.MemberName() == name;
}

bool ReachableObject(std::string_view name) {
  const TSyntaxNames names;
  TLineAnalysis line;
  line.CutHostLine(std::string(name) + ".x", 1, names);
  return line.ObjectText() == name;
}

}  // namespace

std::string_view TDatabaseCheck::TNode::Attribute(std::string_view name) const {
  const auto found = std::ranges::find(
      Attributes, name, [](const auto& each) { return std::string_view(each.first); });
  return found == Attributes.end() ? std::string_view() : std::string_view(found->second);
}

void TDatabaseCheck::StartElement(int line, std::string_view name,
                                  std::span<const TAttribute> attributes) {
  TNode node{line, FOpen.empty() ? -1 : FOpen.back(), std::string(name), {}};
  for (const auto& [attribute, value] : attributes) node.Attributes.emplace_back(attribute, value);
  FOpen.push_back(static_cast<int>(FNodes.size()));
  FNodes.push_back(std::move(node));
}

void TDatabaseCheck::EndElement() { FOpen.pop_back(); }

void TDatabaseCheck::Text(std::string_view text) {
  if (FOpen.empty() || text.find_first_not_of(" \t\r\n") == std::string_view::npos) return;
  FNodes[static_cast<std::size_t>(FOpen.back())].HasText = true;
}

/// The faults of one document, found node by node once the names of all are known.
struct TDatabaseCheck::TFindings {
  explicit TFindings(const std::vector<TNode>& nodes) : Nodes(nodes) {
    const auto inner = std::span(Nodes).subspan(1);
    for (const TNode& node : inner) Collect(node);
    for (const TNode& node : inner) Check(node);
  }

  const std::vector<TNode>& Nodes;
  std::vector<TDatabaseFault> Faults;
  std::map<std::string, const TNode*> Types;  ///< by upper-cased name: letter case does not count
  std::vector<std::string_view> Lists;
  std::set<const TNode*> WithMembers;              ///< objects
  std::set<const TNode*> WithParameters;           ///< what had one among the nodes checked
  std::set<const TNode*> Commented;                ///< what has a comment with text
  std::map<std::string_view, const TNode*> First;  ///< of each name among the children of the root
  /// Where a name is first among those it is looked up with.
  std::map<std::pair<std::string, std::string>, int> FirstLines;

  const TNode& ParentOf(const TNode& node) const {
    return Nodes[static_cast<std::size_t>(node.Parent)];
  }

  void Add(const TNode& node, TDatabaseFaultKind kind, std::string_view name,
           std::string_view other = {}, int otherLine = 0) {
    Faults.push_back({node.Line, kind, std::string(name), std::string(other), otherLine});
  }

  void Collect(const TNode& node) {
    const TNode& parent = ParentOf(node);
    const std::string_view name = node.Attribute("name");
    if (parent.Parent < 0 && !name.empty()) {
      First.emplace(name, &node);
      if (IsType(node.Element)) Types.emplace(UpperText(name), &node);
      if (node.Element == "list") Lists.push_back(name);
    }
    if (IsMember(node.Element)) WithMembers.insert(&parent);
    if (node.Element == "comment" && node.HasText) Commented.insert(&parent);
  }

  const TNode* TypeOf(std::string_view name) const {
    const auto found = Types.find(UpperText(name));
    return found == Types.end() ? nullptr : found->second;
  }

  /// What a person would call the node: its name, or that of what it belongs to.
  std::string_view NameOf(const TNode& node) const {
    const std::string_view name = node.Attribute("name");
    return name.empty() ? ParentOf(node).Attribute("name") : name;
  }

  void Check(const TNode& node) {
    const TNode& parent = ParentOf(node);
    const auto rule = std::ranges::find_if(Rules(), [&](const TElementRule& each) {
      return each.Parent == parent.Element && each.Element == node.Element &&
             (each.Parent != kRoot || parent.Parent < 0);
    });
    if (rule == Rules().end()) {
      Add(node, TDatabaseFaultKind::UnknownElement, node.Element, parent.Element);
      return;
    }
    for (const auto& [attribute, value] : node.Attributes) {
      if (!rule->Has(attribute))
        Add(node, TDatabaseFaultKind::UnknownAttribute, attribute, node.Element);
    }
    const std::string_view name = node.Attribute("name");
    if (rule->Has("name") && name.empty()) {
      Add(node, TDatabaseFaultKind::NoName, node.Element);
      return;
    }
    CheckReferences(node);
    if (!name.empty()) CheckName(node, name);
    CheckHelp(node);
  }

  void CheckReferences(const TNode& node) {
    const std::string_view type = node.Attribute("type");
    const TNode* found = TypeOf(type);
    if (!type.empty() && !found) Add(node, TDatabaseFaultKind::UnknownType, type, NameOf(node));
    if (IsParameter(node.Element)) {
      CheckParameter(node, type);
    } else if (found && found->Element == "object" && !WithMembers.contains(found)) {
      Add(node, TDatabaseFaultKind::DeadEnd, NameOf(node), type);
    }
  }

  void CheckParameter(const TNode& node, std::string_view type) {
    std::string_view list = node.Attribute("list");
    if (list.empty() && type == "bool") list = "bool";
    // The picker offers every list whose name occurs in this one.
    const bool offered = std::ranges::any_of(
        Lists, [&](std::string_view each) { return list.find(each) != std::string_view::npos; });
    if (!list.empty() && !offered) Add(node, TDatabaseFaultKind::UnknownList, list, NameOf(node));
    const bool first = WithParameters.insert(&ParentOf(node)).second;
    CheckValue(node, node.Attribute("def"), first);
  }

  /// The analysis minds what a call without parentheses begins with more than what follows.
  void CheckValue(const TNode& node, std::string_view value, bool first) {
    const auto readBack = [&](bool parenthesised) {
      return first ? ReadBack(value, "1", parenthesised) : ReadBack("1", value, parenthesised);
    };
    if (value.empty() || (readBack(true) && readBack(false))) return;
    Add(node, TDatabaseFaultKind::CuttingValue, value);
  }

  void CheckName(const TNode& node, std::string_view name) {
    const TNode& parent = ParentOf(node);
    if (IsType(node.Element) && !IsType(First.at(name)->Element))
      Add(node, TDatabaseFaultKind::Hidden, name, {}, First.at(name)->Line);
    if (!Reachable(node.Element, name)) Add(node, TDatabaseFaultKind::Unreachable, name);
    if (node.Element == "listconst") CheckValue(node, name, false);
    // Lists of one name are one; everything else is found once.
    if (node.Element == "list") return;
    std::string scope = IsType(node.Element)      ? std::string("type")
                        : node.Element == "const" ? std::string("const")
                        : node.Element == "listconst"
                            ? "list " + std::string(parent.Attribute("name"))
                            : std::to_string(node.Parent);
    const auto [before, isFirst] =
        FirstLines.emplace(std::pair(std::move(scope), UpperText(name)), node.Line);
    if (!isFirst) Add(node, TDatabaseFaultKind::Duplicate, name, {}, before->second);
  }

  static bool Reachable(std::string_view element, std::string_view name) {
    if (IsMember(element)) return ReachableMember(name);
    return element != "const" || ReachableObject(name);
  }

  void CheckHelp(const TNode& node) {
    const bool silent = node.Element == "object" || IsMember(node.Element)
                            ? !Commented.contains(&node)
                            : node.Element == "type" && !node.HasText;
    if (silent) Add(node, TDatabaseFaultKind::NoHelp, node.Attribute("name"));
  }
};

std::vector<TDatabaseFault> TDatabaseCheck::Faults() const {
  if (FNodes.empty()) return {{1, TDatabaseFaultKind::NoRoot}};
  const TNode& root = FNodes.front();
  if (root.Element != kRoot) return {{root.Line, TDatabaseFaultKind::NoRoot, root.Element}};
  return TFindings(FNodes).Faults;
}

std::vector<std::pair<std::string, int>> TDatabaseCheck::Counts() const {
  std::map<std::string, int> counts;
  for (const TNode& node : FNodes) ++counts[node.Element];
  return {counts.begin(), counts.end()};
}

std::vector<std::pair<int, std::string>> TDatabaseCheck::Find(std::string_view name) const {
  std::vector<std::pair<int, std::string>> found;
  for (const TNode& node : FNodes) {
    if (node.Attribute("name").empty() || !SameText(node.Attribute("name"), name)) continue;
    std::string path;
    for (const TNode* each = &node; each->Parent >= 0;
         each = &FNodes[static_cast<std::size_t>(each->Parent)]) {
      if (!path.empty()) path.insert(0, " / ");
      path.insert(0, each->Attribute("name")).insert(0, " ").insert(0, each->Element);
    }
    found.emplace_back(node.Line, std::move(path));
  }
  return found;
}

std::string Describe(const TDatabaseFault& fault) {
  const std::string name = "« " + fault.Name + " »";
  const std::string other = "« " + fault.Other + " »";
  const std::string line = std::to_string(fault.OtherLine);
  switch (fault.Kind) {
    case TDatabaseFaultKind::NoRoot:
      return "la racine du document n'est pas « objects »";
    case TDatabaseFaultKind::UnknownElement:
      return "élément " + name + " inconnu dans " + other;
    case TDatabaseFaultKind::UnknownAttribute:
      return "attribut " + name + " inconnu de " + other;
    case TDatabaseFaultKind::NoName:
      return name + " sans nom";
    case TDatabaseFaultKind::UnknownType:
      return "type " + name + " inconnu, utilisé par " + other;
    case TDatabaseFaultKind::UnknownList:
      return "liste " + name + " inconnue, utilisée par " + other;
    case TDatabaseFaultKind::Duplicate:
      return name + " est déjà défini ligne " + line + " ; seul le premier compte";
    case TDatabaseFaultKind::Hidden:
      return "le type " + name + " est caché par l'élément de même nom ligne " + line;
    case TDatabaseFaultKind::NoHelp:
      return name + " n'a pas d'aide";
    case TDatabaseFaultKind::DeadEnd:
      return name + " mène au type " + other + ", qui n'a aucun membre";
    case TDatabaseFaultKind::Unreachable:
      return name + " ne peut pas être trouvé : l'analyse de la ligne coupe ce nom";
    case TDatabaseFaultKind::CuttingValue:
      return "la valeur " + name + " coupe la ligne où elle sert de paramètre";
  }
  return {};
}
