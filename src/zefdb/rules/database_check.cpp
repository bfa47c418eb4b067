#include "zefdb/rules/database_check.h"

#include <algorithm>
#include <map>
#include <optional>

#include "syntax/rules/line_analysis.h"
#include "text/collation.h"

namespace {

/// What the library reads: which attributes an element has and which elements stand in it.
struct TElementRule {
  std::string_view Parent;
  std::string_view Element;
  std::vector<std::string_view> Attributes;
  bool Named;  ///< nothing without a name
};

constexpr std::string_view kRoot = "objects";

const std::vector<TElementRule>& Rules() {
  static const std::vector<TElementRule> rules = {
      {kRoot, "object", {"name"}, true},
      {kRoot, "type", {"name"}, true},
      {kRoot, "const", {"name", "type"}, true},
      {kRoot, "method", {"name", "type"}, true},
      {kRoot, "data", {"name", "type"}, true},
      {kRoot, "list", {"name", "flag", "type"}, true},
      {"object", "comment", {}, false},
      {"object", "method", {"name", "type"}, true},
      {"object", "data", {"name", "type"}, true},
      {"method", "comment", {}, false},
      {"method", "return", {"type"}, false},
      {"method", "param", {"name", "type", "list", "def"}, true},
      {"method", "oparam", {"name", "type", "list", "def"}, true},
      {"data", "comment", {}, false},
      {"data", "return", {"type"}, false},
      {"data", "param", {"name", "type", "list", "def"}, true},
      {"data", "oparam", {"name", "type", "list", "def"}, true},
      {"list", "comment", {}, false},
      {"list", "listconst", {"name"}, true},
  };
  return rules;
}

bool IsMember(std::string_view element) { return element == "method" || element == "data"; }

/// Names that are looked up among themselves: the first one counts.
struct TFirstLines {
  std::map<std::string, int> Lines;

