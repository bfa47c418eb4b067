// The syntax database from any row of nodes, and the constants of its lists.

#include "fuzz.h"
#include "zefdb/rules/database_check.h"

namespace {

constexpr const char kElements[][10] = {"objects", "object", "type",      "const",
                                        "method",  "data",   "list",      "param",
                                        "oparam",  "return", "listconst", "comment"};
constexpr const char kAttributes[][5] = {"name", "type", "list", "def"};

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
  for (const TDatabaseFault& fault : check.Faults()) Check(!Describe(fault).empty());
});

}  // namespace
