#include <loopback_server.h>
#include <objbase.h>

#include "outside/outside_test.h"

namespace {
constexpr char Page[] =
    "<html><body><script>alert('x');window.open('/popup')</script></body></html>";
}

class UpdateOffer : public TOutsideTest {
 protected:
  using TScript = std::function<void(TScriptedUser&, TFormDriver&)>;

  int Offer(const std::string& address, const TScript& script) {
    int answer = 99;
    During([&] { answer = Library->VCLAskForDownload("11.01", "11.02 & plus", address.c_str()); },
           [&](TScriptedUser& user) {
             TFormDriver form = user.WaitForForm("TDlgAskDwld");
             script(user, form);
             form.WaitGone();
           });
    return answer;
  }
};

TEST_F(UpdateOffer, AnswersAsItIsLeft) {
  const struct {
    const char* Way;
    int Answer;
    void (*Leave)(TFormDriver&);
  } ways[] = {
      {"download", ZEF_OFFER_DOWNLOAD, [](TFormDriver& form) { form.Click("ButtonOK"); }},
      {"Alt+T", ZEF_OFFER_DOWNLOAD, [](TFormDriver& form) { form.Mnemonic('T'); }},
      {"ignore", ZEF_OFFER_IGNORE, [](TFormDriver& form) { form.Click("ButtonIgnore"); }},
      {"Alt+I", ZEF_OFFER_IGNORE, [](TFormDriver& form) { form.Mnemonic('I'); }},
      {"later", ZEF_OFFER_LATER, [](TFormDriver& form) { form.Click("ButtonCancel"); }},
      {"Escape", ZEF_OFFER_LATER, [](TFormDriver& form) { form.Press(VK_ESCAPE); }},
      {"close box", ZEF_OFFER_LATER, [](TFormDriver& form) { form.CloseBox(); }},
      {"Alt+F4", ZEF_OFFER_LATER, [](TFormDriver& form) { form.Press(VK_F4, mdAlt); }},
  };
  for (const auto& way : ways) {
    SCOPED_TRACE(way.Way);
    EXPECT_EQ(Offer("", [&](TScriptedUser&, TFormDriver& form) { way.Leave(form); }), way.Answer);
  }
}

TEST_F(UpdateOffer, ShowsVersionsButtonsAndPage) {
  TLoopbackServer server([](TConnection& connection) { connection.Answer("text/html", Page); });
  Offer(server.Address("/news"), [&](TScriptedUser& user, TFormDriver& form) {
    EXPECT_EQ(form.Caption(), "Mise à jour de Zefkor");
    EXPECT_EQ(form.Text("STVerCur"), "11.01");
    EXPECT_EQ(form.Text("STVerWeb"), "11.02 & plus");
    EXPECT_FALSE(form.Visible("ButtonHelp"));
    const auto standard = Ask(form.Handle(), DM_GETDEFID);
    EXPECT_EQ(LOWORD(standard), GetDlgCtrlID(form.Control("ButtonIgnore")));
    user.WaitUntil("the page asked for", [&] { return !server.Requests().empty(); });
    EXPECT_EQ(server.Requests().front(), "/news");

    // The page fills what the buttons leave, also in a larger window.
    const RECT before = BoundsOf(form.Control("Web"));
    const RECT button = BoundsOf(form.Control("ButtonOK"));
    const RECT window = BoundsOf(form.Handle());
    SetWindowPos(form.Handle(), nullptr, 0, 0, window.right - window.left + 100,
                 window.bottom - window.top + 50, SWP_NOMOVE | SWP_NOZORDER);
    const RECT after = BoundsOf(form.Control("Web"));
    EXPECT_EQ(after.right - before.right, 100);
    EXPECT_EQ(after.bottom - before.bottom, 50);
    EXPECT_EQ(after.left, before.left);
    EXPECT_EQ(BoundsOf(form.Control("ButtonOK")).left - button.left, 100);
    const HWND inside = GetWindow(form.Control("Web"), GW_CHILD);
    ASSERT_NE(inside, nullptr);
    RECT room{};
    GetClientRect(form.Control("Web"), &room);
    EXPECT_EQ(BoundsOf(inside).right - BoundsOf(inside).left, room.right);
    form.Press(VK_ESCAPE);
  });
}

TEST_F(UpdateOffer, AsksAlsoWhenThePageCannotBeShown) {
  const std::string gone = TLoopbackServer([](TConnection&) {}).Address("/");
  TLoopbackServer silent([](TConnection& connection) { connection.Stall(60000); });
  for (const std::string& address :
       {gone, silent.Address("/"), std::string("http://no-such-host.invalid/"),
        std::string("no address"), std::string("x:y")}) {
    SCOPED_TRACE(address);
    EXPECT_EQ(Offer(address, [](TScriptedUser&, TFormDriver& form) { form.Click("ButtonIgnore"); }),
              -1);
  }
}

TEST_F(UpdateOffer, AsksOnAMachineWithoutTheControl) {
  // A thread with the other threading model cannot hold the control, as little as a machine
  // that lacks it.
  ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED)));
  EXPECT_EQ(Offer("http://127.0.0.1/",
                  [](TScriptedUser&, TFormDriver& form) {
                    EXPECT_EQ(GetWindow(form.Control("Web"), GW_CHILD), nullptr);
                    form.Click("ButtonOK");
                  }),
            1);
  CoUninitialize();
}
