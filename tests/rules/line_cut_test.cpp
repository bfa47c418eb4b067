#include "syntax/rules/line_cut.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <random>
#include <string>

#include "text/collation.h"

namespace {

struct TCase {
  std::string Marked;  // "^" stands for the cursor
  std::string Prefix, Expression, Suffix;
  int Position;
};

TEST(LineCut, CutsAroundTheCursor) {
  const TCase cases[] = {
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
      // Second bytes that look like a bracket, a bar, a "t".
      {"y=\x83[\x83|.b^", "y=", "\x83[\x83|.b", "", 1},
      {"y=\x83thena.^b|c", "y=", "\x83thena.b", "|c", 0},
  };
  const TCollation before = UserCollation();
  TCollation doubleBytes = before;
  doubleBytes.LeadBytes[0x83] = true;
  SetUserCollation(doubleBytes);
  for (const TCase& test : cases) {
    const std::size_t cursor = test.Marked.find('^');
    const std::string line = test.Marked.substr(0, cursor) + test.Marked.substr(cursor + 1);
    const TLineCut cut = CutLine(line, static_cast<int>(cursor));
    EXPECT_EQ(cut.Prefix, test.Prefix) << test.Marked;
    EXPECT_EQ(cut.Expression, test.Expression) << test.Marked;
    EXPECT_EQ(cut.Suffix, test.Suffix) << test.Marked;
    EXPECT_EQ(cut.Position, test.Position) << test.Marked;
  }
  SetUserCollation(before);
}

// The rules of the cut one by one, as plainly as they can be put: slow, but with nothing merged.
TLineCut PlainCut(const std::string& line, int cursor) {
  const int n = static_cast<int>(line.size());
  const auto at = [&](int i) { return line.at(static_cast<std::size_t>(i)); };
  const auto among = [](const char* set, char c) { return std::string(set).find(c) + 1 != 0; };
  if (n == 0) return {};
  int c = std::min(cursor, n - 1);
  while (c >= 0 && at(c) == ' ') --c;
  int parens = 0, brackets = 0;
  bool quote = false;
  for (; c >= 0; --c) {
    if (quote) {
      if (at(c) == '"') quote = false;
    } else if (parens >= 1) {
      if (at(c) == '(') --parens;
      if (at(c) == ')') ++parens;
    } else if (brackets >= 1) {
      if (at(c) == '[') --brackets;
      if (at(c) == ']') ++brackets;
    } else if (at(c) == ')') {
      ++parens;
    } else if (at(c) == ']') {
      ++brackets;
    } else if (at(c) == '"') {
      quote = true;
    } else if (among("-+, ><=*&|([", at(c))) {
      break;
    }
  }
  if (c < 0) c = 0;
  if (among("-+, ><=*&|([", at(c))) ++c;
  while (c < n && at(c) == ' ') ++c;
  const int s = std::clamp(c, 0, n - 1);

  int e = n - 1, blank = -1;
  bool hasParen = false, arguments = false;
  parens = brackets = 0;
  quote = false;
  for (int i = s; i < n; ++i) {
    if (quote) {
      if (at(i) == '"') quote = false;
      if (!arguments && !hasParen && blank != -1) arguments = true, blank = -1;
      continue;
    }
    if (parens > 0) {
      parens += at(i) == '(' ? 1 : at(i) == ')' ? -1 : 0;
      continue;
    }
    if (brackets > 0) {
      brackets += at(i) == '[' ? 1 : at(i) == ']' ? -1 : 0;
      continue;
    }
    if (at(i) == '(') parens = 1, hasParen = true;
    if (at(i) == '[') brackets = 1;
    if (at(i) == '"') quote = true;
    if (among("([\"", at(i))) continue;
    if (at(i) == ' ' && !hasParen && blank == -1) {
      blank = i - 1;
      continue;
    }
    std::string four = line.substr(static_cast<std::size_t>(i), 4);
    for (char& letter : four) {
      if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter + 32);
    }
    if (at(i) == '\'' || (!arguments && (among(")]-+,><=*&|", at(i)) || four == "then"))) {
      e = blank != -1 ? blank : i - 1;
      break;
    }
    if (!arguments && !hasParen && blank != -1 && at(i) != ' ') arguments = true, blank = -1;
  }
  const std::string_view view = line;
  const auto from = static_cast<std::size_t>(s);
  auto to = static_cast<std::size_t>(e + 1);
  if (view.substr(from, to - from).find_first_not_of(' ') == std::string_view::npos) to = from;
  TLineCut cut{view.substr(0, from), view.substr(from, to - from), view.substr(to)};
  const int length = static_cast<int>(cut.Expression.size());
  const int k = std::min(cursor - s, length);
  for (int i = 0; i < k; ++i) cut.Position += view[from + static_cast<std::size_t>(i)] == '.';
  if (k < length) --cut.Position;
  cut.Position = std::max(cut.Position, 0);
  return cut;
}

TEST(LineCut, FollowsThePlainRulesOnRandomLines) {
  std::mt19937 random(20240611);
  const std::string alphabet = "ab..  ()[]\"'=,-&T";
  for (int round = 0; round < 40000; ++round) {
    std::string line;
    for (auto length = random() % 24; length > 0; --length) {
      line += random() % 12 == 0 ? std::string("Then")
                                 : std::string(1, alphabet[random() % alphabet.size()]);
    }
    const int cursor = static_cast<int>(random() % (line.size() + 4)) - 2;
    const TLineCut cut = CutLine(line, cursor);
    const TLineCut plain = PlainCut(line, cursor);
    ASSERT_EQ(std::string(cut.Prefix) + std::string(cut.Expression) + std::string(cut.Suffix),
              line);
    ASSERT_EQ(cut.Prefix, plain.Prefix) << line << "^" << cursor;
    ASSERT_EQ(cut.Expression, plain.Expression) << line << "^" << cursor;
    ASSERT_EQ(cut.Position, plain.Position) << line << "^" << cursor;
  }
}

TEST(LineCut, TakesAnyCursor) {
  for (int cursor : {-2147483647 - 1, -1, 0}) {
    EXPECT_EQ(CutLine("obj.Add", cursor).Position, 0) << cursor;
    EXPECT_EQ(CutLine("obj.Add", cursor).Expression, "obj.Add") << cursor;
  }
  for (int cursor : {7, 8, 2147483647}) {
    EXPECT_EQ(CutLine("obj.Add", cursor).Position, 1) << cursor;
  }
}

}  // namespace
