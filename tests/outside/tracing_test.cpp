#include <climits>

#include "outside/outside_test.h"

class Traces : public TOutsideTest {
 protected:
  static HWND Bubble() { return FindWindowA("THintWindow", nullptr); }
  static HWND Window() { return FindWindowA("TDlgDebug", nullptr); }
  static HWND Memo() { return ControlNamed(Window(), "Memo"); }
  static int Ask(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return static_cast<int>(SendMessageW(Memo(), message, wParam, lParam));
  }
  void Add(int lines) const {
    for (int line = 0; line < lines; ++line) Library->VCLShowDebugText("ligne");
  }
  /// The last line is in the memo's view.
  static bool FollowsNewest() {
    RECT client;
    GetClientRect(Memo(), &client);
    const int last = Ask(EM_LINEINDEX, static_cast<WPARAM>(Ask(EM_GETLINECOUNT) - 1));
    const auto y = static_cast<short>(HIWORD(Ask(EM_POSFROMCHAR, static_cast<WPARAM>(last))));
    return y >= 0 && y < client.bottom;
  }
};

TEST_F(Traces, BubbleStandsOnTheMonitorWithinTheWidthGiven) {
  RECT screen{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &screen, 0);
  std::string words;
  for (int word = 0; word < 100000; ++word) words += "opération ";
  const std::string text = "Solde du compte à une date, avec les opérations pointées";
  const struct {
    std::string Text;
    POINT At;
    int MaxWidth;
  } bubbles[] = {{text, {300, 250}, 1000}, {text, {300, 250}, 100},
                 {text, {9, 9}, INT_MIN},  {std::string(200, 'm'), {9, 9}, 300},
                 {words, {0, 0}, 0},       {"", {9000, 9000}, INT_MAX},
                 {"abc", {9, 9}, 1},       {"Annuler", {INT_MAX, INT_MIN}, 0}};
  const HWND active = GetForegroundWindow();
  for (const auto& [said, at, maxWidth] : bubbles) {
    SCOPED_TRACE(said.substr(0, 20) + " within " + std::to_string(maxWidth));
    Library->VCLShowHint(MainWindow, Ansi(said).c_str(), at.x, at.y, maxWidth);
    ASSERT_TRUE(Shown(Bubble()));
    const RECT bounds = BoundsOf(Bubble());
    RECT common;
    IntersectRect(&common, &bounds, &screen);
    EXPECT_TRUE(EqualRect(&common, &bounds));
    EXPECT_TRUE(!PtInRect(&screen, at) || (bounds.left == at.x && bounds.top == at.y));
    EXPECT_TRUE(maxWidth <= 20 || bounds.right - bounds.left <= maxWidth);
    EXPECT_EQ(TextOf(Bubble()), said);
    EXPECT_EQ(GetForegroundWindow(), active);
  }
}

TEST_F(Traces, BubbleIsReplacedByTheNextAndNeverHidden) {
  Library->VCLShowHint(MainWindow, "un", 100, 100, 200);
  const HWND first = Bubble();
  EXPECT_EQ(GetWindow(first, GW_OWNER), MainWindow);
  Library->VCLHideHint();
  EXPECT_TRUE(Shown(first));
  Library->VCLShowHint(nullptr, "deux", 300, 300, 200);
  EXPECT_FALSE(IsWindow(first));
  const HWND second = Bubble();
  // Handed back its own window, it moves.
  Library->VCLShowHint(second, "trois", 400, 350, 200);
  EXPECT_EQ(Bubble(), second);
  EXPECT_EQ(TextOf(second), "trois");
  EXPECT_EQ(BoundsOf(second).left, 400);
  Library->VCLShowHint(first, "of a window that is gone", 100, 100, 200);
  EXPECT_EQ(Bubble(), nullptr);
  // The system knows only top windows as owners.
  const HWND inside = CreateWindowExW(0, L"STATIC", L"", WS_CHILD, 0, 0, 9, 9, MainWindow, nullptr,
                                      nullptr, nullptr);
  Library->VCLShowHint(inside, "quatre", 100, 100, 200);
  WhileIdle([&](TScriptedUser& user) {
    Sleep(300);
    EXPECT_TRUE(Shown(Bubble()));
    SendMessageW(inside, WM_CLOSE, 0, 0);
    user.WaitUntil("the bubble to go with its window", [] { return !Bubble(); });
  });
}

