#include <windows.h>

#include <string>

#include "commands.h"
#include "tour/stops.h"
#include "user/window.h"

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
  host.User().WaitUntil("an optional parameter",
                        [&] { return form.RadioItem("RadioParam") == "Falcutatif"; });
  form.Fill("EditValue", "zefPointee");
  form.WaitText("EditMethod", "SoldeAu(Date, zefPointee)");
  form.Click("ButtonOK");
  form.WaitGone();
  host.WaitScript("courant.SoldeAu(Date, zefPointee)");
  host.WaitScript("courant=Cpt");
  host.Picture(host.Window(), "rewritten");
}

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
  host.User().WaitUntil("one step back", [&] { return form.Position("UpDown") == last - 1; });
  form.Press(VK_ESCAPE);
  form.WaitGone();
  Expect(host.Script() == before, "Cancel leaves the script alone");
}

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
  host.User().WaitUntil("an optional parameter",
                        [&] { return form.RadioItem("RadioParam") == "Falcutatif"; });
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
  form.Keys("Home Shift+End texte.categorie.nomcomplet");
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
