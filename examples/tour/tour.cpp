// Takes the example host through the library's dialogs as a user would, and leaves a picture of
// each and the log of the host's calls: tour DIRECTORY [STOP]. The exit code is the number of stops
// that could not be made.

#include <windows.h>

#include <commctrl.h>

#include <cstdio>
#include <string>
#include <vector>

#include "commands.h"
#include "tour/tour_host.h"
#include "user/items.h"
#include "user/window.h"

namespace {
struct TStop {
  const char* Name;
  int Script;        ///< counts from 1
  const char* Text;  ///< where the cursor stands in the script; null: where the program puts it;
                     ///< empty: the user's list of directories is empty
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

/// A parameter's value put together from constants, some of which combine.
void Constants(TTourHost& host) {
  host.Window().Press(VK_F1);
  TFormDriver form = host.User().WaitForForm("TDlgSyntax");
  form.Select("ListParam", "[boutons]");
  form.WaitText("EditValue", "vbExclamation + vbOKOnly");
  form.Click("ButValue");
  TFormDriver picker = host.User().WaitForForm("TDlgSyntaxConst");
  picker.WaitText("EditResult", "vbExclamation + vbOKOnly");
  host.Picture(picker, "opened");
  picker.ToggleItem("ListConst", "vbYesNo");
  picker.Select("ListConst", "vbYesNo");
  host.Picture(picker, "ticked");
  picker.Click("ButtonOK");
  picker.WaitGone();
  host.User().WaitUntil(
      "the value", [&] { return form.Text("EditValue").find("vbYesNo") != std::string::npos; });
  host.Picture(form, "value");
  form.Press(VK_ESCAPE);
  form.WaitGone();
}

/// The types of the script's variables: one more is added, then all is left as it was.
void Types(TTourHost& host) {
  const std::string before = host.Script();
  host.Window().Press(VK_F3);
  TFormDriver form = host.User().WaitForForm("TDlgSyntaxTypes");
  host.Picture(form, "opened");
  form.Select("BoxConst", "unBudget");
  form.WaitText("EditModif", "unBudget");
  host.Picture(form, "selected");
  form.Fill("EditNew", "texte");
  host.User().WaitUntil("the button", [&] { return form.Enabled("BtnAdd"); });
  host.Picture(form, "new");
  form.Click("BtnAdd");
  form.Click("ButtonCancel");
  form.WaitGone();
  Expect(host.Script() == before, "Cancel leaves the script alone");
}

/// The base dialog, modal and inside a window of the host, then a view; their calls traced.
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
}

/// The help of the word under the mouse.
void Bubble(TTourHost& host) {
  const HWND editor = GetDlgItem(host.Window().Handle(), IDC_EDITOR);
  const std::string script = host.Script();
  std::string before = script.substr(0, script.find("MsgBox texte"));
  std::erase(before, '\n');  // the control counts a line's end as one
  const auto place =
      static_cast<DWORD>(SendMessageW(editor, EM_POSFROMCHAR, Wide(before).size(), 0));
  POINT word{LOWORD(place) + 10, HIWORD(place) + 5};
  ClientToScreen(editor, &word);
  host.User().PointAt(word);
  Expect(host.User().WaitForBubble().starts_with("MsgBox("), "the help of MsgBox");
  host.PictureOfAll("word");
  host.User().PointAt({word.x, word.y + 200});
  host.User().WaitForNoBubble();
}

/// The type filter with each kind of choice, and what the host shows after it.
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
             ItemsOf(GetDlgItem(window, IDC_ENTRIES)).size() == count;
    });
    return user.WaitForForm(Utf8(ZEF_ENTRIES_WINDOW_CLASS));
  };

  TFormDriver form = open();
  host.Picture(form, "nothing");
  form.Select("ListTypOp", "Prélèvement");
  host.Picture(form, "type");
  form.Select("ListTypOp", "CB/Chq");
  host.Picture(form, "card_type");
  form.Select("ListCB", "Chéquier n° 102");
  host.Picture(form, "card");
  form.Select("ListTypOp", "Espèces");
  host.Picture(form, "card_kept");
  form.Select("ListTypOp", "CB/Chq");
  form.Click("ButtonOK");
  form.WaitGone();
  host.Picture(entries("Écritures - filtre : Chéquier n° 102", 2), "filtered");

  form = open();
  Expect(form.SelectedItem("ListCB") == "Chéquier n° 102", "the earlier choice");
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

