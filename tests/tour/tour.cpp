// Takes the example host through the library's dialogs as a user would, and leaves a picture of
// each and the log of the host's calls: tour DIRECTORY [STOP]. The exit code is the number of stops
// that could not be made.

#include <windows.h>

#include <commctrl.h>

#include <cstdio>
#include <string>
#include <vector>

#include "tour/tour_host.h"
#include "user/window.h"

namespace {
struct TStop {
  const char* Name;
  int Script;        ///< counts from 1
  const char* Text;  ///< where the cursor stands in the script
  void (*Make)(TTourHost& host);
};

void Expect(bool fulfilled, const char* what) {
  if (!fulfilled) throw TUserError(what);
}

/// A variable that no one declared: its type is picked, then a parameter gets another value, and
/// the host receives the rewritten line.
void Assistant(TTourHost& host) {
  host.Picture(host.Window(), "host");
  host.Window().Press(VK_F1);
  TFormDriver form = host.User().WaitForForm("TDlgSyntax");
  form.WaitText("EditMethod", "SoldeAu(Date, zefPointee + zefRapprochee)");
  host.Picture(form, "opened");

  form.Select("BoxType", "Cpt");
  host.User().WaitUntil("two parameters", [&] { return form.Items("ListParam").size() == 2; });
  host.Picture(form, "type");
  form.Select("ListParam", form.Items("ListParam")[1]);
  form.WaitText("EditValue", "zefPointee + zefRapprochee");
  host.Picture(form, "parameter");
  form.Fill("EditValue", "zefPointee");
  form.WaitText("EditMethod", "SoldeAu(Date, zefPointee)");
  form.Click("ButtonOK");
  form.WaitGone();
  host.User().WaitUntil("the rewritten line", [&] {
    return host.Script().find("courant.SoldeAu(Date, zefPointee)") != std::string::npos;
  });
  host.Picture(host.Window(), "rewritten");
}

/// A long chain of members, walked back and forth, then left by Cancel.
void Chain(TTourHost& host) {
  const std::string before = host.Script();
  host.Window().Press(VK_F1);
  TFormDriver form = host.User().WaitForForm("TDlgSyntax");
  const int last = form.Position("UpDown");
  host.Picture(form, "opened");
  form.StepDown("UpDown");
  host.User().WaitUntil("the step back", [&] { return form.Position("UpDown") == last - 1; });
  host.Picture(form, "stepped_back");
  form.Press(VK_ESCAPE);
  form.WaitGone();
  Expect(host.Script() == before, "Cancel leaves the script alone");
}

/// An object without a member yet: type and member are picked from their lists.
void Member(TTourHost& host) {
  const std::string before = host.Script();
  host.Window().Press(VK_F1);
  TFormDriver form = host.User().WaitForForm("TDlgSyntax");
  form.Select("BoxType", "Budget");
  host.User().WaitUntil("members", [&] { return !form.Items("BoxMethod").empty(); });
  form.Select("BoxMethod", "Depasse()");
  host.User().WaitUntil("the parameters", [&] { return !form.Items("ListParam").empty(); });
  host.Picture(form, "member");
  form.Click("ButtonCancel");
  form.WaitGone();
  Expect(host.Script() == before, "Cancel leaves the script alone");
}

/// A function of the language; its parameters explained.
void FunctionCall(TTourHost& host) {
  host.Window().Press(VK_F1);
  TFormDriver form = host.User().WaitForForm("TDlgSyntax");
  host.Picture(form, "opened");
  form.TabTo("ListParam");
  form.Press(VK_F1);
  host.User().WaitForBubble();
  host.Picture(host.Window(), "bubble");
  form.Press(VK_ESCAPE);
  form.WaitGone();
}

/// A new version, offered and downloaded.
void Update(TTourHost& host) {
  host.Window().Mnemonic('A');
  host.User().Press('R');
  TFormDriver offer = host.User().WaitForForm("TDlgAskDwld");
  host.Picture(offer, "offer");
  offer.Click("ButtonOK");
  offer.WaitGone();
  TFormDriver download = host.User().WaitForForm("TDlgDwnld");
  const HWND bar = download.Control("ProgressBar");
  host.User().WaitUntil("part of the file", [&] { return Ask(bar, PBM_GETPOS) >= 25; });
  host.Picture(download, "download");
  download.WaitGone();
  host.Picture(host.Window(), "downloaded");
}

constexpr TStop Stops[] = {
    {"assistant", 1, "SoldeAu(Date, zefPointee", Assistant},
    {"chain", 2, "Categorie.Budget.Periodes", Chain},
    {"member", 2, "texte & ", Member},
    {"function", 2, "MsgBox texte", FunctionCall},
    {"update", 1, "SoldeAu", Update},
};

bool Make(const TStop& stop, const std::wstring& directory) {
  std::printf("%s\n", stop.Name);
  std::fflush(stdout);
  try {
    TTourHost host(directory, stop.Name, L"--script " + std::to_wstring(stop.Script));
    try {
      host.GoTo(stop.Text);
      stop.Make(host);
      host.Quit();
      return true;
    } catch (const TUserError& error) {
      std::printf("  %s\nlast steps:\n%swindows:\n%s", error.what(),
                  host.User().LastSteps().c_str(), WindowTree(host.User().Process()).c_str());
      host.PictureOfAll("failed");
    }
  } catch (const TUserError& error) {
    std::printf("  %s\n", error.what());
  }
  return false;
}
}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 2) {
    std::printf("tour DIRECTORY [STOP]\n");
    return 1;
  }
  int failed = 0;
  for (const TStop& stop : Stops)
    if (argc < 3 || Wide(stop.Name) == argv[2]) failed += Make(stop, argv[1]) ? 0 : 1;
  return failed;
}
