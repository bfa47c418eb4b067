#include "syntax/rules/syntax_database.h"

#include <algorithm>
#include <array>
#include <numeric>

#include "syntax/rules/help_text.h"

TSyntaxDatabase::TSyntaxDatabase(std::vector<TSyntaxElement> elements)
    : FElements(std::move(elements)), FByName(FElements.size()) {
  std::iota(FByName.begin(), FByName.end(), 0u);
  std::stable_sort(FByName.begin(), FByName.end(), [this](std::uint32_t a, std::uint32_t b) {
    return FElements[a].Name < FElements[b].Name;
  });
}

template <class TAccept>
const TSyntaxElement* TSyntaxDatabase::FindFirst(std::string_view name, TAccept accept) const {
  auto entry = std::lower_bound(FByName.begin(), FByName.end(), name,
                                [this](std::uint32_t index, std::string_view wanted) {
                                  return FElements[index].Name.compare(wanted) < 0;
                                });
  for (; entry != FByName.end() && FElements[*entry].Name == name; ++entry)
    if (accept(FElements[*entry])) return &FElements[*entry];
  return nullptr;
}

const TSyntaxElement* TSyntaxDatabase::FindElement(std::string_view name) const {
  return FindFirst(name, [](const TSyntaxElement&) { return true; });
}

const TSyntaxMember* TSyntaxDatabase::FindMember(const TSyntaxElement& element,
                                                 std::string_view name) {
  for (const TSyntaxMember& member : element.Members)
    if (member.Kind != TSyntaxKind::Other && member.Name == name) return &member;
  return nullptr;
}

const TSyntaxMember* TSyntaxDatabase::FindFunction(std::string_view name) const {
  const TSyntaxElement* element = FindFirst(
      name, [](const TSyntaxElement& candidate) { return candidate.Function.has_value(); });
  return element ? &*element->Function : nullptr;
}

namespace {

constexpr std::string_view kXmlBlanks = " \t\r\n";

// Depths of the nodes that the model knows; whatever lies deeper is only counted.
constexpr std::size_t kRootDepth = 1, kElementDepth = 2, kChildDepth = 3, kDetailDepth = 4;

TSyntaxKind KindOf(std::string_view name) {
  static constexpr std::pair<std::string_view, TSyntaxKind> kinds[] = {
      {"object", TSyntaxKind::Object}, {"type", TSyntaxKind::Type}, {"const", TSyntaxKind::Const},
      {"method", TSyntaxKind::Method}, {"data", TSyntaxKind::Data}, {"list", TSyntaxKind::List}};
  for (const auto& [text, kind] : kinds)
    if (name == text) return kind;
  return TSyntaxKind::Other;
}

std::string_view Attribute(std::span<const TSyntaxDatabaseBuilder::TAttribute> attributes,
                           std::string_view name) {
  for (const auto& [key, value] : attributes)
    if (key == name) return value;
  return {};
}

/// What is known of an open element's children: its text counts only while it is the only one.
struct TContent {
  std::size_t Nodes = 0;
  bool HasText = false;
  bool HasComment = false;
  std::string Text;
  std::string* Target = nullptr;  ///< where the text goes when the element ends

  bool OnlyText() const { return Nodes == 1 && HasText; }
};

}  // namespace

struct TSyntaxDatabaseBuilder::TImpl {
  using TAttributes = std::span<const TAttribute>;

  bool Known() const { return Inside && Depth >= kElementDepth && Depth <= kDetailDepth; }

  void AddNode() {
    EndRun();
    if (Known()) ++Contents[Depth].Nodes;
  }

  void AddText(std::string_view text) {
    TContent& content = Contents[Depth];
    ++content.Nodes;
    content.HasText = true;
    content.Text.assign(text);
  }

  void EndRun() {
    if (Run.find_first_not_of(kXmlBlanks) != std::string::npos) AddText(Run);
    Run.clear();
  }

  void Open(std::string_view name, TAttributes attributes) {
    Contents[Depth] = {};
    if (Depth == kElementDepth) return OpenElement(name, attributes);
    TSyntaxElement& element = Elements.back();
    const std::size_t detailDepth = element.Function ? kChildDepth : kDetailDepth;
    if (Depth < detailDepth)
      OpenChild(element, name, attributes);
    else if (Depth == detailDepth && Member)
      OpenDetail(*Member, name, attributes);
  }

