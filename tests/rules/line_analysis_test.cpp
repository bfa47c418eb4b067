#include "syntax/rules/line_analysis.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "sample_syntax.h"
#include "text/collation.h"

namespace {

TLineAnalysis At(const std::string& expression, int position) {
  TLineAnalysis line;
  line.SetExpression(expression, kSyntax.Names);
  line.SelectSegment(position);
  return line;
}

TEST(LineAnalysis, FindsObjectMemberAndValues) {
  const struct {
    const char* Expression;
    int Asked, Position;
    const char* Shown;  ///< object|member|value|value…, after "f" and "(" where they apply
    const char* MemberText;
  } cases[] = {
      {"obj.Add 1, 2", 0, 0, "obj|Add|1|2", "Add 1, 2"},
      {"obj.Add(, 5)", 0, 0, "(obj|Add||5", "Add(, 5)"},
      {"obj.Add()", 0, 0, "(obj|Add", "Add()"},
      {"obj.Add 1  ,  , 3 x ,", 0, 0, "obj|Add|1||3 x", "Add 1  ,  , 3 x ,"},
      {"obj.Add f(1, 2), \"x, y\" ,[a, b]", 0, 0, "obj|Add|f(1, 2)|\"x, y\"|[a, b]",
       "Add f(1, 2), \"x, y\" ,[a, b]"},
      {"obj", 0, 0, "obj|", ""},
      {"obj.", 0, 0, "obj|", ""},
      {"obj.Add ", 0, 0, "obj|Add", "Add "},
      {"obj.[a b](1)", 0, 0, "(obj|[a b]|1", "[a b](1)"},
      {"a.b(1).c.d", 0, 0, "(a|b|1", "b(1)"},
      {"a.b(1).c.d", 1, 1, "b(1)|c", "c"},
      {"a.b(1).c.d", 2, 2, "c|d", "d"},
      {"a.b(1).c.d", 3, 3, "d|", ""},
      {"a.b(1).c.d", 9, 3, "d|", ""},
      {"a.b.", 2, 1, "b|", ""},
      {"a(\"x.y\", b.c).d", 1, 1, "d|", ""},
      {"a.b 1.5", 2, 1, "b|", ""},
      {"a+b.c", 0, 0, "a|", ""},
      {" a.b", 3, 0, "|", ""},
      {"MsgBox \"x\", 1", 0, 0, "fMsgBox|MsgBox|\"x\"|1", "MsgBox \"x\", 1"},
      {"msgbox(\"a\")", 0, 0, "f(msgbox|msgbox|\"a\"", "msgbox(\"a\")"},
      {"Left(s, 1).x", 1, 0, "f(Left|Left|s|1", "Left(s, 1)"},
      {"MsgBox", 0, 0, "fMsgBox|MsgBox", "MsgBox"},
      {"MsgBox.x", 0, 0, "MsgBox|x", "x"},
      {"MsgBox\"x\"", 0, 0, "MsgBox\"x\"|", ""},
      {"", 4, 0, "f|", ""},
  };
  for (const auto& test : cases) {
    const TLineAnalysis line = At(test.Expression, test.Asked);
    std::string shown = line.FunctionMode() ? "f" : "";
    if (line.Parenthesised()) shown += '(';
    shown.append(line.ObjectText()).append("|").append(line.MemberName());
    for (int i = 0; i < line.ValueCount(); ++i) shown.append("|").append(line.Value(i));
    EXPECT_EQ(shown, test.Shown) << test.Expression;
    EXPECT_EQ(line.Position(), test.Position) << test.Expression;
    EXPECT_EQ(line.MemberText(), test.MemberText) << test.Expression;
    EXPECT_LT(line.ParametersEnd(), static_cast<int>(line.Expression().size()));
    // What the line box shows selected: the object, or the function with the sign behind it.
    const std::size_t length = line.ObjectText().size() + (line.FunctionMode() ? 1 : 0);
    EXPECT_EQ(line.Expression().substr(line.ObjectRange().Start, line.ObjectRange().Length),
              line.Expression().substr(line.SegmentStart(), length));
  }
}

TEST(LineAnalysis, RewritesTheExpression) {
  const struct {
    const char* Expression;
    int Position;
    std::string Action, Result;
  } cases[] = {
      {"obj.add 1", 0, "member Add", "obj.Add 1"},
      {"obj", 0, "member Add", "obj.Add"},
      {"a.b(1).c", 1, "member Nom", "a.b(1).Nom"},
      {"", 0, "member MsgBox", "MsgBox"},
      {"Left(s)", 0, "member MsgBox", "MsgBox(s)"},
      {"obj.Add 1, 2", 0, "call yes", "obj.Add(1, 2)"},
      {"obj.Add(1, 2)", 0, "call no", "obj.Add 1, 2"},
      {"obj.Add( , 5 )", 0, "call no", "obj.Add , 5"},
      {"obj.Add(1,,)", 0, "call no", "obj.Add 1"},
      {"obj.Add(,)", 0, "call no", "obj.Add"},
      {"obj.Add(1,2).c", 0, "call yes", "obj.Add(1,2).c"},
      {"obj.Nom", 0, "call yes", "obj.Nom()"},
      {"obj.Add()", 0, "call no", "obj.Add"},
      {"MsgBox(1)", 0, "call no", "MsgBox 1"},
      {"obj.Add(, 5)", 0, "1", "obj.Add()"},
      {"obj.Add", 0, "2 c", "obj.Add , , c"},
      {"obj.Add a", 0, "2 c", "obj.Add a, , c"},
      {"obj.Add a", 0, "0", "obj.Add"},
      {"a.b(1,2).c.d", 0, "0 f(x)", "a.b(f(x), 2).c.d"},
      {"MsgBox", 0, "0 \"x\"", "MsgBox \"x\""},
      {"a.b(1).c", 0, "delete", "a.c"},
      {"MsgBox.x 1", 0, "delete", "MsgBox"},
      {"a.\210e.c", 0, "member E", "a.E.c"},
  };
  // A letter whose capital is a byte shorter.
  const TCollation before = UserCollation();
  TCollation rules = before;
  rules.UpperCharacter = [](std::string_view) noexcept { return TUpperCharacter{{'E'}, 1, 2}; };
  SetUserCollation(rules);
  for (const auto& [expression, position, action, result] : cases) {
    TLineAnalysis line = At(expression, position);
    const std::string what = action.substr(0, action.find(' '));
    const std::string with = action.substr(std::min(action.size(), what.size() + 1));
    if (what == "member") {
      line.ReplaceMember(with, kSyntax.Names);
    } else if (what == "call") {
      line.SetUseReturn(with == "yes", kSyntax.Names);
    } else if (what == "delete") {
      line.DeleteMember(kSyntax.Names);
    } else {
      line.SetParam(line.CallFrame(), std::stoi(what), with, kSyntax.Names);
    }
    EXPECT_EQ(line.Expression(), result) << expression << " " << action;
  }
  SetUserCollation(before);
}

}  // namespace
