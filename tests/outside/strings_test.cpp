#include <gtest/gtest.h>
#include <setjmp.h>

#include <functional>
#include <random>

#include "outside/host_strings.h"
#include "user/window.h"

namespace {

/// Where a structured exception takes the host: out of the library's frames, back to its own.
struct TLanding {
  jmp_buf Place;
  DWORD Code;
};
TLanding landing;

[[noreturn]] void Land() { longjmp(landing.Place, 1); }

LONG CALLBACK Divert(EXCEPTION_POINTERS* exception) {
  if (exception->ExceptionRecord->ExceptionCode != EXCEPTION_ARRAY_BOUNDS_EXCEEDED)
    return EXCEPTION_CONTINUE_SEARCH;
  landing.Code = exception->ExceptionRecord->ExceptionCode;
  // The jump itself is made once the system is done with the exception.
  CONTEXT& context = *exception->ContextRecord;
  context.Eip = static_cast<DWORD>(reinterpret_cast<std::uintptr_t>(&Land));
  context.Esp = (context.Esp & ~DWORD{15}) - sizeof(void*);
  return EXCEPTION_CONTINUE_EXECUTION;
}

/// The code of the structured exception that the call raises, which never returns then; else 0.
DWORD RaisedBy(const std::function<void()>& call) {
  void* const handler = AddVectoredExceptionHandler(TRUE, Divert);
  landing.Code = 0;
  if (setjmp(landing.Place) == 0) call();
  RemoveVectoredExceptionHandler(handler);
  return landing.Code;
}

class Strings : public testing::Test {
 protected:
  /// No host can say what its code page lacks.
  static bool InCodePage(std::string_view utf8) { return FromAnsi(Ansi(utf8)) == utf8; }

  /// What no live object is behind.
  std::vector<void*> WrongHandles() {
    THostString* freedString = new THostString(Library, "libre");
    THostList* freedList = new THostList(Library, {"libre"});
    std::vector<void*> handles = {
        nullptr,  freedString->Handle(),      freedList->Handle(),
        FForeign, reinterpret_cast<void*>(1), reinterpret_cast<void*>(0xFFFFFFFF)};
    delete freedString;
    delete freedList;
    return handles;
  }

  const TLibrary Library;

