#include <windows.h>

#include "tour/stops.h"

namespace {

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

/// Leaves a message box that says so by a button.
void Answer(TTourHost& host, const char* caption, std::string_view text, int button) {
  Expect(host.User().AnswerMessageBox(caption, button) == text, caption);
}

}  // namespace

void FirstStart(TTourHost& host) {
  Expect(host.Window().Caption().ends_with("\\Comptes"), "the program's own directory");
  host.Picture(host.Window(), "host");
  host.Window().Press(VK_F1);
  TFormDriver form = host.User().WaitForForm("TDlgSyntax");
  host.User().WaitUntil("a type that the assistant knows",
                        [&] { return !form.SelectedItem("BoxType").empty(); });
  form.Press(VK_ESCAPE);
  form.WaitGone();
}

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
  Answer(host, "Erreur", "Vous devez choisir un répertoire !", IDOK);
  AddDirectory(host, form, "Maison", "C:\\users");
  host.User().WaitUntil("the first one opens by itself",
                        [&] { return form.Checked("BoxDefault") == BST_CHECKED; });
  AddDirectory(host, form, "Asso", "C:\\windows");
  host.User().WaitUntil("the second one does not",
                        [&] { return form.Checked("BoxDefault") == BST_UNCHECKED; });
  Name(host, form, "BtnRename", "Nouveau Nom", "MAISON");
  Answer(host, "Erreur", "Erreur, MAISON existe déja !", IDOK);
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
  for (const int button : {IDNO, IDYES}) {
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
  host.User().WaitUntil("it opens by itself",
                        [&] { return form.Checked("BoxDefault") == BST_CHECKED; });
  form.Press(VK_ESCAPE);
  form.WaitGone();
}
