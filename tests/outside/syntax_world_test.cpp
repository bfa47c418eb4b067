#include <array>

#include "outside/syntax_test.h"
#include "outside/watchdog.h"
#include "user/say.h"

/// The assistant's dialogs in a world that does not behave: calls within calls, windows and the
/// library's objects that go away under them, databases that are none.
class SyntaxWorld : public TSyntaxTest {
 protected:
  /// A dialog, or one on top of another, and the call that leads to it.
  struct TSituation {
    const char* Name;
    const char* Bottom;
    std::function<void(SyntaxWorld&)> Call;
    TScript Open;  ///< from the bottom dialog to the topmost
  };
  static const std::vector<TSituation> Situations;

  void CallAssistant() {
    Cursor = 3;
    Library->VCLSyntaxHelpBox("c.Ajouter 1, 2", &Cursor, &Result, "c=Compte");
  }
  void CallPicker() { Library->VCLSyntaxConstHelpBox("c.Ajouter 1, 2", &Result); }
  void CallEditor() { Library->VCLSyntaxTypesBox("c.Ajouter 1, 2", &Result); }

  bool AnyDialogShown() const {
    for (const HWND window : TopWindows(GetCurrentProcessId()))
      if (Shown(window) && ClassOf(window).starts_with("TDlg")) return true;
    return false;
  }
  /// Opens the situation, has the interruption happen, and expects the call to end as cancelled.
  void Interrupt(const TSituation& situation, const std::function<void()>& work) {
    TInterruption interruption(work);
    Result = nullptr;
    During([&] { situation.Call(*this); },
           [&](TScriptedUser& user) {
             TFormDriver form = user.WaitForForm(situation.Bottom);
             situation.Open(user, form);
             interruption.Happen(user);
             user.WaitUntil("all dialogs to go", [&] { return !AnyDialogShown(); });
           });
    EXPECT_STREQ(Result, "c.Ajouter 1, 2");
    EXPECT_EQ(Cursor, 3);
    EXPECT_TRUE(IsWindowEnabled(MainWindow));
  }
  void ExpectService() {
    SetForegroundWindow(MainWindow);
    const TAssisted served = Assist("x = ZEF.Nom", 6, [](TScriptedUser&, TFormDriver& form) {
      form.Select("BoxMethod", "Compte");
    });
    EXPECT_EQ(served, (TAssisted{"x = ZEF.Compte", 14}));
  }

  int Cursor = 3;
  const char* Result = nullptr;
};

const std::vector<SyntaxWorld::TSituation> SyntaxWorld::Situations{
    {"assistant", "TDlgSyntax", [](SyntaxWorld& world) { world.CallAssistant(); },
     [](TScriptedUser&, TFormDriver& form) { form.Select("BoxMethod", "Fermer()"); }},
    {"picker over the assistant", "TDlgSyntax", [](SyntaxWorld& world) { world.CallAssistant(); },
     [](TScriptedUser& user, TFormDriver& form) {
       form.DoubleClickItem("ListParam", "[style]");
       user.WaitForForm("TDlgSyntaxConst").ToggleItem("ListConst", "Gras");
     }},
    {"assistant over the assistant", "TDlgSyntax",
     [](SyntaxWorld& world) { world.CallAssistant(); },
     [](TScriptedUser& user, TFormDriver& form) {
       form.Select("ListParam", "montant");
       form.Click("ButRecall");
       user.WaitUntil("the nested assistant",
                      [&] { return user.WaitForForm("TDlgSyntax").Handle() != form.Handle(); });
     }},
    {"picker", "TDlgSyntaxConst", [](SyntaxWorld& world) { world.CallPicker(); },
     [](TScriptedUser&, TFormDriver& form) { form.Fill("EditResult", "Gras"); }},
    {"editor", "TDlgSyntaxTypes", [](SyntaxWorld& world) { world.CallEditor(); },
     [](TScriptedUser&, TFormDriver& form) { form.Fill("EditNew", "x"); }},
};

TEST_F(SyntaxWorld, FreedUnderItsDialogsTheLibraryEndsThemAsCancelled) {
  for (const TSituation& situation : Situations) {
    SCOPED_TRACE(situation.Name);
    Interrupt(situation, [this] { Library->VCLFree(); });
    EXPECT_EQ(Library->VCLSyntaxGetNewTypes(nullptr), 0);
    ExpectService();
  }
}

TEST_F(SyntaxWorld, DialogsGoWithTheMainWindowOfTheHost) {
  for (const TSituation& situation : Situations) {
    SCOPED_TRACE(situation.Name);
    Library->VCLFree();
    const HWND owner = CreateWindowExW(0, L"STATIC", L"hôte", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0,
                                       0, 700, 500, nullptr, nullptr, nullptr, nullptr);
    Library->VCLSetMainWindowHandle(owner);
    Interrupt(situation, [owner] { DestroyWindow(owner); });
    Library->VCLSetMainWindowHandle(MainWindow);
    ExpectService();
  }
}

TEST_F(SyntaxWorld, CallsWithinACallAreAnsweredAsCancelled) {
  for (const TSituation& situation : Situations) {
    SCOPED_TRACE(situation.Name);
    std::array<std::string, 4> answers;
    int cursor = 1;
    TInterruption interruption([&] {
      const char* text = nullptr;
      Library->VCLSyntaxHelpBox("ligne", &cursor, &text, nullptr);
      answers[0] = Say(text);
      Library->VCLSyntaxConstHelpBox("valeur", &text);
      answers[1] = Say(text);
      Library->VCLSyntaxTypesBox("a=b", &text);
      answers[2] = Say(text);
      answers[3] = Say(Library->VCLSyntaxIsMethod("msgbox"), Library->VCLSyntaxIsConstant("GRAS"));
    });
    WithDialog(
        situation.Bottom, [&] { situation.Call(*this); },
        [&](TScriptedUser& user, TFormDriver& form) {
          interruption.Happen(user);
          EXPECT_FALSE(form.Gone());
        });
    EXPECT_EQ(answers, (std::array<std::string, 4>{"ligne", "valeur", "a=b", "11"}));
    EXPECT_EQ(cursor, 1);
    EXPECT_STREQ(Result,
                 std::string_view(situation.Name) == "editor" ? "c.Ajouter,1,2" : "c.Ajouter 1, 2");
  }
}

