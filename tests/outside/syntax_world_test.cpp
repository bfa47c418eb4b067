#include <array>

#include "outside/syntax_test.h"
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

TEST_F(SyntaxWorld, EveryWayOutConfirmsOrHandsBackWhatWasGiven) {
  const struct {
    const char* Form;
    TCall Call;
    std::function<void(TFormDriver&)> Act;
    const char* Confirmed;
    int CursorAfter;
    std::optional<std::string> NewTypes;
  } dialogs[] = {
      {"TDlgSyntax",
       [this] { CallAssistant(); },
       [](TFormDriver& form) { form.Select("BoxMethod", "Fermer()"); },
       "c.Fermer 1, 2",
       13,
       {}},
      {"TDlgSyntaxConst",
       [this] { CallPicker(); },
       [](TFormDriver& form) { form.Fill("EditResult", "Gras"); },
       "Gras",
       3,
       {}},
      {"TDlgSyntaxTypes", [this] { CallEditor(); },
       [](TFormDriver& form) {
         form.Fill("EditNew", "x");
         form.Click("BtnAdd");
       },
       "c.Ajouter,1,2,x=Cpt", 3, "c.Ajouter,1,2,x=Cpt"},
  };
  for (const auto& dialog : dialogs)
    for (const TWayOut& way : WaysOut) {
      SCOPED_TRACE(Say(dialog.Form, ' ', way.Name));
      Cursor = 3;
      WithDialog(dialog.Form, dialog.Call, [&](TScriptedUser&, TFormDriver& form) {
        EXPECT_FALSE(IsWindowEnabled(MainWindow));
        dialog.Act(form);
        way.Leave(form);
        form.WaitGone();
      });
      EXPECT_EQ(FromAnsi(Result), way.Confirms ? dialog.Confirmed : "c.Ajouter 1, 2");
      EXPECT_EQ(Cursor, way.Confirms ? dialog.CursorAfter : 3);
      EXPECT_EQ(NewTypes(), way.Confirms ? dialog.NewTypes : std::nullopt);
      EXPECT_EQ(GetForegroundWindow(), MainWindow);
    }
}

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

TEST_F(SyntaxWorld, OpensOnAnyDatabaseAndALineOfAMegabyte) {
  const std::string sample = SampleDatabase;
  const struct {
    const char* What;
    std::optional<std::string> Bytes;
    LRESULT Types;
  } cases[] = {
      {"missing", std::nullopt, 0},
      {"binary", std::string("\0\1\2\xFF<objects>", 13), 0},
      {"cut short", sample.substr(0, sample.size() / 2), 0},
      {"of another root", "<autre><object name=\"A\"/></autre>", 0},
      {"with a document type",
       "<!DOCTYPE objects SYSTEM \"zef.dtd\"><objects><type name=\"T\"/></objects>", 1},
      {"whole again", sample, 9},
  };
  const std::string text(1 << 20, 'a');
  for (const auto& each : cases) {
    SCOPED_TRACE(each.What);
    Database.reset();
    if (each.Bytes) Database.emplace(*each.Bytes);
    const std::string line = "x = ZEF.Nom & \"" + text + "\"";
    const TAssisted result = Assist(line, 6, [&](TScriptedUser&, TFormDriver& form) {
      EXPECT_EQ(Ask(form.Control("BoxType"), CB_GETCOUNT), each.Types);
    });
    EXPECT_TRUE(result.Line == line) << result.Line.size();
    EXPECT_EQ(Pick("A+B", [](TScriptedUser&, TFormDriver&) {}), "A+B");
    EXPECT_EQ(EditTypes("a=b", [](TScriptedUser&, TFormDriver&) {}), "a=b");
  }
}
