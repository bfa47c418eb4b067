// Takes the example host through the library's dialogs as a user would, looks at each stop for what
// is to be seen there, and leaves a picture of each and the log of the host's calls:
//
//   tour DIRECTORY [--contrast] [STOP]
//
// --contrast shows white on black meanwhile. Prints each stop with its outcome; the exit code is
// the number of stops that could not be made.

#include <windows.h>

#include <commctrl.h>

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "commands.h"
#include "tour/tour_host.h"
#include "user/items.h"
#include "user/saved_settings.h"
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
  host.See(form, "opened",
           {{"EditLigne", "courant.SoldeAu(Date, zefPointee + zefRapprochee) "},
            {"EditObjet", "courant"},
            {"BoxType", ""},
            {"EditHelpType", " <--- Sélectionnez un type pour cet objet !"},
            {"EditMethod", "SoldeAu(Date, zefPointee + zefRapprochee)"},
            {"BoxMethod", "", false},
            {"EditValue", "", false}});
  form.Select("BoxType", "Cpt");
  host.WaitItems(form, "ListParam", {"date", "[etats]"});
  host.See(form, "type",
           {{"EditHelpType", "Un compte bancaire."},
            {"BoxMethod", "SoldeAu()"},
            {"TextReturnType", "Currency"},
            {"EditHelpMethod",
             "Calcule le solde à une date.Valeur retournée : Le solde à la fin de la journée."},
            {"EditValue", "", false},
            {"ButValue", form.Text("ButValue"), false}});
  form.Select("ListParam", "[etats]");
  host.See(form, "parameter",
           {{"EditValue", "zefPointee + zefRapprochee"},
            {"TextParamType", "Integer"},
            {"TextDefVal", ""},
            {"EditParamHelp", "États des écritures à compter ; tous s'ils sont omis."},
            {"ButValue", form.Text("ButValue")}});
  Expect(form.RadioItem("RadioParam") == "Falcutatif", "an optional parameter");
  form.Fill("EditValue", "zefPointee");
  form.WaitText("EditMethod", "SoldeAu(Date, zefPointee)");
  form.Click("ButtonOK");
  form.WaitGone();
  host.WaitScript("courant.SoldeAu(Date, zefPointee)");
  host.WaitScript("courant=Cpt");
  host.Picture(host.Window(), "rewritten");
}

/// A long chain of members, walked back and forth, then left by Cancel.
void Chain(TTourHost& host) {
  const std::string before = host.Script();
  host.Window().Press(VK_F1);
  TFormDriver form = host.User().WaitForForm("TDlgSyntax");
  host.See(form, "opened",
           {{"EditLigne",
             "ZEF.Dossier.Comptes.Item(1).Ecritures.Derniere.Categorie.Budget.Periodes.Courante."
             "Realise"},
            {"EditObjet", "Derniere"},
            {"BoxType", "Ecriture"},
            {"EditMethod", "Categorie"},
            {"TextReturnType", "Categorie"},
            {"BoxUseReturn", "Utiliser la valeur retournée", false}});
  const int last = form.Position("UpDown");
  form.StepDown("UpDown");
  host.See(form, "stepped_back",
           {{"EditObjet", "Ecritures"}, {"BoxType", "Ecritures"}, {"BoxMethod", "Derniere"}});
  Expect(form.Position("UpDown") == last - 1, "one step back");
  form.Press(VK_ESCAPE);
  form.WaitGone();
  Expect(host.Script() == before, "Cancel leaves the script alone");
}

/// An object without a member yet: type and member are picked from their lists, its parameters
/// given and taken away, and the line gone on with.
void Member(TTourHost& host) {
  const std::string before = host.Script();
  host.Window().Press(VK_F1);
  TFormDriver form = host.User().WaitForForm("TDlgSyntax");
  form.Select("BoxType", "Budget");
  form.WaitText("EditHelpMethod", " Sélectionnez une méthode ci-dessus !");
  form.Select("BoxMethod", "Depasse()");
  host.WaitItems(form, "ListParam", {"[date]", "[tolerance]"});
  host.See(form, "member", {{"EditLigne", "texte.Depasse"}, {"TextReturnType", "bool"}});
  form.Select("ListParam", "[date]");
  Expect(form.RadioItem("RadioParam") == "Falcutatif", "an optional parameter");
  form.Fill("EditValue", "Date");
  form.WaitText("EditLigne", "texte.Depasse Date");
  form.ToggleItem("ListParam", "[tolerance]");
  form.Fill("EditValue", "5");
  form.WaitText("EditLigne", "texte.Depasse Date, 5");
  form.Click("BoxUseReturn");
  form.WaitText("EditLigne", "texte.Depasse(Date, 5)");
  form.ToggleItem("ListParam", "[date]");
  host.See(form, "", {{"EditLigne", "texte.Depasse(, 5)"}, {"EditValue", ""}});
  form.Click("EditLigne");
  form.Press(VK_HOME);
  form.Press(VK_END, mdShift);
  form.Type("texte.categorie.nomcomplet");
  host.See(form, "", {{"ButUpdt", form.Text("ButUpdt")}});
  form.Click("ButUpdt");
  host.See(form, "", {{"ButUpdt", form.Text("ButUpdt"), false}});
  form.StepUp("UpDown");
  host.See(form, "typed",
           {{"EditLigne", "texte.Categorie.NomComplet"},
            {"ButUpdt", form.Text("ButUpdt"), false},
            {"BoxType", "Categorie"}});
  form.Click("ButDelete");
  form.WaitText("EditLigne", "texte.Categorie");
  form.Click("ButtonCancel");
  form.WaitGone();
  Expect(host.Script() == before, "Cancel leaves the script alone");
}

