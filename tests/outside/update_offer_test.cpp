#include <loopback_server.h>
#include <objbase.h>

#include "outside/outside_test.h"

class UpdateOffer : public TOutsideTest {
 protected:
  void ExpectAnswer(int answer, const std::string& address,
                    const std::function<void(TScriptedUser&, TFormDriver&)>& script) {
    int given = 99;
    During([&] { given = Library->VCLAskForDownload("11.01", "11.02 & plus", address.c_str()); },
           [&](TScriptedUser& user) {
             TFormDriver form = user.WaitForForm("TDlgAskDwld");
             script(user, form);
             form.WaitGone();
           });
    EXPECT_EQ(given, answer) << address;
  }
};

// The page fills what the buttons leave, also in a larger window.
TEST_F(UpdateOffer, ShowsThePageItIsGiven) {
  const TLoopbackServer server([](TConnection& connection) {
    connection.Answer("text/html", "<body><script>alert('x');window.open('/popup')</script>");
  });
  ExpectAnswer(ZEF_OFFER_DOWNLOAD, server.Address("/news"),
               [&](TScriptedUser& user, TFormDriver& form) {
                 EXPECT_EQ(form.Text("STVerCur"), "11.01");
                 EXPECT_EQ(form.Text("STVerWeb"), "11.02 & plus");
                 user.WaitUntil("the page asked for", [&] { return !server.Requests().empty(); });
                 EXPECT_EQ(server.Requests().front(), "/news");
                 const RECT window = BoundsOf(form.Handle());
                 SetWindowPos(form.Handle(), nullptr, 0, 0, window.right - window.left + 100,
                              window.bottom - window.top + 50, SWP_NOMOVE | SWP_NOZORDER);
                 const HWND inside = GetWindow(form.Control("Web"), GW_CHILD);
                 ASSERT_NE(inside, nullptr);
                 RECT room{};
                 GetClientRect(form.Control("Web"), &room);
                 EXPECT_EQ(BoundsOf(inside).right - BoundsOf(inside).left, room.right);
                 EXPECT_EQ(BoundsOf(inside).bottom - BoundsOf(inside).top, room.bottom);
                 form.Mnemonic('T');
               });
}

TEST_F(UpdateOffer, AsksAlsoWhenThePageCannotBeShown) {
  const std::string gone = TLoopbackServer([](TConnection&) {}).Address("/");
  const TLoopbackServer silent([](TConnection& connection) { connection.Stall(60000); });
  for (const std::string& address :
       {gone, silent.Address("/"), std::string("http://no-such-host.invalid/"),
        std::string("no address"), std::string("x:y")}) {
    ExpectAnswer(ZEF_OFFER_IGNORE, address,
                 [](TScriptedUser&, TFormDriver& form) { form.Mnemonic('I'); });
  }
  // A thread with the other threading model cannot hold the control, as little as a machine
  // that lacks it.
  ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED)));
  ExpectAnswer(ZEF_OFFER_IGNORE, "http://127.0.0.1/", [](TScriptedUser&, TFormDriver& form) {
    EXPECT_EQ(GetWindow(form.Control("Web"), GW_CHILD), nullptr);
    form.Click("ButtonIgnore");
  });
  CoUninitialize();
}