  void OpenElement(std::string_view name, TAttributes attributes) {
    TSyntaxElement& element = Elements.emplace_back();
    element.Kind = KindOf(name);
    element.Name = Attribute(attributes, "name");
    element.Type = Attribute(attributes, "type");
    element.Flag = Attribute(attributes, "flag");
    if (element.Kind != TSyntaxKind::Method && element.Kind != TSyntaxKind::Data) return;
    Member = &element.Function.emplace();
    Member->Kind = element.Kind;
    Member->Name = element.Name;
    Member->Type = element.Type;
  }

  void OpenChild(TSyntaxElement& element, std::string_view name, TAttributes attributes) {
    Member = nullptr;
    if (element.Kind == TSyntaxKind::Object) {
      if (name == "comment") TakeFirstComment(element.Comment);
      OpenMember(element, name, attributes);
    } else if (element.Kind == TSyntaxKind::List) {
      if (name == "comment") Contents[Depth].Target = &element.Comments.emplace_back();
      OpenConstant(element, name, attributes);
    }
  }

  void OpenMember(TSyntaxElement& element, std::string_view name, TAttributes attributes) {
    const std::string_view memberName = Attribute(attributes, "name");
    if (memberName.empty()) return;
    TSyntaxMember& member = element.Members.emplace_back();
    member.Name = memberName;
    const TSyntaxKind kind = KindOf(name);
    if (kind != TSyntaxKind::Method && kind != TSyntaxKind::Data) return;
    member.Kind = kind;
    member.Type = Attribute(attributes, "type");
    Member = &member;
  }

  void OpenConstant(TSyntaxElement& element, std::string_view name, TAttributes attributes) {
    const std::string_view constantName = Attribute(attributes, "name");
    if (constantName.empty()) return;
    TSyntaxConstant& constant = element.Constants.emplace_back();
    constant.Listed = name == "listconst";
    constant.Name = constantName;
    if (constant.Listed) Contents[Depth].Target = &constant.Help;
  }

  void OpenDetail(TSyntaxMember& member, std::string_view name, TAttributes attributes) {
    const bool required = name == "param";
    if (required || name == "oparam") {
      TSyntaxParam& param = member.Params.emplace_back();
      param.Required = required;
      param.Name = Attribute(attributes, "name");
      param.Type = Attribute(attributes, "type");
      param.List = Attribute(attributes, "list");
      param.Default = Attribute(attributes, "def");
      Contents[Depth].Target = &param.Help;
    } else if (name == "return" && !member.Return) {
      member.Return.emplace().Type = Attribute(attributes, "type");
      Contents[Depth].Target = &member.Return->Help;
    } else if (name == "comment") {
      TakeFirstComment(member.Comment);
    }
  }

  void TakeFirstComment(std::string& comment) {
    TContent& parent = Contents[Depth - 1];
    if (!parent.HasComment) Contents[Depth].Target = &comment;
    parent.HasComment = true;
  }

  void Close() {
    TContent& content = Contents[Depth];
    if (!content.OnlyText()) return;
    if (Depth == kElementDepth)
      Elements.back().Text = WithoutIndentation(content.Text);
    else if (content.Target)
      *content.Target = WithoutIndentation(content.Text);
  }

  std::vector<TSyntaxElement> Elements;
  std::size_t Depth = 0;
  bool Inside = false;  ///< the open root element is the one that counts
  std::array<TContent, kDetailDepth + 1> Contents;
  TSyntaxMember* Member = nullptr;  ///< takes the details of the open method or property
  std::string Run;                  ///< character data since the last node
};

TSyntaxDatabaseBuilder::TSyntaxDatabaseBuilder() : FImpl(std::make_unique<TImpl>()) {}
TSyntaxDatabaseBuilder::~TSyntaxDatabaseBuilder() = default;

void TSyntaxDatabaseBuilder::StartElement(std::string_view name,
                                          std::span<const TAttribute> attributes) {
  TImpl& impl = *FImpl;
  impl.AddNode();
  if (++impl.Depth == kRootDepth) impl.Inside = name == "objects";
  if (impl.Known()) impl.Open(name, attributes);
}

void TSyntaxDatabaseBuilder::EndElement() {
  TImpl& impl = *FImpl;
  impl.EndRun();
  if (impl.Known()) impl.Close();
  if (impl.Depth > 0) --impl.Depth;
}

void TSyntaxDatabaseBuilder::Characters(std::string_view text) {
  if (FImpl->Known()) FImpl->Run.append(text);
}

void TSyntaxDatabaseBuilder::CDataSection(std::string_view text) {
  if (FImpl->Known()) FImpl->AddText(text);
}

void TSyntaxDatabaseBuilder::OtherNode() { FImpl->AddNode(); }

TSyntaxDatabase TSyntaxDatabaseBuilder::Finish() {
  return TSyntaxDatabase(std::move(FImpl->Elements));
}