/// A function of the language; its parameters explained.
void FunctionCall(TTourHost& host) {
  host.Window().Press(VK_F1);
  TFormDriver form = host.User().WaitForForm("TDlgSyntax");
  host.See(form, "opened",
           {{"EditHelpType", "Fonction Visual Basic"},
            {"BoxType", "", false},
            {"BoxMethod", "MsgBox()"},
            {"ButDelete", form.Text("ButDelete"), false},
            {"TextReturnType", "Integer"}});
  host.WaitItems(form, "ListParam",
                 {"message", "[boutons]", "[titre]", "[fichierAide]", "[contexte]"});
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
  host.See(picker, "opened",
           {{"EditResult", "vbExclamation + vbOKOnly"},
            {"BoxCat", "StyleMsgBox"},
            {"EditType", "Integer"},
            {"EditConstHelp", ""}});
  picker.ToggleItem("ListConst", "vbYesNo");
  picker.Select("ListConst", "vbYesNo");
  host.See(
      picker, "ticked",
      {{"EditResult", "vbOKOnly+vbYesNo+vbExclamation"}, {"EditConstHelp", "Boutons Oui et Non."}});
  picker.Click("ButtonOK");
  picker.WaitGone();
  host.See(form, "value",
           {{"EditValue", "vbOKOnly+vbYesNo+vbExclamation"},
            {"EditLigne", "MsgBox texte, vbOKOnly+vbYesNo+vbExclamation, \"Budgets dépassés\""}});
  form.DoubleClickItem("ListParam", "[boutons]");  // another way to it
  picker = host.User().WaitForForm("TDlgSyntaxConst");
  picker.Click("ButClear");
  picker.WaitText("EditResult", "");
  picker.Press(VK_RETURN);
  picker.WaitGone();
  host.See(form, "", {{"EditValue", ""}});
  form.Press(VK_ESCAPE);
  form.WaitGone();
}

/// The types of the script's variables: one is added, renamed, given a type, and one is deleted;
/// first left as they were, then kept.
void Types(TTourHost& host) {
  const std::string before = host.Script();
  for (const bool confirm : {false, true}) {
    host.Window().Press(VK_F3);
    TFormDriver form = host.User().WaitForForm("TDlgSyntaxTypes");
    host.WaitItems(form, "BoxConst", {"rapport", "unBudget"});
    host.See(form, "opened",
             {{"BtnAdd", "Ajouter", false},
              {"EditModif", "", false},
              {"BtnValidNom", form.Text("BtnValidNom"), false},
              {"BtnDel", form.Text("BtnDel"), false}});
    form.Select("BoxConst", "unBudget");
    host.See(form, "selected",
             {{"EditModif", "unBudget"},
              {"BoxTypes", "Budget"},
              {"BtnValidNom", form.Text("BtnValidNom"), false},
              {"BtnDel", form.Text("BtnDel")}});
    form.Fill("EditNew", "RAPPORT");
    form.WaitText("EditNew", "RAPPORT");
    host.See(form, "", {{"BtnAdd", "Ajouter", false}});
    form.Fill("EditNew", "texte");
    host.See(form, "new", {{"BtnAdd", "Ajouter"}});
    form.Click("BtnAdd");
    host.WaitItems(form, "BoxConst", {"rapport", "texte", "unBudget"});
    form.Select("BoxTypes", "Budgets");
    form.WaitText("BoxTypes", "Budgets");
    form.Fill("EditModif", "texte2");
    host.See(form, "", {{"BtnValidNom", form.Text("BtnValidNom")}});
    form.Click("BtnValidNom");
    host.See(form, "", {{"BoxConst", "texte2"}, {"BoxTypes", "Budgets"}});
    form.Select("BoxConst", "rapport");
    form.WaitText("EditModif", "rapport");
    form.Click("BtnDel");
    host.WaitItems(form, "BoxConst", {"texte2", "unBudget"});
    form.Click(confirm ? "ButtonOK" : "ButtonCancel");
    form.WaitGone();
    Expect(confirm || host.Script() == before, "Cancel leaves the script alone");
  }
  host.WaitScript("'types: unBudget=Budget,texte2=Budgets");
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
  again.WaitScript("Option Explicit");
  again.PictureOfAll("picture");
  move(again, first);
  again.Quit();
  Expect(EqualRect(&found, &other), "the place where the window was left");
}