 private:
  char FForeign[64] = "une autre chose";
};

TEST_F(Strings, HoldTextsOfAnyLength) {
  THostString string(Library);
  ASSERT_NE(string.Characters(), nullptr);
  EXPECT_STREQ(string.Characters(), "");
  EXPECT_EQ(string.Characters(), THostString(Library).Characters()) << "one empty text for all";

  std::string every;
  for (int byte = 1; byte < 256; ++byte) every += static_cast<char>(byte);
  const std::string texts[] = {Ansi("Crédit"), every, std::string(5'000'000, 'x'), "", "a"};
  for (const auto& text : texts) {
    string.Set(text.c_str());
    EXPECT_TRUE(string.Text() == text) << text.size() << " bytes";
  }
  string.Set(string.Characters());
  EXPECT_EQ(string.Text(), "a") << "its own text";
  string.Set(nullptr);
  EXPECT_EQ(string.Text(), "");
}

TEST_F(Strings, CopyIsSharedUntilOneSideChanges) {
  const std::function<void(THostString&)> changes[] = {
      [](THostString& side) { side.Set("autre"); },
      [this](THostString& side) {
        const THostString more(Library, " plus");
        Library.VCLAnsiStringConcat(side.Handle(), more.Handle());
      },
      [this](THostString& side) {
        const THostList list(Library, {"ligne"});
        Library.VCLStringListGetCommaText(list.Handle(), side.Handle());
      },
  };
  for (const auto& change : changes) {
    for (const bool changeCopy : {false, true}) {
      THostString original(Library, "un texte");
      THostString copy(Library, "ancien");
      Library.VCLAnsiStringCopy(copy.Handle(), original.Handle());
      const char* const shared = original.Characters();
      EXPECT_EQ(copy.Characters(), shared);
      const THostString& kept = changeCopy ? original : copy;
      change(changeCopy ? copy : original);
      EXPECT_EQ(kept.Characters(), shared);
      EXPECT_EQ(kept.Text(), "un texte");
      EXPECT_NE((changeCopy ? copy : original).Text(), "un texte");
    }
  }
}

TEST_F(Strings, AreAppendedAlsoToThemselves) {
  THostString string(Library, "ab");
  const THostString other(Library, "\xE9");
  Library.VCLAnsiStringConcat(string.Handle(), other.Handle());
  for (int round = 0; round < 10; ++round)
    Library.VCLAnsiStringConcat(string.Handle(), string.Handle());
  std::string expected;
  for (int round = 0; round < 1024; ++round) expected += "ab\xE9";
  EXPECT_EQ(string.Text(), expected);
  EXPECT_EQ(other.Text(), "\xE9");
}

TEST_F(Strings, KeepTheirTextWhenMemoryIsShort) {
  constexpr std::size_t Start = 1'000'000;
  constexpr SIZE_T Block = 16 << 20;
  const THostString string(Library, std::string(Start, 'x').c_str());
  std::vector<void*> taken;
  while (void* block = VirtualAlloc(nullptr, Block, MEM_RESERVE, PAGE_NOACCESS))
    taken.push_back(block);
  for (int round = 0; round < 10; ++round)
    Library.VCLAnsiStringConcat(string.Handle(), string.Handle());
  for (void* block : taken) VirtualFree(block, 0, MEM_RELEASE);
  const std::string text = string.Text();
  EXPECT_LT(text.size(), Block);
  EXPECT_EQ(text.size() % Start, 0U);
  EXPECT_EQ(text.find_first_not_of('x'), std::string::npos);
}

TEST_F(Strings, RefuseWhatIsNoHandle) {
  THostString live(Library, "vif");
  for (void* wrong : WrongHandles()) {
    SCOPED_TRACE(wrong);
    const auto string = static_cast<ZefString>(wrong);
    Library.VCLAnsiStringCopy(live.Handle(), string);
    Library.VCLAnsiStringCopy(string, live.Handle());
    Library.VCLAnsiStringConcat(live.Handle(), string);
    Library.VCLAnsiStringConcat(string, live.Handle());
    Library.VCLAnsiStringSet(string, "x");
    const char* text = "avant";
    Library.VCLAnsiStringGet(string, &text);
    EXPECT_EQ(text, nullptr);
    Library.VCLAnsiStringFree(string);
  }
  // A list is no string, nor the reverse.
  THostList list(Library, {"ligne"});
  Library.VCLAnsiStringFree(reinterpret_cast<ZefString>(list.Handle()));
  Library.VCLStringListFree(reinterpret_cast<ZefStringList>(live.Handle()));
  EXPECT_EQ(list.CommaText(), "ligne");
  Library.VCLAnsiStringGet(live.Handle(), nullptr);
  Library.VCLAnsiStringCreate(nullptr);
  EXPECT_EQ(live.Text(), "vif");
}

TEST_F(Strings, ListsRefuseWhatIsNoHandle) {
  THostList live(Library, {"nom=valeur"});
  THostString text(Library, "nom");
  for (void* wrong : WrongHandles()) {
    SCOPED_TRACE(wrong);
    const auto list = static_cast<ZefStringList>(wrong);
    const auto string = static_cast<ZefString>(wrong);
    EXPECT_EQ(Library.VCLStringListAdd(list, "x"), -1);
    EXPECT_EQ(Library.VCLStringListCount(list), -1);
    Library.VCLStringListClear(list);
    Library.VCLStringListFree(list);
    Library.VCLStringListGet(list, 5, text.Handle());
    Library.VCLStringListGet(live.Handle(), 5, string);
    Library.VCLStringListGetParam(list, text.Handle(), text.Handle());
    Library.VCLStringListGetParam(live.Handle(), string, text.Handle());
    Library.VCLStringListGetParam(live.Handle(), text.Handle(), string);
    Library.VCLStringListSetParam(list, text.Handle(), text.Handle());
    Library.VCLStringListSetParam(live.Handle(), string, text.Handle());
    Library.VCLStringListSetParam(live.Handle(), text.Handle(), string);
    Library.VCLStringListGetCommaText(list, text.Handle());
    Library.VCLStringListGetCommaText(live.Handle(), string);
    Library.VCLStringListSetCommaText(list, text.Handle());
    Library.VCLStringListSetCommaText(live.Handle(), string);
  }
  Library.VCLStringListCreate(nullptr, false, false, false);
  EXPECT_EQ(text.Text(), "nom");
  EXPECT_EQ(live.CommaText(), "nom=valeur");
}

TEST_F(Strings, ListsNeverHoldDuplicates) {
  struct TAdded {
    const char* Line;
    int Index;
  };
  const struct {
    TSorting Sorting;
    TLetterCase LetterCase;
    std::vector<TAdded> Added;
    const char* CommaText;
  } cases[] = {
      {TSorting::InOrderOfArrival,
       TLetterCase::Ignored,
       {{"b", 0}, {"été", 1}, {"a", 2}, {"B", 0}, {"ÉTÉ", 1}, {"", 3}, {nullptr, 3}},
       "b,été,a,"},
      {TSorting::InOrderOfArrival,
       TLetterCase::Ignored,
       {{"ж", 0}, {"ａ", 1}, {"Ж", 0}, {"Ａ", 1}, {"ーソ", 2}, {"ソー", 3}},
       "ж,ａ,ーソ,ソー"},
      {TSorting::InOrderOfArrival, TLetterCase::Told, {{"b", 0}, {"B", 1}, {"b", 0}}, "b,B"},
      // The user's order: accented letters stand beside their plain ones.
      {TSorting::Sorted,
       TLetterCase::Ignored,
       {{"f", 0}, {"e", 0}, {"é", 1}, {"É", 1}, {"z", 3}, {"E", 0}, {"éa", 2}, {"ez", 3}},
       "e,é,éa,ez,f,z"},
      {TSorting::Sorted,
       TLetterCase::Ignored,
       {{"ж", 0}, {"я", 1}, {"а", 0}, {"Б", 1}, {"Ж", 2}},
       "а,Б,ж,я"},
      {TSorting::Sorted, TLetterCase::Told, {{"b", 0}, {"a", 0}, {"b", 1}}, "a,b"},
  };
  for (const auto& c : cases) {
    if (!InCodePage(c.CommaText)) continue;
    for (const bool duplicates : {false, true}) {
      SCOPED_TRACE(c.CommaText);
      THostList list(Library, c.Sorting, c.LetterCase, duplicates);
      for (const auto& [line, index] : c.Added)
        EXPECT_EQ(Library.VCLStringListAdd(list.Handle(), line ? Ansi(line).c_str() : nullptr),
                  index)
            << (line ? line : "(null)");
      EXPECT_EQ(FromAnsi(list.CommaText()), c.CommaText);
      Library.VCLStringListClear(list.Handle());
      EXPECT_EQ(list.Count(), 0);
      EXPECT_EQ(list.CommaText(), "");
    }
  }
}

TEST_F(Strings, LinesAreReadFromTheSecondOn) {
  const THostList list(Library, {"premi\xE8re", "deuxi\xE8me", "troisi\xE8me"});
  const struct {
    int Index;
    const char* Text;
  } cases[] = {
      {0, "avant"}, {-1, "avant"}, {INT_MIN, "avant"}, {1, "deuxi\xE8me"}, {2, "troisi\xE8me"}};
  for (const auto& c : cases) {
    const THostString line(Library, "avant");
    Library.VCLStringListGet(list.Handle(), c.Index, line.Handle());
    EXPECT_EQ(line.Text(), c.Text) << c.Index;
  }
}

TEST_F(Strings, IndexPastTheEndRaisesWhatAnyHostCanCatch) {
  const THostList lines(Library, {"a", "b", "c"});
  const THostList none(Library);
  const THostString line(Library, "avant");
  const struct {
    const THostList& List;
    int Index;
  } cases[] = {{lines, 3}, {lines, 4}, {lines, INT_MAX}, {none, 1}};
  // Again and again: what a cut-off call would leave behind adds up.
  for (int round = 0; round < 50; ++round) {
    for (const auto& c : cases) {
      const DWORD raised =
          RaisedBy([&] { Library.VCLStringListGet(c.List.Handle(), c.Index, line.Handle()); });
      EXPECT_EQ(raised, static_cast<DWORD>(EXCEPTION_ARRAY_BOUNDS_EXCEEDED)) << c.Index;
      EXPECT_EQ(line.Text(), "avant");
    }
  }
  EXPECT_EQ(RaisedBy([&] { Library.VCLStringListGet(none.Handle(), 0, line.Handle()); }), 0U);
  EXPECT_EQ(RaisedBy([&] { Library.VCLStringListGet(lines.Handle(), 9, nullptr); }), 0U);
  Library.VCLStringListGet(lines.Handle(), 2, line.Handle());
  EXPECT_EQ(line.Text(), "c");
}

TEST_F(Strings, ParametersAreFoundSetAndRemovedByName) {
  const std::string start = "prénom=Léa,ville=Nice=06,seul,ville=Lyon,vide=";
  if (!InCodePage(start)) GTEST_SKIP() << "the host's code page lacks the accents";
  const struct {
    TLetterCase LetterCase;
    const char* Name;
    const char* Found;
    const char* Set;
    const char* CommaText;
  } cases[] = {
      {TLetterCase::Ignored, "PRÉNOM", "Léa", "Zoé",
       "prénom=Zoé,ville=Nice=06,seul,ville=Lyon,vide="},
      {TLetterCase::Told, "Ville", "", "Metz",
       "prénom=Léa,ville=Nice=06,seul,ville=Lyon,vide=,Ville=Metz"},
      {TLetterCase::Ignored, "ville", "Nice=06", "", "prénom=Léa,seul,ville=Lyon,vide="},
      {TLetterCase::Ignored, "seul", "", "1",
       "prénom=Léa,ville=Nice=06,seul,ville=Lyon,vide=,seul=1"},
      {TLetterCase::Ignored, "vide", "", "plein",
       "prénom=Léa,ville=Nice=06,seul,ville=Lyon,vide=plein"},
      {TLetterCase::Ignored, "inconnu", "", "", start.c_str()},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.Name);
    THostList list(Library, TSorting::InOrderOfArrival, c.LetterCase);
    list.SetCommaText(Ansi(start));
    const THostString name(Library, Ansi(c.Name).c_str());
    const THostString value(Library, "avant");
    Library.VCLStringListGetParam(list.Handle(), name.Handle(), value.Handle());
    EXPECT_EQ(FromAnsi(value.Text()), c.Found);
    const THostString set(Library, Ansi(c.Set).c_str());
    Library.VCLStringListSetParam(list.Handle(), name.Handle(), set.Handle());
    EXPECT_EQ(FromAnsi(list.CommaText()), c.CommaText);
  }
}

