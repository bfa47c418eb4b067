#include "syntax/rules/line_cut.h"

#include <gtest/gtest.h>

#include <string>

#include "text/collation.h"

namespace {

TEST(LineCut, CutsAroundTheCursor) {
  const struct {
    std::string Marked;  ///< "^" stands for the cursor
    std::string Prefix, Expression, Suffix;
    int Position;
  } cases[] = {
      {"If x > 0 Then obj.A^dd 1, 2", "If x > 0 Then ", "obj.Add 1, 2", "", 0},
      {"y = obj.Na^me ' note", "y = ", "obj.Name", " ' note", 0},
      {"y = obj.Item(3).Na^me ' note", "y = ", "obj.Item(3).Name ", "' note", 1},
      {"obj.A^dd 1, 2 ' c", "", "obj.Add 1,", " 2 ' c", 0},
      {"obj.Auth^enticate", "", "obj.Au", "thenticate", 1},
      {"If a.b^ THEN c", "If ", "a.b", " THEN c", 1},
      {"   ^", "  ", "", " ", 0},
      {"^", "", "", "", 0},
      {" ^", "", "", " ", 0},
      {"x =^", "x ", "", "=", 0},
      {"a.b.^", "", "a.b.", "", 2},
      {"a.^b", "", "a.b", "", 0},
      {"a.b(1).c.^d", "", "a.b(1).c.d", "", 2},
      {"x = MsgBox(\"a\")^", "x = ", "MsgBox(\"a\")", "", 0},
      {"foo(obj.A^dd(1), 2)", "foo(", "obj.Add(1)", ", 2)", 0},
      {"x = f(\"a, b\").Na^me & 1", "x = ", "f(\"a, b\").Name ", "& 1", 0},
      {"Ms^gBox \"a = b\", x - 1", "", "MsgBox \"a = b\", x - 1", "", 0},
      {"obj.A^dd -1", "", "obj.Add", " -1", 0},
      {"obj.A^dd \"then\", b", "", "obj.Add \"then\", b", "", 0},
      {"obj.A^dd (1), 2", "", "obj.Add", " (1), 2", 0},
      {"x = [a = b].c^", "x = ", "[a = b].c", "", 1},
      {"(a.b)^", "(", "a.b", ")", 1},
      {"x=a.b   ^", "x=", "a.b   ", "", 1},
      {"y = f(g(1), 2).z^ + [b].e", "y = ", "f(g(1), 2).z ", "+ [b].e", 0},
      {"x-[a(b[c]d)e]^.f-g", "x-", "[a(b[c]d)e].f", "-g", 0},
      {"x=\"a(b\".L^en", "x=", "\"a(b\".Len", "", 0},
      {"a.b x, \"then - ]\" - c^ ' d", "a.b x, \"then - ]\" - ", "c", " ' d", 0},
      {"a^.b x \"then - ]\" - c ' d", "", "a.b x", " \"then - ]\" - c ' d", 0},
      {"a^.b(1) x then", "", "a.b(1) x ", "then", 0},
      {"a^.b (1) x then", "", "a.b", " (1) x then", 0},
      {"a^.b [1] x - y then", "", "a.b [1] x - y then", "", 0},
      {"(^", "", "(", "", 0},
      {"^.", "", ".", "", 0},
      {"f^ x - y", "", "f x - y", "", 0},
      {"a^.b [1] - y", "", "a.b", " [1] - y", 0},
      {"a.b =^ ", "a.b =", "", " ", 0},
      // Second bytes that look like a bracket, a bar, a "t".
      {"y=\x83[\x83|.b^", "y=", "\x83[\x83|.b", "", 1},
      {"y=\x83thena.^b|c", "y=", "\x83thena.b", "|c", 0},
  };
  const TCollation before = UserCollation();
  TCollation doubleBytes = before;
  doubleBytes.LeadBytes[0x83] = true;
  SetUserCollation(doubleBytes);
  for (const auto& test : cases) {
    const std::size_t cursor = test.Marked.find('^');
    const std::string line = std::string(test.Marked).erase(cursor, 1);
    const TLineCut cut = CutLine(line, static_cast<int>(cursor));
    EXPECT_TRUE(cut.Prefix == test.Prefix && cut.Expression == test.Expression &&
                cut.Suffix == test.Suffix && cut.Position == test.Position)
        << test.Marked << ": " << cut.Prefix << "|" << cut.Expression << "|" << cut.Suffix;
  }
  SetUserCollation(before);
}

TEST(LineCut, TakesAnyCursor) {
  for (const int cursor : {-2147483647 - 1, -1, 0, 7, 8, 2147483647}) {
    EXPECT_EQ(CutLine("obj.Add", cursor).Position, cursor > 0) << cursor;
    EXPECT_EQ(CutLine("obj.Add", cursor).Expression, "obj.Add") << cursor;
  }
}

}  // namespace
