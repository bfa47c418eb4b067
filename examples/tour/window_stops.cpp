#include <windows.h>

#include <commctrl.h>

#include <string>

#include "commands.h"
#include "tour/stops.h"
#include "user/items.h"
#include "user/window.h"

void Dialogs(TTourHost& host) {
  TUser& user = host.User();
  const auto choose = [&](char menu, char command) {
    user.Press(static_cast<WORD>(menu), mdAlt);
    user.Press(static_cast<WORD>(command));
  };
  choose('B', 'M');
  TFormDriver modal = user.WaitForForm("TDlgBase");
  host.Picture(modal, "modal");
  modal.Click("ButtonOK");
  modal.WaitGone();

  choose('O', 'T');
  TFormDriver trace = user.WaitForForm("TDlgDebug");
  user.WaitUntil("the host's window",
                 [&] { return GetForegroundWindow() == host.Window().Handle(); });
  choose('B', 'N');
  TFormDriver modeless = user.WaitForForm("TDlgBase");
  for (const char* button : {"ButtonOK", "ButtonCancel"}) modeless.Click(button);
  modeless.TabTo("ButtonHelp");
  host.PictureOfAll("modeless");
  TFormDriver(user, GetParent(modeless.Handle())).CloseBox();
  modeless.WaitGone();

  choose('B', 'V');
  TFormDriver view = user.WaitForForm("TExampleView");
  TFormDriver window(user, GetParent(view.Handle()));
  choose('V', 'M');
  user.WaitUntil("the answer", [&] { return window.Caption() == "Vue - non modifiée"; });
  host.PictureOfAll("view");
  window.CloseBox();
  view.WaitGone();

  trace.Click("Memo");
  host.Picture(trace, "trace");
  const std::string lines = trace.Text("Memo");
  for (const char* call :
       {"0001 : VCLGetVersion() = 1102", "VCLFreeNonModalDialog(", "VCLDialogHasChanged("})
    Expect(lines.find(call) != std::string::npos, call);
  trace.Click("Clear");
  trace.WaitText("Memo", "");
}

void Filter(TTourHost& host) {
  TUser& user = host.User();
  const auto open = [&] {
    host.Window().ClickFormAt({500, 16});  // beside the tabs: nothing covers it
    user.Press('O', mdAlt);
    user.Press('F');
    return user.WaitForForm("TDlgSelectTypOp");
  };
  const auto entries = [&](const std::string& caption, size_t count) {
    user.WaitUntil(caption, [&] {
      const HWND window = user.FindForm(Utf8(ZEF_ENTRIES_WINDOW_CLASS));
      return window && TextOf(window) == caption &&
             ItemsOf(GetDlgItem(window, IDC_ENTRIES)).size() == count &&
             // The program brings it there last of all.
             GetForegroundWindow() == window;
    });
    return user.WaitForForm(Utf8(ZEF_ENTRIES_WINDOW_CLASS));
  };

  TFormDriver form = open();
  host.WaitItems(form, "ListTypOp", {"Virement", "Prélèvement", "CB/Chq", "Espèces", "Dépôt"});
  host.WaitItems(form, "ListCB", {"Carte bleue Léa", "Carte bleue Paul", "Chéquier n° 102"});
  host.See(form, "nothing", {{"ListTypOp", ""}, {"ListCB", "", false}});
  form.Select("ListTypOp", "Prélèvement");
  host.See(form, "type", {{"ListTypOp", "Prélèvement"}, {"ListCB", "", false}});
  form.Select("ListTypOp", "CB/Chq");
  host.See(form, "card_type", {{"ListTypOp", "CB/Chq"}, {"ListCB", "Carte bleue Léa"}});
  form.Select("ListCB", "Chéquier n° 102");
  host.See(form, "card", {{"ListCB", "Chéquier n° 102"}});
  form.Select("ListTypOp", "Espèces");
  host.See(form, "card_kept", {{"ListTypOp", "Espèces"}, {"ListCB", "Chéquier n° 102", false}});
  form.Select("ListTypOp", "CB/Chq");
  form.Click("ButtonOK");
  form.WaitGone();
  host.Picture(entries("Écritures - filtre : Chéquier n° 102", 2), "filtered");

  form = open();
  host.See(form, "", {{"ListTypOp", "CB/Chq"}, {"ListCB", "Chéquier n° 102"}});
  form.Select("ListTypOp", "Virement");
  form.Press(VK_RETURN);
  form.WaitGone();
  entries("Écritures - filtre : Virement", 2);

  form = open();
  form.Click("ButtonCancel");
  form.WaitGone();
  TFormDriver all = entries("Toutes les écritures", 11);
  host.PictureOfAll("all");
  all.CloseBox();
  all.WaitGone();
}

void Place(TTourHost& host) {
  const RECT first = BoundsOf(host.Window().Handle());
  const auto move = [](TTourHost& moved, const RECT& place) {
    SetWindowPos(moved.Window().Handle(), nullptr, place.left, place.top, place.right - place.left,
                 place.bottom - place.top, SWP_NOZORDER);
  };
  const RECT other = {150, 120, 950, 720};
  move(host, other);
  host.Quit();
  TTourHost again(host, "again");
  const RECT found = BoundsOf(again.Window().Handle());
  again.WaitScript("Option Explicit");
  again.PictureOfAll("picture");
  move(again, first);
  again.Quit();
  Expect(EqualRect(&found, &other), "the place where the window was left");
}

void Update(TTourHost& host) {
  host.Window().Mnemonic('A');
  host.User().Press('R');
  TFormDriver offer = host.User().WaitForForm("TDlgAskDwld");
  Expect(offer.Caption() == "Mise à jour de Zefkor", "the caption");
  host.See(offer, "offer", {{"STVerCur", "11.02"}, {"STVerWeb", "11.03"}});
  offer.Click("ButtonOK");
  offer.WaitGone();
  TFormDriver download = host.User().WaitForForm("TDlgDwnld");
  const HWND bar = download.Control("ProgressBar");
  host.User().WaitUntil("part of the file", [&] { return Ask(bar, PBM_GETPOS) >= 25; });
  host.Picture(download, "download");
  download.WaitGone();
  host.Picture(host.Window(), "downloaded");
}
