// The syntax database from any row of nodes, and the constants of its lists.

#include <set>

#include "fuzz.h"
#include "syntax/rules/constant_value.h"
#include "text/trimmed.h"
#include "zefdb/rules/database_check.h"

namespace {

constexpr const char kElements[][10] = {"objects", "object", "type",      "const",
                                        "method",  "data",   "list",      "param",
                                        "oparam",  "return", "listconst", "comment"};
constexpr const char kAttributes[][5] = {"name", "type", "list", "def"};

std::set<int> Marks(const TConstantChoice& choice) {
  std::set<int> marks;
  for (int i = 0; i < choice.Count(); ++i)
    if (choice.Ticked(i)) marks.insert(i);
  return marks;
}

const bool nodes = Target("database", [](TInput input) {
  TSyntaxDatabaseBuilder builder;
  TDatabaseCheck check;
  for (int depth = 0; !input.Empty();) {
    const int action = input.Below(6);
    if (depth == 0 || action < 2) {
      const char* element = kElements[input.Below(12)];
      std::vector<std::string> values;
      for (int count = input.Below(4); count > 0; --count) values.push_back(input.Text());
      std::vector<TDatabaseCheck::TAttribute> attributes;
      for (const auto& value : values)
        attributes.emplace_back(kAttributes[attributes.size()], value);
      builder.StartElement(element, attributes);
      check.StartElement(++depth, element, attributes);
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
  const TSyntaxDatabase database = builder.Finish();
  for (const TSyntaxElement& element : database.Elements()) {
    const TSyntaxElement* found = database.FindElement(element.Name);
    Check(found && found->Name == element.Name && found <= &element);
  }
  Check(builder.Finish().Empty());
  for (const TDatabaseFault& fault : check.Faults()) Check(!Describe(fault).empty());
});

const bool constants = Target("constants", [](TInput input) {
  TSyntaxElement list{.Kind = TSyntaxKind::List, .Name = "L", .Flag = input.Bit() ? "add" : ""};
  // A value names all that it was made from, unless a name is none, a sum or has
  // blanks to lose.
  bool readBack = true;
  for (int count = input.Below(12); count > 0; --count) {
    const std::string name = input.Text(',');
    readBack = readBack && !name.empty() && name.find('+') + 1 == 0 && Trimmed(name) == name;
    list.Constants.push_back({true, name, input.Text()});
  }
  TConstantChoice choice;
  choice.Fill(TSyntaxDatabase({list}), "L");
  while (!input.Empty()) {
    std::set<int> marks = Marks(choice);
    std::vector<int> changed;
    if (choice.Count() > 0 && input.Bit()) {
      const int constant = input.Below(choice.Count());
      const bool ticked = input.Bit();
      changed = choice.Tick(constant, ticked);
      Check(choice.Ticked(constant) == ticked && (choice.Additive() || Marks(choice).size() <= 1));
      choice.ConstantHelp(constant);
    } else {
      changed = choice.Parse(input.Text());
    }
    for (const int i : changed)
      if (marks.erase(i) == 0) marks.insert(i);
    Check(marks == Marks(choice));
  }
  const std::set<int> marks = Marks(choice);
  choice.Parse(choice.Value());
  Check(!readBack || std::ranges::includes(Marks(choice), marks));
});

}  // namespace