void SetSetting(const wchar_t* name, const std::wstring& value) {
  RegSetKeyValueW(HKEY_CURRENT_USER, TSavedSettings::Product, name, REG_SZ, value.c_str(),
                  static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

/// A user's list of one accounts directory, which opens by itself, or an empty list.
void KeepDirectories(const std::wstring& directory) {
  if (directory.empty()) return SetSetting(L"NbDirAlias", L"0");
  SetSetting(L"DirAliasName0", L"Comptes de la visite");
  SetSetting(L"DirAliasPath0", directory);
  SetSetting(L"DirAliasDefault", L"Comptes de la visite");
  SetSetting(L"NbDirAlias", L"1");
}

/// Gives a directory a name in the box that asks for one.
void Name(TTourHost& host, TFormDriver& form, const char* button, const char* prompt,
          const char* name) {
  form.Click(button);
  TFormDriver box = host.User().WaitForForm("TInputBox");
  box.WaitFocus("Value");
  box.Type(name);
  host.See(box, "name", {{"Prompt", prompt}, {"Value", name}});
  box.Press(VK_RETURN);
  box.WaitGone();
}

void AddDirectory(TTourHost& host, TFormDriver& form, const char* name, const char* path) {
  Name(host, form, "BtnAdd", "Nouveau répertoire", name);
  host.User().WaitUntil("the new entry", [&] { return form.SelectedItem("ListRep") == name; });
  form.Fill("EditRep", path);
}

/// Leaves a message box that says so by a button: 1 OK, 6 yes, 7 no.
void Answer(TTourHost& host, const char* caption, std::string_view text, const char* button) {
  TFormDriver box = host.User().WaitForMessageBox(caption);
  bool said = false;
  for (const HWND child : Descendants(box.Handle())) said |= TextOf(child) == text;
  Expect(said, caption);
  box.Click(button);
  box.WaitGone();
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

/// An empty list: directories are added, renamed and deleted, one is opened. Then the list from the
/// menu.
void Directories(TTourHost& host) {
  TFormDriver form = host.User().WaitForForm("TDlgDirSelect");
  host.WaitItems(form, "ListRep", {});
  host.See(form, "empty",
           {{"BtnRename", "Renommer", false},
            {"BtnDel", "Effacer", false},
            {"BtnMove", "Déplacer", false},
            {"EditRep", "", false},
            {"BoxDefault", form.Text("BoxDefault"), false}});
  form.Click("ButtonOK");
  Answer(host, "Erreur", "Vous devez choisir un répertoire !", "#1");
  AddDirectory(host, form, "Maison", "C:\\users");
  Expect(form.Checked("BoxDefault") == BST_CHECKED, "the first one opens by itself");
  AddDirectory(host, form, "Asso", "C:\\windows");
  Expect(form.Checked("BoxDefault") == BST_UNCHECKED, "the second one does not");
  Name(host, form, "BtnRename", "Nouveau Nom", "MAISON");
  Answer(host, "Erreur", "Erreur, MAISON existe déja !", "#1");
  Name(host, form, "BtnRename", "Nouveau Nom", "Association");
  host.WaitItems(form, "ListRep", {"Association", "Maison"});
  host.See(form, "filled", {{"ListRep", "Association"}, {"EditRep", "C:\\windows"}});
  form.Click("BtnBrowse");
  TFormDriver picker = host.User().WaitForMessageBox("Rechercher un dossier");
  host.User().WaitUntil("the folder", [&] { return picker.Text("#14149") == "windows"; });
  host.PictureOfAll("picker");
  picker.Click("#2");
  picker.WaitGone();
  AddDirectory(host, form, "à jeter", "");
  for (const char* button : {"#7", "#6"}) {
    form.Click("BtnDel");
    Answer(host, "Confirmation", "Confirmes vous la suppresion de à jeter ?", button);
  }
  host.See(form, "", {{"ListRep", ""}, {"BtnDel", "Effacer", false}, {"EditRep", "", false}});
  form.Select("ListRep", "Maison");
  form.Click("ButtonOK");
  form.WaitGone();
  host.User().WaitUntil("the directory in the title",
                        [&] { return host.Window().Caption().ends_with("C:\\users"); });
  host.Picture(host.Window(), "opened");
  host.User().Press(VK_F4);
  form = host.User().WaitForForm("TDlgDirSelect");
  host.WaitItems(form, "ListRep", {"Association", "Maison"});
  host.See(form, "again", {{"ListRep", "Maison"}, {"EditRep", "C:\\users"}});
  Expect(form.Checked("BoxDefault") == BST_CHECKED, "it opens by itself");
  form.Press(VK_ESCAPE);
  form.WaitGone();
}

/// A new version, offered and downloaded.
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

/// White on black, as those choose who see little, while there is an object of this kind.
class THighContrast {
 public:
  THighContrast() {
    for (const int element : Elements) FBefore.push_back(GetSysColor(element));
    std::vector<COLORREF> colours;
    for (const int element : Elements) colours.push_back(ColourOf(element));
    Set(colours, HCF_HIGHCONTRASTON);
  }
  THighContrast(const THighContrast&) = delete;
  THighContrast& operator=(const THighContrast&) = delete;
  ~THighContrast() { Set(FBefore, 0); }

 private:
  static constexpr int Elements[] = {
      COLOR_WINDOW,       COLOR_WINDOWTEXT,    COLOR_BTNFACE,       COLOR_BTNTEXT,
      COLOR_BTNSHADOW,    COLOR_BTNHIGHLIGHT,  COLOR_3DLIGHT,       COLOR_3DDKSHADOW,
      COLOR_GRAYTEXT,     COLOR_HIGHLIGHT,     COLOR_HIGHLIGHTTEXT, COLOR_MENU,
      COLOR_MENUTEXT,     COLOR_MENUBAR,       COLOR_INFOBK,        COLOR_INFOTEXT,
      COLOR_APPWORKSPACE, COLOR_ACTIVECAPTION, COLOR_CAPTIONTEXT};
  static COLORREF ColourOf(int element) {
    switch (element) {
      case COLOR_GRAYTEXT:
        return RGB(0, 255, 0);
      case COLOR_HIGHLIGHT:
        return RGB(0, 128, 255);
      case COLOR_ACTIVECAPTION:
        return RGB(128, 0, 128);
      case COLOR_WINDOWTEXT:
      case COLOR_BTNTEXT:
      case COLOR_BTNSHADOW:
      case COLOR_BTNHIGHLIGHT:
      case COLOR_HIGHLIGHTTEXT:
      case COLOR_MENUTEXT:
      case COLOR_INFOTEXT:
      case COLOR_CAPTIONTEXT:
        return RGB(255, 255, 255);
      default:
        return RGB(0, 0, 0);
    }
  }
  static void Set(const std::vector<COLORREF>& colours, DWORD flags) {
    HIGHCONTRASTW contrast{};
    contrast.cbSize = sizeof contrast;
    contrast.dwFlags = flags | HCF_AVAILABLE;
    SystemParametersInfoW(SPI_SETHIGHCONTRAST, sizeof contrast, &contrast, 0);
    SetSysColors(static_cast<int>(colours.size()), Elements, colours.data());
  }

  std::vector<COLORREF> FBefore;
};

bool Make(const TStop& stop, const std::wstring& directory) {
  const TSavedSettings saved;
  // A null text leaves the cursor where the program puts it; an empty one is for an empty list.
  if (stop.Text) KeepDirectories(*stop.Text ? directory : L"");
  try {
    TTourHost host(directory, stop.Name, L"--script " + std::to_wstring(stop.Script));
    try {
      if (stop.Text && *stop.Text) host.GoTo(stop.Text);
      stop.Make(host);
      host.Quit();
      std::printf("%s: made\n", stop.Name);
      std::fflush(stdout);
      return true;
    } catch (const TUserError& error) {
      std::printf("%s: %s\nlast steps:\n%swindows:\n%s", stop.Name, error.what(),
                  host.User().LastSteps().c_str(), WindowTree(host.User().Process()).c_str());
      host.PictureOfAll("failed");
    }
  } catch (const TUserError& error) {
    std::printf("%s: %s\n", stop.Name, error.what());
  }
  return false;
}
}  // namespace

int wmain(int argc, wchar_t** argv) {
  const std::vector<std::wstring> arguments(argv + 1, argv + argc);
  if (arguments.empty()) {
    std::printf("tour DIRECTORY [--contrast] [STOP]\n");
    return 1;
  }
  const bool contrast = arguments.size() > 1 && arguments[1] == L"--contrast";
  std::optional<THighContrast> colours;
  if (contrast) colours.emplace();
  const std::wstring only = arguments.size() > (contrast ? 2 : 1) ? arguments.back() : L"";
  int failed = 0;
  for (const TStop& stop : Stops)
    if (only.empty() || Wide(stop.Name) == only) failed += Make(stop, arguments[0]) ? 0 : 1;
  return failed;
}
