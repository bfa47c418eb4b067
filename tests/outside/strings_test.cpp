#include <gtest/gtest.h>

#include "outside/host_exception.h"
#include "outside/host_objects.h"
#include "user/window.h"

/// What lists do has tests of its own; here are the exports and the host's code page.
class Strings : public testing::Test {
 protected:
  const TLibrary Library;
};

TEST_F(Strings, HoldAndShareTexts) {
  const THostString string(Library, "ab");
  Library.VCLAnsiStringSet(string.Handle(), string.Characters());
  Library.VCLAnsiStringConcat(string.Handle(), string.Handle());
  EXPECT_EQ(string.Text(), "abab") << "out of itself";
  // The host may hold the characters of either side while the other changes.
  for (const bool changeCopy : {false, true}) {
    const THostString original(Library, "abab"), copy(Library, "avant");
    Library.VCLAnsiStringCopy(copy.Handle(), original.Handle());
    const THostString& kept = changeCopy ? original : copy;
    const THostString& changed = changeCopy ? copy : original;
    const char* const characters = kept.Characters();
    Library.VCLAnsiStringConcat(changed.Handle(), kept.Handle());
    EXPECT_EQ(kept.Characters(), characters);
    EXPECT_EQ(kept.Text() + ' ' + changed.Text(), "abab abababab");
  }
}

TEST_F(Strings, ListsCompareAsTheUserAndTheCodePageDo) {
  const struct {
    unsigned char Told, Sorted;
    std::vector<std::pair<const char*, int>> Added;  ///< lines with the index that they get
    const char* CommaText;
  } cases[] = {
      {0, 0, {{"b", 0}, {"été", 1}, {"B", 0}, {"ÉTÉ", 1}, {"", 2}}, "b,été,"},
      {0, 0, {{"ж", 0}, {"ａ", 1}, {"Ж", 0}, {"ーソ", 2}, {"ソー", 3}}, "ж,ａ,ーソ,ソー"},
      {1, 0, {{"b", 0}, {"B", 1}, {"b", 0}}, "b,B"},
      // Accented letters stand beside their plain ones.
      {0, 1, {{"f", 0}, {"e", 0}, {"é", 1}, {"É", 1}, {"éa", 2}, {"ez", 3}}, "e,é,éa,ez,f"},
      {0, 1, {{"ж", 0}, {"я", 1}, {"а", 0}, {"Б", 1}, {"Ж", 2}}, "а,Б,ж,я"},
  };
  for (const auto& [told, sorted, added, commaText] : cases) {
    // No host can say what its code page lacks.
    if (FromAnsi(Ansi(commaText)) != commaText) continue;
    SCOPED_TRACE(commaText);
    const THostList list(Library, {}, told, sorted);
    for (const auto& [line, index] : added) EXPECT_EQ(list.Add(Ansi(line)), index) << line;
    EXPECT_EQ(FromAnsi(list.CommaText()), commaText);
    Library.VCLStringListClear(list.Handle());
    EXPECT_EQ(list.Count(), 0);
  }
}

TEST_F(Strings, IndexesBelowOneGiveNothingAndPastTheEndRaise) {
  const THostList lines(Library, {"a", "b", "c"}), none(Library);
  const struct {
    const THostList& List;
    int Index;
    const char* Text;  ///< afterwards; null where it raises
  } cases[] = {{lines, INT_MIN, "avant"}, {lines, 0, "avant"}, {lines, 1, "b"},
               {lines, 2, "c"},           {lines, 3, nullptr}, {lines, INT_MAX, nullptr},
               {none, 0, "avant"},        {none, 1, nullptr}};
  for (const auto& [list, index, text] : cases) {
    const THostString line(Library, "avant");
    const auto get = [&] { Library.VCLStringListGet(list.Handle(), index, line.Handle()); };
    EXPECT_EQ(THostHandler::CutsOff(get, EXCEPTION_ARRAY_BOUNDS_EXCEEDED), !text);
    EXPECT_EQ(line.Text(), text ? text : "avant") << index;
  }
}