TEST_F(Strings, RandomListsComeBackFromTheirCommaText) {
  THostList spoken(Library);
  for (const char* line : {"a b", "c"}) spoken.Add(line);
  EXPECT_EQ(spoken.CommaText(), "\"a b\",c");

  std::mt19937 random(7);
  const std::string letters = "ab\xE9 ,\"=\t\r\n'";
  for (int round = 0; round < 300; ++round) {
    const auto sorting = round % 2 ? TSorting::Sorted : TSorting::InOrderOfArrival;
    THostList list(Library, sorting, TLetterCase::Told);
    for (auto lines = random() % 6; lines > 0; --lines) {
      std::string line;
      for (auto length = random() % 6; length > 0; --length)
        line += letters[random() % letters.size()];
      list.Add(line);
    }
    THostList back(Library, sorting, TLetterCase::Told);
    back.Add(
        "remplac\xE9"
        "e");
    back.SetCommaText(list.CommaText());
    ASSERT_EQ(back.Count(), list.Count()) << list.CommaText();
    const THostString here(Library), there(Library);
    for (int index = 1; index < list.Count(); ++index) {
      Library.VCLStringListGet(list.Handle(), index, here.Handle());
      Library.VCLStringListGet(back.Handle(), index, there.Handle());
      ASSERT_EQ(there.Text(), here.Text()) << list.CommaText();
    }
    ASSERT_EQ(back.CommaText(), list.CommaText());
  }
}

}  // namespace