/// The host's window comes back where it was left.
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
  again.PictureOfAll("picture");
  move(again, first);
  again.Quit();
  Expect(EqualRect(&found, &other), "the place where the window was left");
}

constexpr wchar_t SettingsKey[] = L"Software\\KAVEN\\ZEF";

void SetSetting(const wchar_t* name, const std::wstring& value) {
  RegSetKeyValueW(HKEY_CURRENT_USER, SettingsKey, name, REG_SZ, value.c_str(),
                  static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

/// A user's list of one accounts directory, which opens by itself, or an empty list.
void KeepDirectories(const std::wstring& directory) {
  RegDeleteTreeW(HKEY_CURRENT_USER, SettingsKey);
  if (directory.empty()) return SetSetting(L"NbDirAlias", L"0");
  SetSetting(L"DirAliasName0", L"Comptes de la visite");
  SetSetting(L"DirAliasPath0", directory);
  SetSetting(L"DirAliasDefault", L"Comptes de la visite");
  SetSetting(L"NbDirAlias", L"1");
}

void AddDirectory(TTourHost& host, TFormDriver& form, const char* name, const char* path) {
  form.Click("BtnAdd");
  TFormDriver box = host.User().WaitForForm("TInputBox");
  box.Type(name);
  host.Picture(box, "name");
  box.Press(VK_RETURN);
  box.WaitGone();
  host.User().WaitUntil("the new entry", [&] { return form.Enabled("EditRep"); });
  form.Fill("EditRep", path);
}

/// Nothing was ever kept: the program brings an accounts directory of its own, and F1 has something
/// to show where the cursor stands.
void FirstStart(TTourHost& host) {
  Expect(host.Window().Caption().ends_with("\\Comptes"), "the program's own directory");
  host.Picture(host.Window(), "host");
  host.Window().Press(VK_F1);
  TFormDriver form = host.User().WaitForForm("TDlgSyntax");
  Expect(!form.SelectedItem("BoxType").empty(), "a type that the assistant knows");
  form.Press(VK_ESCAPE);
  form.WaitGone();
}

/// An empty list: one directory is added and opened. Then the list from the menu.
void Directories(TTourHost& host) {
  TFormDriver form = host.User().WaitForForm("TDlgDirSelect");
  host.Picture(form, "empty");
  AddDirectory(host, form, "Maison", "C:\\users");
  AddDirectory(host, form, "Association", "C:\\windows");
  host.Picture(form, "filled");
  form.Click("BtnBrowse");
  TFormDriver picker = host.User().WaitForMessageBox("Rechercher un dossier");
  host.User().WaitUntil("the folder", [&] { return picker.Text("#14149") == "windows"; });
  host.PictureOfAll("picker");
  picker.Click("#2");
  picker.WaitGone();
  form.Select("ListRep", "Maison");
  form.Click("ButtonOK");
  form.WaitGone();
  host.User().WaitUntil("the directory in the title",
                        [&] { return host.Window().Caption().ends_with("C:\\users"); });
  host.Picture(host.Window(), "opened");
  host.User().Press(VK_F4);
  form = host.User().WaitForForm("TDlgDirSelect");
  host.Picture(form, "again");
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
    {"first", 1, nullptr, FirstStart},
    {"directories", 1, "", Directories},
    {"assistant", 1, "SoldeAu(Date, zefPointee", Assistant},
    {"chain", 2, "Categorie.Budget.Periodes", Chain},
    {"member", 2, "texte & ", Member},
    {"function", 2, "MsgBox texte", FunctionCall},
    {"constants", 2, "MsgBox texte", Constants},
    {"types", 2, "MsgBox texte", Types},
    {"dialogs", 1, "SoldeAu(", Dialogs},
    {"bubble", 2, "MsgBox texte", Bubble},
    {"filter", 1, "SoldeAu(", Filter},
    {"place", 1, "SoldeAu(", Place},
    {"update", 1, "SoldeAu", Update},
};

bool Make(const TStop& stop, const std::wstring& directory) {
  std::printf("%s\n", stop.Name);
  std::fflush(stdout);
  // A null text leaves the cursor where the program puts it; an empty one is for an empty list.
  KeepDirectories(stop.Text && !*stop.Text ? L"" : directory);
  if (!stop.Text) RegDeleteTreeW(HKEY_CURRENT_USER, SettingsKey);
  try {
    TTourHost host(directory, stop.Name, L"--script " + std::to_wstring(stop.Script));
    try {
      if (stop.Text && *stop.Text) host.GoTo(stop.Text);
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
