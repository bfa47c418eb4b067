#pragma once

#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What an author of the syntax database would want to know before users meet it.
enum class TDatabaseFaultKind {
  NoRoot,            ///< the document's root is not `objects`
  UnknownElement,    ///< Name stands inside Other, where nothing reads it
  UnknownAttribute,  ///< Name is an attribute that nothing reads; Other is the element
  NoName,            ///< Name is an element that is nothing without a name
  UnknownType,       ///< Name is used as a type and is none; Other is what uses it
  UnknownList,       ///< Name is used as a list and is none; Other is the parameter
  Duplicate,         ///< Name was there before, at OtherLine; only that one counts
  Hidden,            ///< the type Name is hidden by another element of that name, at OtherLine
  NoHelp,            ///< Name has no help text
  DeadEnd,           ///< Name leads to the type Other, which has no members
  Unreachable,       ///< the line analysis cuts the name Name, so that it is never found
  CuttingValue,      ///< the line analysis cuts the value Name when it is a parameter
};

struct TDatabaseFault {
  int Line;
  TDatabaseFaultKind Kind;
  std::string Name{};
  std::string Other{};
  int OtherLine = 0;

  bool operator==(const TDatabaseFault&) const = default;
};

/// In French, without the line; UTF-8 around the names.
std::string Describe(const TDatabaseFault& fault);

/// Takes the elements of a document with the lines where they begin, in document order, and finds
/// the faults. Texts are in the ANSI code page, as the library reads them.
class TDatabaseCheck {
 public:
  using TAttribute = std::pair<std::string_view, std::string_view>;  ///< name, value

  void StartElement(int line, std::string_view name, std::span<const TAttribute> attributes);
  void EndElement();
  /// Character data, in one or more parts.
  void Text(std::string_view text);

  /// In the order of their lines.
  std::vector<TDatabaseFault> Faults() const;

  /// How many elements there are of each name, in alphabetical order.
  std::vector<std::pair<std::string, int>> Counts() const;
  /// The lines where an element bears the name, letter case ignored, and what it is: its path of
  /// element names and names, as "object Cpt / method SoldeAu".
  std::vector<std::pair<int, std::string>> Find(std::string_view name) const;

 private:
  struct TNode {
    int Line;
    int Parent;  ///< -1 for the root
    std::string Element;
    std::vector<std::pair<std::string, std::string>> Attributes;
    bool HasText = false;

    std::string_view Attribute(std::string_view name) const;
  };
  struct TFindings;

  std::vector<TNode> FNodes;
  std::vector<int> FOpen;  ///< the elements that stand open, outermost first
};
