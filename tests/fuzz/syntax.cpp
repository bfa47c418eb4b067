// The syntax database from any row of nodes, and the constants of its lists.

#include "fuzz.h"
#include "syntax/rules/constant_value.h"
#include "syntax/rules/syntax_names.h"
#include "text/trimmed.h"
#include "zefdb/rules/database_check.h"

namespace {

using TAttributes = std::vector<TSyntaxDatabaseBuilder::TAttribute>;

constexpr const char* kElements[] = {"objects", "object", "type",      "const",
                                     "method",  "data",   "list",      "param",
                                     "oparam",  "return", "listconst", "comment"};
constexpr const char* kAttributes[] = {"name", "type", "list", "def", "flag"};

void Open(TSyntaxDatabaseBuilder& builder, TDatabaseCheck& check, TInput& input, int line) {
  const char* element = kElements[input.Below(12)];
  std::vector<std::string> values;
  for (int count = input.Below(4); count > 0; --count) values.push_back(input.Text());
  TAttributes attributes;
  for (const auto& value : values) attributes.emplace_back(kAttributes[attributes.size()], value);
  builder.StartElement(element, attributes);
  check.StartElement(line, element, attributes);
}

void CheckDatabase(const TSyntaxDatabase& database) {
  TSyntaxNames names;
  names.BuildWords(database);
  names.BuildTypes(database);
  for (const TSyntaxElement& element : database.Elements()) {
    const TSyntaxElement* found = database.FindElement(element.Name);
    Check(found && found->Name == element.Name && found <= &element);
    if (element.Function) Check(database.FindFunction(element.Name)->Name == element.Name);
    if (element.Kind == TSyntaxKind::Type && !element.Name.empty())
      Check(names.Types.IndexOf(element.Name) >= 0);
    for (const TSyntaxMember& member : element.Members) Check(names.IsMethod("." + member.Name));
    for (const TSyntaxConstant& constant : element.Constants)
      Check(names.IsConstant(constant.Name));
  }
}

std::vector<int> Marks(const TConstantChoice& choice) {
  std::vector<int> marks;
  for (int i = 0; i < choice.Count(); ++i)
    if (choice.Ticked(i)) marks.push_back(i);
  return marks;
}

}  // namespace

void FuzzDatabase(TInput input) {
  TSyntaxDatabaseBuilder builder;
  TDatabaseCheck check;
  int depth = 0;
  for (int line = 1; !input.Empty(); ++line) {
    const int action = input.Below(6);
    if (depth == 0 || action < 2) {
      Open(builder, check, input, line);
      ++depth;
    } else if (action == 2) {
      builder.EndElement();
      check.EndElement();
      --depth;
    } else if (action == 5) {
      builder.OtherNode();
    } else {
      const std::string text = input.Text();
      action == 3 ? builder.Characters(text) : builder.CDataSection(text);
      check.Text(text);
    }
  }
  CheckDatabase(builder.Finish());
  Check(builder.Finish().Empty());
  for (const TDatabaseFault& fault : check.Faults()) Check(!Describe(fault).empty());
}

void FuzzConstants(TInput input) {
  TSyntaxElement list{.Kind = TSyntaxKind::List, .Name = "L", .Flag = input.Bit() ? "add" : ""};
  for (int count = input.Below(12); count > 0; --count)
    list.Constants.push_back({true, input.Text(','), input.Text()});
  TConstantChoice choice;
  choice.Fill(TSyntaxDatabase({list}), "L");
  Check(choice.Count() == static_cast<int>(list.Constants.size()));
  while (!input.Empty()) {
    const std::vector<int> before = Marks(choice);
    std::vector<int> changed;
    if (choice.Count() > 0 && input.Bit()) {
      const int constant = input.Below(choice.Count());
      const bool ticked = input.Bit();
      changed = choice.Tick(constant, ticked);
      Check(choice.Ticked(constant) == ticked);
      Check(choice.Additive() || Marks(choice).size() <= 1);
      choice.ConstantHelp(constant);
    } else {
      changed = choice.Parse(input.Text());
    }
    std::vector<int> difference;
    std::ranges::set_symmetric_difference(before, Marks(choice), std::back_inserter(difference));
    Check(changed == difference);
  }
  // A value names all that it was made from, unless a name is none, a sum or has blanks to lose.
  for (const auto& [listed, name, help] : list.Constants)
    if (name.empty() || name.find('+') != std::string::npos || Trimmed(name) != name) return;
  const std::vector<int> ticked = Marks(choice);
  choice.Parse(choice.Value());
  Check(std::ranges::includes(Marks(choice), ticked));
}
