#include <loopback_server.h>

#include "outside/outside_test.h"

using UpdateOffer = TOutsideTest;

// The page fills what the buttons leave, also in a larger window.
TEST_F(UpdateOffer, ShowsThePageItIsGiven) {
  const TLoopbackServer server([](TConnection& connection) {
    connection.Answer("text/html", "<body><script>alert('x');window.open('/popup')</script>");
  });
  const std::string address = server.Address("/news");
  During([&] { EXPECT_EQ(Library->VCLAskForDownload("1", "2 & plus", address.c_str()), 1); },
         [&](TScriptedUser& user) {
           TFormDriver form = user.WaitForForm("TDlgAskDwld");
           EXPECT_EQ(form.Text("STVerWeb"), "2 & plus");
           user.WaitUntil("the page asked for", [&] { return !server.Requests().empty(); });
           EXPECT_EQ(server.Requests().front(), "/news");
           const RECT window = BoundsOf(form.Handle());
           SetWindowPos(form.Handle(), nullptr, 0, 0, window.right - window.left + 100,
                        window.bottom - window.top + 50, SWP_NOMOVE | SWP_NOZORDER);
           const HWND inside = GetWindow(form.Control("Web"), GW_CHILD);
           ASSERT_NE(inside, nullptr);
           RECT room{}, page = BoundsOf(inside);
           GetClientRect(form.Control("Web"), &room);
           OffsetRect(&page, -page.left, -page.top);
           EXPECT_TRUE(EqualRect(&page, &room));
           form.Mnemonic('T');
           form.WaitGone();
         });
}
