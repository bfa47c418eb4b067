#include <gtest/gtest.h>

#include <string>

#include "script_words.h"

// K keyword, N name, T text, C comment, each followed by the word between bars.
static std::wstring Shown(std::wstring_view line) {
  std::wstring shown;
  for (const TWord& word : SplitScriptLine(line)) {
    shown += L"NKTC"[static_cast<int>(word.Kind)];
    shown += L"|" + std::wstring(line.substr(word.Start, word.Length)) + L"|";
  }
  return shown;
}

TEST(HostWords, SplitsALine) {
  const struct {
    const wchar_t *Line, *Words;
  } cases[] = {
      {L"", L""},
      {L"If x > 0 Then", L"K|If|N|x|K|Then|"},
      {L"ENDIF end if", L"N|ENDIF|K|end|K|if|"},
      {L"a.Item(2).Nom", L"N|a|N|.Item|N|.Nom|"},
      // A member keeps its name even when it is a keyword elsewhere.
      {L"err.Error", L"N|err|N|.Error|"},
      {L"x = 1.5 + 2e3 + &H1F", L"N|x|N|H1F|"},
      {L"y = \"l'an\" 'note", L"N|y|T|\"l'an\"|C|'note|"},
      {L"\"a \"\"b\"\" c\" d", L"T|\"a \"|T|\"b\"|T|\" c\"|N|d|"},
      {L"\"open 'x", L"T|\"open 'x|"},
      {L"x = 1 : Rem tout \"cela\"", L"N|x|C|Rem tout \"cela\"|"},
      {L"Remise = remarque_1", L"N|Remise|N|remarque_1|"},
      {L"9b . .5 .", L""},
  };
  for (const auto& each : cases) EXPECT_EQ(Shown(each.Line), each.Words);
}
