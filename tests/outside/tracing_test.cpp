#include <regex>
#include <sstream>

#include "outside/outside_test.h"

namespace {

HWND OwnWindow(std::string_view className) {
  for (const HWND window : TopWindows(GetCurrentProcessId()))
    if (ClassOf(window) == className) return window;
  return nullptr;
}

HWND Bubble() { return OwnWindow("THintWindow"); }
int Width(const RECT& bounds) { return bounds.right - bounds.left; }
int Height(const RECT& bounds) { return bounds.bottom - bounds.top; }

}  // namespace

// ---- the bubble ----

class HintBubble : public TOutsideTest {};

TEST_F(HintBubble, StandsWhereItIsAskedToAndWrapsAtTheWidthGiven) {
  const char text[] = "Solde du compte à une date, avec les opérations pointées";
  const HWND active = GetForegroundWindow();
  int linesBefore = 0;
  for (const int width : {1000, 200, 100}) {
    Library->VCLShowHint(MainWindow, Ansi(text).c_str(), 300, 250, width);
    const HWND bubble = Bubble();
    ASSERT_TRUE(Shown(bubble));
    const RECT bounds = BoundsOf(bubble);
    EXPECT_EQ(bounds.left, 300);
    EXPECT_EQ(bounds.top, 250);
    EXPECT_LE(Width(bounds), width);
    EXPECT_GT(Height(bounds), linesBefore);
    linesBefore = Height(bounds);
    EXPECT_EQ(TextOf(bubble), text);
    EXPECT_EQ(GetWindow(bubble, GW_OWNER), MainWindow);
    EXPECT_EQ(GetForegroundWindow(), active);
  }
}

TEST_F(HintBubble, StaysOnTheMonitor) {
  const RECT screen{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
  for (const POINT at : {POINT{-500, -500}, {9000, 10}, {10, 9000}, {9000, 9000}}) {
    Library->VCLShowHint(MainWindow, "Annuler", at.x, at.y, 200);
    const RECT bounds = BoundsOf(Bubble());
    RECT common;
    IntersectRect(&common, &bounds, &screen);
    EXPECT_TRUE(EqualRect(&common, &bounds)) << at.x << ", " << at.y;
  }
}

TEST_F(HintBubble, IsReplacedByTheNextAndNeverHidden) {
  Library->VCLHideHint();
  Library->VCLShowHint(MainWindow, "un", 100, 100, 200);
  const HWND first = Bubble();
  Library->VCLHideHint();
  EXPECT_TRUE(Shown(first));

  Library->VCLShowHint(MainWindow, "deux", 300, 300, 200);
  EXPECT_FALSE(IsWindow(first));
  const HWND second = Bubble();
  EXPECT_EQ(TextOf(second), "deux");
  EXPECT_EQ(BoundsOf(second).left, 300);

  // Handed back its own window, it moves.
  Library->VCLShowHint(second, "trois", 400, 350, 200);
  EXPECT_EQ(Bubble(), second);
  EXPECT_EQ(TextOf(second), "trois");
  EXPECT_EQ(BoundsOf(second).left, 400);

  Library->VCLFree();
  EXPECT_EQ(Bubble(), nullptr);
  Library->VCLHideHint();
}

TEST_F(HintBubble, TakesAnyWindowAndAnyText) {
  const HWND other = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300,
                                     200, nullptr, nullptr, nullptr, nullptr);
  Library->VCLShowHint(other, nullptr, 100, 100, 0);
  EXPECT_TRUE(Shown(Bubble()));
  DestroyWindow(other);
  EXPECT_EQ(Bubble(), nullptr);
  Library->VCLShowHint(other, "un", 100, 100, 200);
  EXPECT_EQ(Bubble(), nullptr);
  Library->VCLShowHint(nullptr, "deux", 100, 100, -5);
  EXPECT_EQ(TextOf(Bubble()), "deux");
  Library->VCLShowHint(MainWindow, "trois", 100, 100, 200);
  EXPECT_EQ(TextOf(Bubble()), "trois");
}

// ---- the debug window ----

