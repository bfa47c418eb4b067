#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The model of the syntax database: what the script language's XML file says, copied once.
/// All texts are in the host's ANSI code page. An absent attribute reads as the empty text. Texts
/// of elements have lost the indentation that the file gave them.

enum class TSyntaxKind { Object, Type, Const, Method, Data, List, Other };

struct TSyntaxParam {
  bool Required = true;  ///< `param`, else `oparam`
  std::string Name;
  std::string Type;
  std::string List;     ///< name of the list of constants offered for it
  std::string Default;  ///< shown for an optional parameter
  std::string Help;
};

struct TSyntaxReturn {
  std::string Type;
  std::string Help;
};

/// A child of an `object`, or a top-level `method` or `data`.
struct TSyntaxMember {
  TSyntaxKind Kind = TSyntaxKind::Other;  ///< Method, Data or Other
  std::string Name;
  std::string Type;
  std::string Comment;
  std::optional<TSyntaxReturn> Return;
  std::vector<TSyntaxParam> Params;  ///< in the order of the arguments on the line

  /// The type of the member's value: its return's type when it has one, else its own.
  const std::string& ValueType() const {
    return Return && !Return->Type.empty() ? Return->Type : Type;
  }
};

/// A child of a `list`.
struct TSyntaxConstant {
  bool Listed = false;  ///< the child is a `listconst`; other named children only colour words
  std::string Name;
  std::string Help;
};

/// A child of `objects`, in document order.
struct TSyntaxElement {
  TSyntaxKind Kind = TSyntaxKind::Other;
  std::string Name;
  std::string Type;
  std::string Flag;
  std::optional<std::string> Text;         ///< when the element's only child is text
  std::string Comment;                     ///< of an `object`: its first `comment`
  std::vector<std::string> Comments;       ///< of a `list`: every `comment`
  std::vector<TSyntaxMember> Members;      ///< of an `object`: every child element with a name
  std::vector<TSyntaxConstant> Constants;  ///< of a `list`: every child element with a name
  std::optional<TSyntaxMember> Function;  ///< of a top-level `method` or `data`: itself as a member
};

/// Built once and never changed, so that all documents and dialogs may share one.
class TSyntaxDatabase {
 public:
  TSyntaxDatabase() = default;
  explicit TSyntaxDatabase(std::vector<TSyntaxElement> elements);

  bool Empty() const { return FElements.empty(); }
  const std::vector<TSyntaxElement>& Elements() const { return FElements; }

  /// First child of `objects` of any kind whose name is exactly this, or null.
  const TSyntaxElement* FindElement(std::string_view name) const;
  /// First `method` or `data` of the element whose name is exactly this, or null.
  static const TSyntaxMember* FindMember(const TSyntaxElement& element, std::string_view name);
  /// First top-level `method` or `data` whose name is exactly this, or null.
  const TSyntaxMember* FindFunction(std::string_view name) const;

 private:
  template <class TAccept>
  const TSyntaxElement* FindFirst(std::string_view name, TAccept accept) const;

  std::vector<TSyntaxElement> FElements;
  std::vector<std::uint32_t> FByName;  ///< positions of elements by name, then in document order
};

/// Builds the model from a document's nodes in document order; never recurses, so depth is no risk.
/// Content outside a root element named `objects` is ignored.
class TSyntaxDatabaseBuilder {
 public:
  using TAttribute = std::pair<std::string_view, std::string_view>;  ///< name, value

  TSyntaxDatabaseBuilder();
  ~TSyntaxDatabaseBuilder();

  void StartElement(std::string_view name, std::span<const TAttribute> attributes);
  void EndElement();
  /// A run of character data; calls in a row with no other node between are one node. White space
  /// alone is nothing.
  void Characters(std::string_view text);
  void CDataSection(std::string_view text);
  /// A comment or processing instruction: counts as a child, so its parent is not a text element.
  void OtherNode();

  /// The finished model; the builder has served.
  TSyntaxDatabase Finish();

 private:
  struct TImpl;
  std::unique_ptr<TImpl> FImpl;
};
