#include <windows.h>

#include <commctrl.h>
// Before the header whose identifiers it defines.
#include <initguid.h>
#include <oleacc.h>

#include <map>

#include "outside/syntax_test.h"

namespace {

/// Stands in for the system's service that tells assistive tools what a window is called, and
/// notes what it is asked to tell.
class TAnnotationServer final : public IClassFactory, public IAccPropServices {
 public:
  TAnnotationServer() {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    CoRegisterClassObject(CLSID_AccPropServices, static_cast<IClassFactory*>(this),
                          CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &FRegistration);
  }
  TAnnotationServer(const TAnnotationServer&) = delete;
  TAnnotationServer& operator=(const TAnnotationServer&) = delete;
  ~TAnnotationServer() {
    CoRevokeClassObject(FRegistration);
    CoUninitialize();
  }

  struct TTold {
    std::string Name, Description;
  };
  std::map<HWND, TTold> Told;

  HRESULT WINAPI QueryInterface(REFIID id, void** object) override {
    if (id == IID_IAccPropServices)
      *object = static_cast<IAccPropServices*>(this);
    else
      *object = static_cast<IClassFactory*>(this);
    return S_OK;
  }
  ULONG WINAPI AddRef() override { return 2; }
  ULONG WINAPI Release() override { return 1; }
  HRESULT WINAPI CreateInstance(IUnknown*, REFIID id, void** object) override {
    return QueryInterface(id, object);
  }
  HRESULT WINAPI LockServer(BOOL) override { return S_OK; }

  HRESULT WINAPI SetHwndPropStr(HWND window, DWORD object, DWORD child, MSAAPROPID property,
                                LPCWSTR text) override {
    EXPECT_EQ(object, static_cast<DWORD>(OBJID_CLIENT));
    EXPECT_EQ(child, static_cast<DWORD>(CHILDID_SELF));
    (property == PROPID_ACC_NAME ? Told[window].Name : Told[window].Description) = Utf8(text);
    return S_OK;
  }
  HRESULT WINAPI ClearHwndProps(HWND window, DWORD, DWORD, const MSAAPROPID*, int) override {
    EXPECT_TRUE(IsWindow(window));
    Told.erase(window);
    return S_OK;
  }

  HRESULT WINAPI SetPropValue(const BYTE*, DWORD, MSAAPROPID, VARIANT) override { return No(); }
  HRESULT WINAPI SetPropServer(const BYTE*, DWORD, const MSAAPROPID*, int, IAccPropServer*,
                               AnnoScope) override {
    return No();
  }
  HRESULT WINAPI ClearProps(const BYTE*, DWORD, const MSAAPROPID*, int) override { return No(); }
  HRESULT WINAPI SetHwndProp(HWND, DWORD, DWORD, MSAAPROPID, VARIANT) override { return No(); }
  HRESULT WINAPI SetHwndPropServer(HWND, DWORD, DWORD, const MSAAPROPID*, int, IAccPropServer*,
                                   AnnoScope) override {
    return No();
  }
  HRESULT WINAPI ComposeHwndIdentityString(HWND, DWORD, DWORD, BYTE**, DWORD*) override {
    return No();
  }
  HRESULT WINAPI DecomposeHwndIdentityString(const BYTE*, DWORD, HWND*, DWORD*, DWORD*) override {
    return No();
  }
  HRESULT WINAPI SetHmenuProp(HMENU, DWORD, MSAAPROPID, VARIANT) override { return No(); }
  HRESULT WINAPI SetHmenuPropStr(HMENU, DWORD, MSAAPROPID, LPCWSTR) override { return No(); }
  HRESULT WINAPI SetHmenuPropServer(HMENU, DWORD, const MSAAPROPID*, int, IAccPropServer*,
                                    AnnoScope) override {
    return No();
  }
  HRESULT WINAPI ClearHmenuProps(HMENU, DWORD, const MSAAPROPID*, int) override { return No(); }
  HRESULT WINAPI ComposeHmenuIdentityString(HMENU, DWORD, BYTE**, DWORD*) override { return No(); }
  HRESULT WINAPI DecomposeHmenuIdentityString(const BYTE*, DWORD, HMENU*, DWORD*) override {
    return No();
  }

 private:
  static HRESULT No() { return E_NOTIMPL; }

  DWORD FRegistration = 0;
};

/// Types enough to fill any list, and one with members of the same initial.
std::string LargeDatabase() {
  std::string xml = "<objects>";
  for (char letter = 'A'; letter <= 'Z'; ++letter)
    xml += std::string("<object name=\"Type") + letter + "\"><data name=\"X\"/></object>";
  xml +=
      "<object name=\"Compte\"><data name=\"Nom\" type=\"String\"/><data name=\"Note\"/>"
      "<data name=\"Numero\"/><method name=\"Fermer\"><param name=\"raison\"/></method>";
  for (int i = 0; i < 20; ++i) xml += "<data name=\"Z" + std::to_string(i) + "\"/>";
  return xml + "</object></objects>";
}

/// Whole lines that the open list of a combo box shows.
int LinesShown(TScriptedUser& user) {
  HWND list = nullptr;
  user.WaitUntil("an open list", [&] {
    for (const HWND window : TopWindows(GetCurrentProcessId()))
      if (Shown(window) && ClassOf(window) == "ComboLBox") list = window;
    return list != nullptr;
  });
  RECT client{};
  GetClientRect(list, &client);
  return static_cast<int>(client.bottom / Ask(list, LB_GETITEMHEIGHT));
}

}  // namespace

