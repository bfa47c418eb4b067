#include "syntax/rules/line_analysis.h"

#include <gtest/gtest.h>

#include <functional>

#include "sample_syntax.h"

namespace {

using TValues = std::vector<std::string>;

TValues ValuesOf(const TLineAnalysis& line) {
  TValues values;
  for (int i = 0; i < line.ValueCount(); ++i) values.emplace_back(line.Value(i));
  return values;
}

class LineAnalysis : public testing::Test {
 protected:
  TLineAnalysis At(const std::string& expression, int position) const {
    TLineAnalysis line;
    line.SetExpression(expression, FSyntax.Names);
    line.SelectSegment(position);
    return line;
  }
  const TSampleSyntax FSyntax;
};

TEST_F(LineAnalysis, FindsObjectMemberAndValues) {
  struct {
    std::string Expression;
    int Asked, Position;
    std::string Object, Member, MemberText;
    TValues Values;
    bool Parenthesised, Function;
  } const cases[] = {
      {"obj.Add 1, 2", 0, 0, "obj", "Add", "Add 1, 2", {"1", "2"}, false, false},
      {"obj.Add(, 5)", 0, 0, "obj", "Add", "Add(, 5)", {"", "5"}, true, false},
      {"obj.Add()", 0, 0, "obj", "Add", "Add()", {}, true, false},
      {"obj.Add 1 , , 3 x ,",
       0,
       0,
       "obj",
       "Add",
       "Add 1 , , 3 x ,",
       {"1", "", "3 x"},
       false,
       false},
      {"obj.Add f(1, 2), \"x, y\" ,[a, b]",
       0,
       0,
       "obj",
       "Add",
       "Add f(1, 2), \"x, y\" ,[a, b]",
       {"f(1, 2)", "\"x, y\"", "[a, b]"},
       false,
       false},
      {"obj", 0, 0, "obj", "", "", {}, false, false},
      {"obj.", 0, 0, "obj", "", "", {}, false, false},
      {"obj.Add ", 0, 0, "obj", "Add", "Add ", {}, false, false},
      {"obj.[a b](1)", 0, 0, "obj", "[a b]", "[a b](1)", {"1"}, true, false},
      {"a.b(1).c.d", 0, 0, "a", "b", "b(1)", {"1"}, true, false},
      {"a.b(1).c.d", 1, 1, "b(1)", "c", "c", {}, false, false},
      {"a.b(1).c.d", 2, 2, "c", "d", "d", {}, false, false},
      {"a.b(1).c.d", 3, 3, "d", "", "", {}, false, false},
      {"a.b(1).c.d", 9, 3, "d", "", "", {}, false, false},
      {"a.b.", 2, 1, "b", "", "", {}, false, false},
      {"a(\"x.y\", b.c).d", 1, 1, "d", "", "", {}, false, false},
      {"a.b 1.5", 2, 1, "b", "", "", {}, false, false},
      {"a+b.c", 0, 0, "a", "", "", {}, false, false},
      {" a.b", 3, 0, "", "", "", {}, false, false},
      {"MsgBox \"x\", 1", 0, 0, "MsgBox", "MsgBox", "MsgBox \"x\", 1", {"\"x\"", "1"}, false, true},
      {"msgbox(\"a\")", 0, 0, "msgbox", "msgbox", "msgbox(\"a\")", {"\"a\""}, true, true},
      {"Left(s, 1).x", 1, 0, "Left", "Left", "Left(s, 1)", {"s", "1"}, true, true},
      {"MsgBox", 0, 0, "MsgBox", "MsgBox", "MsgBox", {}, false, true},
      {"MsgBox.x", 0, 0, "MsgBox", "x", "x", {}, false, false},
      {"MsgBox\"x\"", 0, 0, "MsgBox\"x\"", "", "", {}, false, false},
      {"", 4, 0, "", "", "", {}, false, true},
  };
  for (const auto& test : cases) {
    const TLineAnalysis line = At(test.Expression, test.Asked);
    const std::string name = test.Expression + " at " + std::to_string(test.Asked);
    EXPECT_EQ(line.FunctionMode(), test.Function) << name;
    EXPECT_EQ(line.Position(), test.Position) << name;
    EXPECT_EQ(line.ObjectText(), test.Object) << name;
    EXPECT_EQ(line.MemberName(), test.Member) << name;
    EXPECT_EQ(line.MemberText(), test.MemberText) << name;
    EXPECT_EQ(ValuesOf(line), test.Values) << name;
    EXPECT_EQ(line.Parenthesised(), test.Parenthesised) << name;
  }
}

TEST_F(LineAnalysis, RewritesTheExpression) {
  const TSyntaxNames& names = FSyntax.Names;
  const auto member = [&names](const char* name) {
    return [&names, name](TLineAnalysis& line) { line.ReplaceMember(name, names); };
  };
  const auto useReturn = [&names](bool use) {
    return [&names, use](TLineAnalysis& line) { line.SetUseReturn(use, names); };
  };
  const auto param = [&names](int index, const char* value) {
    return [&names, index, value](TLineAnalysis& line) {
      line.SetParam(line.CallFrame(), index, value, names);
    };
  };
  const auto remove = [&names](TLineAnalysis& line) { line.DeleteMember(names); };
  struct {
    std::string Expression;
    int Position;
    std::function<void(TLineAnalysis&)> Rewrite;
    std::string Result;
  } const cases[] = {
      {"obj.add 1", 0, member("Add"), "obj.Add 1"},
      {"obj", 0, member("Add"), "obj.Add"},
      {"a.b(1).c", 1, member("Nom"), "a.b(1).Nom"},
      {"", 0, member("MsgBox"), "MsgBox"},
      {"Left(s)", 0, member("MsgBox"), "MsgBox(s)"},
      {"obj.Add 1, 2", 0, useReturn(true), "obj.Add(1, 2)"},
      {"obj.Add(1, 2)", 0, useReturn(false), "obj.Add 1, 2"},
      {"obj.Add( , 5 )", 0, useReturn(false), "obj.Add , 5"},
      {"obj.Add(1,2).c", 0, useReturn(true), "obj.Add(1,2).c"},
      {"obj.Nom", 0, useReturn(true), "obj.Nom()"},
      {"obj.Add()", 0, useReturn(false), "obj.Add"},
      {"MsgBox(1)", 0, useReturn(false), "MsgBox 1"},
      {"obj.Add(, 5)", 0, param(1, ""), "obj.Add()"},
      {"obj.Add", 0, param(2, "c"), "obj.Add , , c"},
      {"obj.Add a", 0, param(2, "c"), "obj.Add a, , c"},
      {"obj.Add a", 0, param(0, ""), "obj.Add"},
      {"a.b(1,2).c.d", 0, param(0, "f(x)"), "a.b(f(x), 2).c.d"},
      {"MsgBox", 0, param(0, "\"x\""), "MsgBox \"x\""},
      {"a.b(1).c", 0, remove, "a.c"},
      {"MsgBox.x 1", 0, remove, "MsgBox"},
  };
  for (const auto& test : cases) {
    TLineAnalysis line = At(test.Expression, test.Position);
    test.Rewrite(line);
    EXPECT_EQ(line.Expression(), test.Result) << test.Expression;
  }
}

TEST_F(LineAnalysis, ShowsTheObjectSelected) {
  struct {
    std::string Expression;
    int Position, Start, Length;
  } const cases[] = {{"a.b(1).c", 0, 0, 1},  {"a.b(1).c", 1, 2, 4}, {"a.b(1).c", 2, 7, 1},
                     {"MsgBox(1)", 0, 0, 7}, {"MsgBox", 0, 0, 6},   {"", 0, 0, 0}};
  for (const auto& test : cases) {
    const TTextRange range = At(test.Expression, test.Position).ObjectRange();
    EXPECT_EQ(range.Start, test.Start) << test.Expression;
    EXPECT_EQ(range.Length, test.Length) << test.Expression;
  }
}

}  // namespace