class DebugWindow : public TOutsideTest {
 protected:
  HWND Window() const { return OwnWindow("TDlgDebug"); }
  HWND Memo() const {
    for (const HWND child : Descendants(Window()))
      if (NameOf(child) == "Memo") return child;
    return nullptr;
  }
  std::string Text() const { return TextOf(Memo()); }
  int Ask(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return static_cast<int>(SendMessageW(Memo(), message, wParam, lParam));
  }
  void Add(int lines) const {
    for (int line = 0; line < lines; ++line) Library->VCLShowDebugText("ligne");
  }
  void Use(const std::function<void(TFormDriver&)>& script) {
    WhileIdle([&](TScriptedUser& user) {
      TFormDriver form = user.WaitForForm("TDlgDebug");
      script(form);
    });
  }
  /// The last line is in the memo's view.
  bool FollowsNewest() const {
    RECT client;
    GetClientRect(Memo(), &client);
    const int last = Ask(EM_LINEINDEX, static_cast<WPARAM>(Ask(EM_GETLINECOUNT) - 1));
    const auto y = static_cast<short>(HIWORD(Ask(EM_POSFROMCHAR, static_cast<WPARAM>(last))));
    return y >= 0 && y < client.bottom;
  }
};

TEST_F(DebugWindow, LooksAsLaidOutAndNumbersItsLines) {
  Library->VCLShowDebugText("abc");
  EXPECT_EQ(Text(), "0001 : abc");
  Library->VCLShowDebugText(nullptr);
  Library->VCLShowDebugText(Ansi("100 % été\ndeux").c_str());
  EXPECT_EQ(Text(), "0001 : abc\r\n0002 : \r\n0003 : 100 % été\r\ndeux");
  Use([this](TFormDriver& form) {
    EXPECT_EQ(form.Caption(), "DlgDebug");
    EXPECT_EQ(GetWindow(form.Handle(), GW_OWNER), MainWindow);
    const auto style = GetWindowLongW(form.Handle(), GWL_STYLE);
    const auto exStyle = GetWindowLongW(form.Handle(), GWL_EXSTYLE);
    EXPECT_EQ(style & (WS_THICKFRAME | WS_SYSMENU | WS_MINIMIZEBOX | WS_MAXIMIZEBOX),
              WS_THICKFRAME | WS_SYSMENU | WS_MINIMIZEBOX);
    EXPECT_EQ(exStyle & (WS_EX_TOOLWINDOW | WS_EX_TOPMOST | WS_EX_CONTEXTHELP),
              WS_EX_TOOLWINDOW | WS_EX_TOPMOST);
    RECT client;
    GetClientRect(form.Handle(), &client);
    EXPECT_EQ(client.right, 382);
    EXPECT_EQ(client.bottom, 150);
    EXPECT_FALSE(form.Visible("ButtonHelp"));
    EXPECT_EQ(form.Text("Clear"), "Vider");
    form.WaitFocus("ButtonOK");
    for (const char* name : {"ButtonCancel", "Memo", "Clear", "ButtonOK"}) {
      form.Press(VK_TAB);
      form.WaitFocus(name);
    }
    // All of it grows with the window.
    SetWindowPos(form.Handle(), nullptr, 100, 100, 700, 400, SWP_NOZORDER);
    GetClientRect(form.Handle(), &client);
    const SIZE memo{Width(BoundsOf(form.Control("Memo"))), Height(BoundsOf(form.Control("Memo")))};
    EXPECT_EQ(memo.cx, client.right);
    EXPECT_EQ(memo.cy, client.bottom - 48);
    form.Click("ButtonOK");
    form.WaitGone();
  });
}

TEST_F(DebugWindow, IsHiddenMinimisedEmptiedAndFreed) {
  Add(2);
  Use([](TFormDriver& form) {
    form.Press(VK_RETURN);
    form.WaitGone();
  });
  Library->VCLShowDebugText("trois");
  EXPECT_TRUE(Shown(Window()));
  EXPECT_EQ(Text(), "0001 : ligne\r\n0002 : ligne\r\n0003 : trois");
  Use([](TFormDriver& form) {
    form.Click("Clear");
    form.CloseBox();
    form.WaitGone();
  });
  Add(1);
  EXPECT_EQ(Text(), "0001 : ligne");
  Use([](TFormDriver& form) { form.Press(VK_ESCAPE); });
  EXPECT_TRUE(IsIconic(Window()));
  Library->VCLShowDebugText("deux");
  EXPECT_TRUE(IsIconic(Window()));
  EXPECT_EQ(Text(), "0001 : ligne\r\n0002 : deux");

  Library->VCLFree();
  EXPECT_EQ(Window(), nullptr);
  Add(1);
  EXPECT_EQ(Text(), "0001 : ligne");
  // Its owner goes, and takes the window with it.
  const HWND other = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300,
                                     200, nullptr, nullptr, nullptr, nullptr);
  Library->VCLFree();
  Library->VCLSetMainWindowHandle(other);
  Add(2);
  DestroyWindow(other);
  EXPECT_EQ(Window(), nullptr);
  Library->VCLSetMainWindowHandle(MainWindow);
  Add(1);
  EXPECT_EQ(Text(), "0001 : ligne");
}