  /// The line of the one that was there before, or nothing.
  std::optional<int> Enter(std::string name, int line) {
    const auto [found, entered] = Lines.emplace(std::move(name), line);
    if (entered) return std::nullopt;
    return found->second;
  }
};

/// Whether a call of that member, written in a line, is read back as it was written.
bool ReadBack(std::string_view member, std::string_view first, std::string_view second,
              bool parenthesised) {
  const TSyntaxNames names;
  const std::string call = "o." + std::string(member) + (parenthesised ? "(" : " ") +
                           std::string(first) + ", " + std::string(second) +
                           (parenthesised ? ")" : "");
  TLineAnalysis line;
  line.CutHostLine(call, 2, names);
  return line.Expression() == call && line.MemberName() == member && line.ValueCount() == 2 &&
         line.Value(0) == first && line.Value(1) == second;
}

bool ReachableFunction(std::string_view name) {
  TSyntaxNames names;
  names.Functions.Add(name);
  const std::string call = std::string(name) + "(1)";
  TLineAnalysis line;
  line.CutHostLine(call, 0, names);
  return line.Expression() == call && line.FunctionMode() && line.MemberName() == name;
}

bool ReachableObject(std::string_view name) {
  const TSyntaxNames names;
  const std::string chain = std::string(name) + ".x";
  TLineAnalysis line;
  line.CutHostLine(chain, 1, names);
  return line.Expression() == chain && line.ObjectText() == name;
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
  explicit TFindings(const std::vector<TNode>& nodes) : Nodes(nodes) { CollectNames(); }

  const std::vector<TNode>& Nodes;
  std::vector<TDatabaseFault> Faults;
  std::map<std::string, const TNode*> Types;  ///< by upper-cased name: letter case does not count
  std::vector<std::string_view> Lists;
  std::map<const TNode*, int> Members;             ///< how many an object has
  std::map<const TNode*, bool> Commented;          ///< whether an element has a comment with text
  std::map<std::string_view, const TNode*> First;  ///< of each name among the children of the root
  std::map<std::string, TFirstLines> Scopes;

  const TNode* ParentOf(const TNode& node) const {
    return node.Parent < 0 ? nullptr : &Nodes[static_cast<std::size_t>(node.Parent)];
  }

  void Add(const TNode& node, TDatabaseFaultKind kind, std::string_view name,
           std::string_view other = {}, int otherLine = 0) {
    Faults.push_back({node.Line, kind, std::string(name), std::string(other), otherLine});
  }

  void CollectNames() {
    for (const TNode& node : Nodes) {
      const TNode* parent = ParentOf(node);
      if (!parent) continue;
      const std::string_view name = node.Attribute("name");
      if (parent->Parent < 0 && !name.empty()) {
        First.emplace(name, &node);
        if (node.Element == "object" || node.Element == "type")
          Types.emplace(UpperText(name), &node);
        if (node.Element == "list") Lists.push_back(name);
      }
      if (parent->Element == "object" && IsMember(node.Element)) ++Members[parent];
      if (node.Element == "comment" && node.HasText) Commented[parent] = true;
    }
  }

  const TNode* TypeOf(std::string_view name) const {
    const auto found = Types.find(UpperText(name));
    return found == Types.end() ? nullptr : found->second;
  }

  /// What a person would call the node: its name, or that of what it belongs to.
  std::string_view NameOf(const TNode& node) const {
    const std::string_view name = node.Attribute("name");
    const TNode* parent = ParentOf(node);
    return name.empty() && parent ? parent->Attribute("name") : name;
  }

  void CheckNode(const TNode& node) {
    const TNode* parent = ParentOf(node);
    if (!parent) {
      if (node.Element != "objects") Add(node, TDatabaseFaultKind::NoRoot, node.Element);
      return;
    }
    const auto rule = std::ranges::find_if(Rules(), [&](const TElementRule& each) {
      return each.Parent == parent->Element && each.Element == node.Element &&
             (each.Parent != kRoot || parent->Parent < 0);
    });
    if (rule == Rules().end()) {
      Add(node, TDatabaseFaultKind::UnknownElement, node.Element, parent->Element);
      return;
    }
    for (const auto& [attribute, value] : node.Attributes) {
      if (std::ranges::find(rule->Attributes, attribute) == rule->Attributes.end())
        Add(node, TDatabaseFaultKind::UnknownAttribute, attribute, node.Element);
    }
    if (rule->Named && node.Attribute("name").empty()) {
      Add(node, TDatabaseFaultKind::NoName, node.Element);
      return;
    }
    CheckReferences(node);
    CheckName(node, *parent);
    CheckHelp(node);
  }

  void CheckReferences(const TNode& node) {
    const std::string_view type = node.Attribute("type");
    if (const TNode* found = TypeOf(type); !type.empty() && !found) {
      Add(node, TDatabaseFaultKind::UnknownType, type, NameOf(node));
    } else if (found && found->Element == "object" && !Members.contains(found) &&
               node.Element != "param" && node.Element != "oparam") {
      Add(node, TDatabaseFaultKind::DeadEnd, NameOf(node), type);
    }
    if (node.Element != "param" && node.Element != "oparam") return;
    std::string_view list = node.Attribute("list");
    if (list.empty() && type == "bool") list = "bool";
    // The picker offers every list whose name occurs in this one.
    const bool offered = std::ranges::any_of(
        Lists, [&](std::string_view each) { return list.find(each) != std::string_view::npos; });
    if (!list.empty() && !offered) Add(node, TDatabaseFaultKind::UnknownList, list, NameOf(node));
    const TNode& before = Nodes[static_cast<std::size_t>(&node - Nodes.data()) - 1];
    const bool first = before.Parent != node.Parent || !before.Element.ends_with("param");
    CheckValue(node, node.Attribute("def"), first);
  }

  /// The analysis minds what a call without parentheses begins with more than what follows.
  void CheckValue(const TNode& node, std::string_view value, bool first) {
    const auto readBack = [&](bool parenthesised) {
      return first ? ReadBack("m", value, "1", parenthesised)
                   : ReadBack("m", "1", value, parenthesised);
    };
    if (value.empty() || (readBack(true) && readBack(false))) return;
    Add(node, TDatabaseFaultKind::CuttingValue, value);
  }

  void CheckName(const TNode& node, const TNode& parent) {
    const std::string_view name = node.Attribute("name");
    if (name.empty()) return;
    const bool top = parent.Parent < 0;
    const bool type = node.Element == "object" || node.Element == "type";
    if (type && First.at(name) != &node && First.at(name)->Element != "object" &&
        First.at(name)->Element != "type") {
      Add(node, TDatabaseFaultKind::Hidden, name, {}, First.at(name)->Line);
    }
    if (!Reachable(node, top)) Add(node, TDatabaseFaultKind::Unreachable, name);
    if (node.Element == "listconst") CheckValue(node, name, false);
    // Lists of one name are one; everything else is found once.
    if (node.Element == "list") return;
    std::string scope = type                            ? std::string("type")
                        : top && IsMember(node.Element) ? std::string("function")
                        : node.Element == "listconst"
                            ? "list " + std::string(parent.Attribute("name"))
                        : node.Element == "param" || node.Element == "oparam"
                            ? "parameter " + std::to_string(node.Parent)
                        : top ? node.Element
                              : std::to_string(node.Parent);
    if (const auto before = Scopes[std::move(scope)].Enter(UpperText(name), node.Line))
      Add(node, TDatabaseFaultKind::Duplicate, name, {}, *before);
  }

  static bool Reachable(const TNode& node, bool top) {
    const std::string_view name = node.Attribute("name");
    if (top && IsMember(node.Element)) return ReachableFunction(name);
    if (IsMember(node.Element)) return ReadBack(name, "1", "2", true);
    return node.Element != "const" || ReachableObject(name);
  }

  void CheckHelp(const TNode& node) {
    const bool silent = node.Element == "object" || IsMember(node.Element)
                            ? !Commented.contains(&node)
                            : node.Element == "type" && !node.HasText;
    if (silent) Add(node, TDatabaseFaultKind::NoHelp, node.Attribute("name"));
  }
};

std::vector<TDatabaseFault> TDatabaseCheck::Faults() const {
  TFindings findings(FNodes);
  if (FNodes.empty()) return {{1, TDatabaseFaultKind::NoRoot, {}, {}}};
  if (FNodes.front().Element != "objects") {
    findings.CheckNode(FNodes.front());
    return findings.Faults;
  }
  for (const TNode& node : FNodes) findings.CheckNode(node);
  std::ranges::stable_sort(findings.Faults, {}, &TDatabaseFault::Line);
  return findings.Faults;
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