TEST_F(Traces, WindowIsHiddenOrMinimisedAndShownWhereTheUserLeftIt) {
  using TForm = TFormDriver;
  const struct {
    const char* What;
    std::function<void(TForm&)> Act;
    bool Minimised;
  } acts[] = {
      {"OK", [](TForm& form) { form.Click("ButtonOK"); }, false},
      {"close box", [](TForm& form) { form.CloseBox(); }, false},
      {"Cancel", [](TForm& form) { form.Click("ButtonCancel"); }, true},
      // F1, without a question mark, does as a Help button would.
      {"Escape", [](TForm& form) { form.Click("Clear"), form.Press(VK_F1), form.Press(VK_ESCAPE); },
       true},
      {"main", [this](TForm&) { SendMessageW(MainWindow, WM_SYSCOMMAND, SC_MINIMIZE, 0); }, false},
  };
  const HWND edit = HostEdit(MainWindow);
  POINT left{50, 60};
  THelpRequest asked{{}, HelpFile, HELP_CONTEXT, 0};
  for (const auto& [what, act, minimised] : acts) {
    SCOPED_TRACE(what);
    SetFocus(edit);
    Add(1);
    ShowWindow(Window(), SW_RESTORE);
    SetWindowPos(Window(), nullptr, left.x, left.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    WhileIdle([&, act = act](TScriptedUser& user) {
      TFormDriver form = user.WaitForForm("TDlgDebug");
      asked.Window = form.Handle();
      act(form);
      user.WaitUntil("it to go", [&] { return form.Gone() || IsIconic(form.Handle()); });
    });
    const bool withOwner = IsIconic(MainWindow) != FALSE;
    EXPECT_TRUE(minimised || withOwner || GetFocus() == edit);
    Add(1);
    EXPECT_EQ(IsIconic(Window()) != FALSE, minimised);
    EXPECT_NE(Shown(Window()), withOwner);
    if (withOwner) SendMessageW(MainWindow, WM_SYSCOMMAND, SC_RESTORE, 0);
    EXPECT_TRUE(Shown(Window()));
    EXPECT_TRUE(minimised ||
                (BoundsOf(Window()).left == left.x && BoundsOf(Window()).top == left.y));
    left.x += 10;
  }
  EXPECT_EQ(THelpRequest::All, std::vector{asked});
}

TEST_F(Traces, WindowFollowsTheNewestLineUnlessTheUserScrolledBack) {
  Add(10);
  // The scroll bar tells of the lines on screen, with no message served: the host may hang now.
  // Asking for the text would put them there.
  int first = 0, last = 0;
  GetScrollRange(Memo(), SB_VERT, &first, &last);
  EXPECT_EQ(last, 9);
  // Large enough for all of them, and small again.
  const RECT small = BoundsOf(Window());
  for (const LONG height : {600L, small.bottom - small.top}) {
    SetWindowPos(Window(), nullptr, 0, 0, small.right - small.left, height,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    EXPECT_TRUE(FollowsNewest()) << height;
  }
  Add(90);
  EXPECT_TRUE(FollowsNewest());
  Ask(WM_VSCROLL, SB_TOP);
  Ask(EM_SETSEL, 7, 12);
  Add(100);
  EXPECT_EQ(Ask(EM_GETLINECOUNT), 200);
  EXPECT_EQ(Ask(EM_GETFIRSTVISIBLELINE), 0);
  EXPECT_EQ(Ask(EM_GETSEL), MAKELONG(7, 12));
  Ask(WM_VSCROLL, SB_BOTTOM);
  Library->VCLShowDebugText(std::string(300, 'x').c_str());
  Add(80000);
  EXPECT_EQ(Ask(EM_GETLINECOUNT), 80201);
  EXPECT_TRUE(FollowsNewest());
  // A long line does not push the numbers out of view.
  EXPECT_EQ(GetScrollPos(Memo(), SB_HORZ), 0);
  // Back in the middle, past what 16 bits can count.
  Ask(EM_LINESCROLL, 0, 70000 - Ask(EM_GETFIRSTVISIBLELINE));
  Add(10);
  Ask(EM_GETLINECOUNT);
  EXPECT_EQ(Ask(EM_GETFIRSTVISIBLELINE), 70000);
}

TEST_F(Traces, WindowDropsTheOldestLinesAtTheControlsLimit) {
  constexpr std::size_t Limit = 4000;
  Library->VCLShowDebugText("100 %\ndeux");
  EXPECT_EQ(TextOf(Memo()), "0001 : 100 %\r\ndeux");
  Ask(EM_SETLIMITTEXT, Limit);
  for (int part = 0; part < 40; ++part) {
    Add(50);
    Ask(EM_GETLINECOUNT);
  }
  const std::string text = TextOf(Memo());
  EXPECT_GE(text.size(), Limit / 3);
  EXPECT_TRUE(text.ends_with("\r\n2000 : ligne\r\n2001 : ligne"));
  EXPECT_EQ(text.substr(4, 11), " : ligne\r\n1") << "dropped by whole lines";
  Library->VCLShowDebugText(std::string(2 * Limit, 'x').c_str());
  EXPECT_LE(TextOf(Memo()).size(), Limit);
  EXPECT_TRUE(TextOf(Memo()).ends_with("xxx"));
}