/// What every kind of control does in any dialog, tried in the one that has them all.
class Controls : public TSyntaxTest {
 protected:
  void SetUp() override {
    TSyntaxTest::SetUp();
    Database.reset();
    Database.emplace(LargeDatabase());
  }
};

TEST_F(Controls, AreCalledByTheirOwnLabelOrHint) {
  TAnnotationServer server;
  Assist("", 0, [&](TScriptedUser&, TFormDriver& form) {
    const struct {
      const char* Control;
      const char* Name;
      const char* Description;
    } cases[] = {
        {"EditValue", "Valeur :", "Valeur à utiliser pour le paramètre"},
        {"BoxMethod", "Liste des méthodes et des propriétés disponibles pour l'objet en cours", ""},
        {"EditHelpType", "Donne une aide sur le type sélectionné", ""},
        {"ButtonHelp", "", "Affiche l'aide sur cette fenêtre"},
        {"TextDefVal", "", "Valeur par défaut si le paramètre est falcutatif"},
    };
    for (const auto& each : cases) {
      SCOPED_TRACE(each.Control);
      const auto& told = server.Told[form.Control(each.Control)];
      EXPECT_EQ(told.Name, each.Name);
      EXPECT_EQ(told.Description, each.Description);
    }
    const HWND inner = GetWindow(form.Control("BoxMethod"), GW_CHILD);
    EXPECT_EQ(server.Told[inner].Name, cases[1].Name) << "which has the focus";
  });
  Library->VCLFree();
  EXPECT_TRUE(server.Told.empty());
}

TEST_F(Controls, DropAsManyLinesAsLaidOut) {
  const auto drops = [](TScriptedUser& user, TFormDriver& form, const char* box, int lines) {
    SCOPED_TRACE(box);
    form.TabTo(box);
    form.Press(VK_DOWN, mdAlt);
    EXPECT_EQ(LinesShown(user), lines);
    form.Press(VK_ESCAPE);
  };
  Assist(
      "c.", 2,
      [&](TScriptedUser& user, TFormDriver& form) {
        drops(user, form, "BoxMethod", 8);
        drops(user, form, "BoxType", 10);
      },
      "c=Compte");
  EditTypes("c=Compte",
            [&](TScriptedUser& user, TFormDriver& form) { drops(user, form, "BoxTypes", 8); });
}

TEST_F(Controls, AnswerKeysAsTheirKindShould) {
  const TAssisted result = Assist(
      "c.", 2,
      [](TScriptedUser&, TFormDriver& form) {
        form.WaitFocus("BoxMethod");
        // An open list that is left by Escape has chosen nothing.
        form.Press(VK_DOWN, mdAlt);
        form.Press(VK_DOWN);
        form.Press(VK_ESCAPE);
        EXPECT_EQ(form.SelectedItem("BoxMethod"), "");
        EXPECT_EQ(form.Text("EditLigne"), "c.");
        form.Press(VK_DOWN, mdAlt);
        form.Press(VK_DOWN);
        form.Press(VK_RETURN);
        EXPECT_EQ(form.Text("EditLigne"), "c.Fermer");
        // The same letter walks on, round the end as well.
        for (const char* next : {"Nom", "Note", "Numero", "Nom"}) {
          form.Type("n");
          EXPECT_EQ(form.SelectedItem("BoxMethod"), next);
        }
        // Enter presses the button that has the focus; what is disabled by that hands the focus on.
        form.TabTo("ButDelete");
        form.Press(VK_RETURN);
        EXPECT_EQ(form.Text("EditLigne"), "c");
        form.WaitFocus("BoxMethod");
        EXPECT_EQ(GetWindowLongW(form.Control("ButDelete"), GWL_STYLE) & BS_TYPEMASK, BS_OWNERDRAW);
        // What the host's code page lacks shows as what the host will get.
        form.TabTo("EditLigne");
        form.Fill("EditLigne", "c.Ω→é(1)");
        EXPECT_EQ(form.Text("EditLigne"), FromAnsi(Ansi("c.Ω→é(1)")));
        form.Fill("EditLigne", "c.Fermer 1");
        form.Click("ButUpdt");
        form.Select("ListParam", "raison");
        // At its end the arrow does nothing at all.
        form.StepDown("UpDown");
        EXPECT_TRUE(form.Enabled("EditValue"));
        // A group that only shows is one stop, where the arrows stay.
        form.TabTo("RadioParam0");
        form.Press(VK_RIGHT);
        EXPECT_EQ(form.Focus(), "RadioParam0");
        EXPECT_EQ(form.RadioItem("RadioParam"), "Obligatoire");
        form.Press(VK_TAB);
        EXPECT_EQ(form.Focus(), "EditParamHelp");
      },
      "c=Compte");
  EXPECT_EQ(result.Line, "c.Fermer 1");
}
