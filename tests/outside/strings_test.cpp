#include <gtest/gtest.h>
#include <setjmp.h>

#include <functional>

#include "outside/host_strings.h"
#include "user/window.h"

namespace {

/// Where a structured exception takes the host: out of the library's frames, back to its own.
jmp_buf landing;

[[noreturn]] void Land() { longjmp(landing, 1); }

LONG CALLBACK Divert(EXCEPTION_POINTERS* exception) {
  if (exception->ExceptionRecord->ExceptionCode != EXCEPTION_ARRAY_BOUNDS_EXCEEDED)
    return EXCEPTION_CONTINUE_SEARCH;
  // The jump itself is made once the system is done with the exception.
  CONTEXT& context = *exception->ContextRecord;
  context.Eip = static_cast<DWORD>(reinterpret_cast<std::uintptr_t>(&Land));
  context.Esp = (context.Esp & ~DWORD{15}) - sizeof(void*);
  return EXCEPTION_CONTINUE_EXECUTION;
}

/// Whether the call raises what an index past the end is to raise; it never returns then.
bool Raises(const std::function<void()>& call) {
  void* const handler = AddVectoredExceptionHandler(TRUE, Divert);
  const bool raised = setjmp(landing) != 0 || (call(), false);
  RemoveVectoredExceptionHandler(handler);
  return raised;
}

/// What lists do has tests of its own; here are the exports and the host's code page.
class Strings : public testing::Test {
 protected:
  const TLibrary Library;
};

TEST_F(Strings, HoldAndShareTexts) {
  THostString string(Library);
  EXPECT_EQ(string.Text(), "");
  std::string every;
  for (int byte = 1; byte < 256; ++byte) every += static_cast<char>(byte);
  for (const std::string& text : {every, std::string(5'000'000, 'x'), std::string("ab")}) {
    string.Set(text.c_str());
    EXPECT_TRUE(string.Text() == text) << text.size() << " bytes";
  }
  string.Set(string.Characters());
  Library.VCLAnsiStringConcat(string.Handle(), string.Handle());
  EXPECT_EQ(string.Text(), "abab") << "out of itself";
  // The host may hold the characters of either side while the other changes.
  for (const bool changeCopy : {false, true}) {
    THostString copy(Library, "avant");
    Library.VCLAnsiStringCopy(copy.Handle(), string.Handle());
    const THostString& kept = changeCopy ? string : copy;
    const char* const characters = kept.Characters();
    Library.VCLAnsiStringConcat((changeCopy ? copy : string).Handle(), kept.Handle());
    EXPECT_EQ(kept.Characters(), characters);
    EXPECT_EQ(kept.Text(), "abab");
    EXPECT_EQ((changeCopy ? copy : string).Text(), "abababab");
    string.Set("abab");
  }
  string.Set(nullptr);
  EXPECT_EQ(string.Text(), "");
}

TEST_F(Strings, ListsCompareAsTheUserAndTheCodePageDo) {
  const auto ignored = TLetterCase::Ignored, told = TLetterCase::Told;
  const auto arrival = TSorting::InOrderOfArrival, sorted = TSorting::Sorted;
  const struct {
    TSorting Sorting;
    TLetterCase LetterCase;
    std::vector<std::pair<const char*, int>> Added;  ///< lines with the index that they get
    const char* CommaText;
  } cases[] = {
      {arrival, ignored, {{"b", 0}, {"été", 1}, {"B", 0}, {"ÉTÉ", 1}, {"", 2}}, "b,été,"},
      {arrival,
       ignored,
       {{"ж", 0}, {"ａ", 1}, {"Ж", 0}, {"ーソ", 2}, {"ソー", 3}},
       "ж,ａ,ーソ,ソー"},
      {arrival, told, {{"b", 0}, {"B", 1}, {"b", 0}}, "b,B"},
      // Accented letters stand beside their plain ones.
      {sorted,
       ignored,
       {{"f", 0}, {"e", 0}, {"é", 1}, {"É", 1}, {"éa", 2}, {"ez", 3}},
       "e,é,éa,ez,f"},
      {sorted, ignored, {{"ж", 0}, {"я", 1}, {"а", 0}, {"Б", 1}, {"Ж", 2}}, "а,Б,ж,я"},
  };
  for (const auto& c : cases) {
    // No host can say what its code page lacks.
    if (FromAnsi(Ansi(c.CommaText)) != c.CommaText) continue;
    SCOPED_TRACE(c.CommaText);
    THostList list(Library, c.Sorting, c.LetterCase, /*duplicates=*/true);
    for (const auto& [line, index] : c.Added) EXPECT_EQ(list.Add(Ansi(line)), index) << line;
    EXPECT_EQ(FromAnsi(list.CommaText()), c.CommaText);
    Library.VCLStringListClear(list.Handle());
    EXPECT_EQ(list.Count(), 0);
  }
}

TEST_F(Strings, ListsGiveAndTakeParameters) {
  THostList list(Library);
  list.SetCommaText("\"a b=c d\",seul,v=");
  const THostString name(Library, "A B"), value(Library, "avant");
  Library.VCLStringListGetParam(list.Handle(), name.Handle(), value.Handle());
  EXPECT_EQ(value.Text(), "c d");
  Library.VCLStringListSetParam(list.Handle(), name.Handle(), name.Handle());
  EXPECT_EQ(list.CommaText(), "\"a b=A B\",seul,v=");
}

TEST_F(Strings, IndexesBelowOneGiveNothingAndPastTheEndRaise) {
  const THostList lines(Library, {"a", "b", "c"});
  const THostList none(Library);
  const struct {
    const THostList& List;
    int Index;
    const char* Text;  ///< afterwards; null where it raises
  } cases[] = {{lines, INT_MIN, "avant"}, {lines, 0, "avant"}, {lines, 1, "b"},
               {lines, 2, "c"},           {lines, 3, nullptr}, {lines, INT_MAX, nullptr},
               {none, 0, "avant"},        {none, 1, nullptr}};
  // Again and again: what a cut-off call would leave behind adds up.
  for (int round = 0; round < 50; ++round) {
    for (const auto& c : cases) {
      const THostString line(Library, "avant");
      EXPECT_EQ(Raises([&] { Library.VCLStringListGet(c.List.Handle(), c.Index, line.Handle()); }),
                !c.Text);
      EXPECT_EQ(line.Text(), c.Text ? c.Text : "avant") << c.Index;
    }
  }
  EXPECT_FALSE(Raises([&] { Library.VCLStringListGet(lines.Handle(), 9, nullptr); }));
}

}  // namespace