TEST_F(DebugWindow, FollowsTheNewestLineUnlessTheUserScrolledBack) {
  Add(100);
  EXPECT_TRUE(FollowsNewest());
  Ask(WM_VSCROLL, SB_TOP);
  Ask(EM_SETSEL, 7, 12);
  Add(100);
  EXPECT_EQ(Ask(EM_GETLINECOUNT), 200);
  EXPECT_EQ(Ask(EM_GETFIRSTVISIBLELINE), 0);
  EXPECT_EQ(Ask(EM_GETSEL), MAKELONG(7, 12));
  Ask(EM_LINESCROLL, 0, 50);
  const int middle = Ask(EM_GETFIRSTVISIBLELINE);
  Library->VCLShowDebugText(std::string(300, 'x').c_str());
  Ask(EM_GETLINECOUNT);
  EXPECT_EQ(Ask(EM_GETFIRSTVISIBLELINE), middle);
  Ask(WM_VSCROLL, SB_BOTTOM);
  Library->VCLShowDebugText(std::string(300, 'x').c_str());
  Add(100);
  EXPECT_TRUE(FollowsNewest());
  // A long line does not push the numbers out of view.
  EXPECT_EQ(GetScrollPos(Memo(), SB_HORZ), 0);
}

TEST_F(DebugWindow, TakesLinesWithoutEnd) {
  constexpr int Lines = 100000;
  Add(Lines);
  EXPECT_EQ(Ask(EM_GETLINECOUNT), Lines);
  EXPECT_TRUE(FollowsNewest());
  wchar_t line[40] = {39};
  const auto length = SendMessageW(Memo(), EM_GETLINE, 9999, reinterpret_cast<LPARAM>(line));
  EXPECT_EQ(std::wstring(line, static_cast<std::size_t>(length)), L"10000 : ligne");
  // Back in the middle, past what 16 bits can count.
  Ask(EM_LINESCROLL, 0, 70000 - Ask(EM_GETFIRSTVISIBLELINE));
  Add(10);
  Ask(EM_GETLINECOUNT);
  EXPECT_EQ(Ask(EM_GETFIRSTVISIBLELINE), 70000);
  Ask(WM_VSCROLL, MAKEWPARAM(SB_THUMBPOSITION, 40000));
  EXPECT_EQ(Ask(EM_GETFIRSTVISIBLELINE), 40000);
}

TEST_F(DebugWindow, ShowsLinesThatCameInABurstSoonAfter) {
  Add(500);
  const HWND memo = Memo();
  WhileIdle([&](TScriptedUser& user) {
    // The position of the scroll bar tells without asking for the text.
    user.WaitUntil("the newest lines", [&] {
      int first = 0;
      int last = 0;
      GetScrollRange(memo, SB_VERT, &first, &last);
      return last >= 499;
    });
  });
}

TEST_F(DebugWindow, DropsTheOldestLinesAtTheControlsLimit) {
  constexpr int Limit = 4000;
  Add(1);
  Ask(EM_SETLIMITTEXT, Limit);
  for (int line = 2; line <= 2000; ++line) {
    Library->VCLShowDebugText("ligne");
    if (line % 50 == 0) Ask(EM_GETLINECOUNT);
  }
  const std::string text = Text();
  EXPECT_LE(text.size(), static_cast<std::size_t>(Limit));
  EXPECT_GE(text.size(), static_cast<std::size_t>(Limit / 3));
  const std::regex whole("(\\d{4} : ligne\r\n)*2000 : ligne");
  EXPECT_TRUE(std::regex_match(text, whole)) << text.substr(0, 40);
  EXPECT_TRUE(FollowsNewest());
  Library->VCLShowDebugText(std::string(2 * Limit, 'x').c_str());
  EXPECT_LE(Text().size(), static_cast<std::size_t>(Limit));
  EXPECT_TRUE(Text().ends_with("xxx"));
}