TEST_F(SyntaxWorld, TakesNullForEveryArgument) {
  const auto confirm = [](TScriptedUser&, TFormDriver&) {};
  EXPECT_EQ(Library->VCLSyntaxGetNewTypes(nullptr), 0);
  EXPECT_EQ(Library->VCLSyntaxIsMethod(nullptr), 0);
  EXPECT_EQ(Library->VCLSyntaxIsConstant(nullptr), 0);
  WithDialog(
      "TDlgSyntax", [&] { Library->VCLSyntaxHelpBox(nullptr, nullptr, nullptr, nullptr); },
      confirm);
  WithDialog(
      "TDlgSyntaxConst", [&] { Library->VCLSyntaxConstHelpBox(nullptr, nullptr); }, confirm);
  WithDialog(
      "TDlgSyntaxTypes", [&] { Library->VCLSyntaxTypesBox(nullptr, nullptr); }, confirm);
  const char* result = nullptr;
  WithDialog(
      "TDlgSyntax", [&] { Library->VCLSyntaxHelpBox(nullptr, nullptr, &result, nullptr); },
      [](TScriptedUser&, TFormDriver& form) { form.Fill("EditLigne", "ZEF.nom"); });
  EXPECT_STREQ(result, "ZEF.Nom");
}

TEST_F(SyntaxWorld, LoadedTwiceKeepsItsAssistantUntilTheLastUnload) {
  {
    const TLibrary second;
    ExpectService();
  }
  ExpectService();
}

TEST_F(SyntaxWorld, WorksOnALineOfAMegabyte) {
  const std::string text(1 << 20, 'a');
  const std::string lines[] = {"c.Ajouter 1, \"" + text + "\"",
                               "x = \"" + text + "\" & c.Ajouter(1)",
                               "c.Ajouter(1) & \"" + text + "\""};
  for (const std::string& line : lines) {
    const size_t member = line.find(".A");
    const ULONGLONG start = GetTickCount64();
    const TAssisted result = Assist(
        line, static_cast<int>(member) + 1,
        [](TScriptedUser&, TFormDriver& form) {
          form.Select("ListParam", "montant");
          form.Fill("EditValue", "23");
        },
        "c=Compte");
    std::printf("a line of 1 MB took %d ms\n", static_cast<int>(GetTickCount64() - start));
    std::string expected = line;
    expected.replace(member + 9, 1, "23");
    EXPECT_TRUE(result.Line == expected) << result.Line.size() << " of " << expected.size();
  }
}

TEST_F(SyntaxWorld, OpensOnAnyDatabase) {
  TWatchdog::Allow(300);
  const std::string sample = SampleDatabase;
  std::string nested = "<objects>";
  for (int depth = 0; depth < 100000; ++depth) nested += "<object name=\"A\">";
  constexpr int Types = 20000;
  std::string huge = "<objects>";
  for (int type = 0; type < Types; ++type)
    huge += Say("<object name=\"Type", type, "\"><comment>", std::string(2500, 'c'),
                "</comment><data name=\"D\" type=\"E\"/></object>");
  huge += "</objects>";
  const struct {
    const char* What;
    std::optional<std::string> Bytes;
    LRESULT Types;
  } cases[] = {
      {"missing", std::nullopt, 0},
      {"empty", "", 0},
      {"binary", std::string("\0\1\2\xFF<objects>", 13), 0},
      {"cut short", sample.substr(0, sample.size() / 2), 0},
      {"of another root", "<autre><object name=\"A\"/></autre>", 0},
      {"never closed", nested, 0},
      {"with an entity bomb",
       "<!DOCTYPE objects [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;\">"
       "<!ENTITY c \"&b;&b;&b;&b;&b;&b;&b;&b;\"><!ENTITY d \"&c;&c;&c;&c;&c;&c;&c;&c;\">]>"
       "<objects><type name=\"T\">&d;</type></objects>",
       0},
      {"with an external entity",
       "<!DOCTYPE objects SYSTEM \"http://127.0.0.1:9/x.dtd\"><objects><type "
       "name=\"T\"/></objects>",
       0},
      {"in windows-1252",
       "<?xml version=\"1.0\" encoding=\"windows-1252\"?><objects><type "
       "name=\"\xC9t\xE9\"/></objects>",
       1},
      {"huge", huge, Types},
      {"whole again", sample, 9},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.What);
    Database.reset();
    if (each.Bytes) Database.emplace(*each.Bytes);
    const ULONGLONG start = GetTickCount64();
    LRESULT types = -1;
    const TAssisted result = Assist("x = ZEF.Nom", 6, [&](TScriptedUser&, TFormDriver& form) {
      std::printf("%s: %d ms\n", each.What, static_cast<int>(GetTickCount64() - start));
      types = Ask(form.Control("BoxType"), CB_GETCOUNT);
    });
    EXPECT_EQ(types, each.Types);
    EXPECT_EQ(result.Line, "x = ZEF.Nom");
    EXPECT_EQ(Pick("A+B", [](TScriptedUser&, TFormDriver&) {}), "A+B");
    EXPECT_EQ(EditTypes("a=b", [](TScriptedUser&, TFormDriver&) {}), "a=b");
  }
}
