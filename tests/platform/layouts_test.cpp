// Every layout of the library, as its own class makes it and as a form on every kind of screen:
// whoever adds one has it tested.
#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>
// Before the header whose identifiers it defines.
#include <initguid.h>
#include <oleacc.h>

#include <map>
#include <set>
#include <tuple>

#include "dialogs/base/example_view.h"
#include "directories/dlg_dir_select.h"
#include "filter/dlg_select_typ_op.h"
#include "forms/dpi.h"
#include "forms/rules/layout_words.h"
#include "forms/std_controls.h"
#include "frame/dlg_debug.h"
#include "syntax/dlg_syntax.h"
#include "update/dlg_ask_dwld.h"
#include "update/dlg_dwnld.h"
#include "user/say.h"
#include "user/window.h"

namespace {

/// A form of any layout, without the class that goes with it: notes which button is pressed.
class TAnyForm : public TForm {
 public:
  explicit TAnyForm(std::string name) : FName(std::move(name)) {}
  const char* ClassName() const override { return FName.c_str(); }

  std::string Pressed;

 protected:
  void Bind(TFormBinder& binder) override {
    BindItem(binder, Layout());
    for (const TControl* control : Controls()) BindItem(binder, control->Layout());
  }

 private:
  void BindItem(TFormBinder& binder, const TLayoutItem& item) {
    for (const auto& property : item.Properties) {
      if (!FindLayoutWord(property.Name)->Event) continue;
      const std::string handler = property.Values[0];
      const bool press = property.Name == "click" && item.Kind.ends_with("button");
      binder.Handler(handler, [this, handler, press] {
        if (press) Pressed = handler;
      });
      binder.CloseQueryHandler(handler, [] { return true; });
      binder.HelpHandler(handler, [](UINT, int, bool&) { return true; });
    }
  }

  std::string FName;
};

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

  std::map<HWND, std::map<bool, std::string>> Told;  ///< names (true) and descriptions

  HRESULT WINAPI QueryInterface(REFIID id, void** object) override {
    *object = static_cast<IClassFactory*>(this);
    if (id == IID_IAccPropServices) *object = static_cast<IAccPropServices*>(this);
    return S_OK;
  }
  ULONG WINAPI AddRef() override { return 2; }
  ULONG WINAPI Release() override { return 1; }
  HRESULT WINAPI CreateInstance(IUnknown*, REFIID id, void** object) override {
    return QueryInterface(id, object);
  }
  HRESULT WINAPI SetHwndPropStr(HWND window, DWORD object, DWORD child, MSAAPROPID property,
                                LPCWSTR text) override {
    EXPECT_TRUE(object == static_cast<DWORD>(OBJID_CLIENT) && child == CHILDID_SELF);
    Told[window][property == PROPID_ACC_NAME] = Utf8(text);
    return S_OK;
  }
  HRESULT WINAPI ClearHwndProps(HWND window, DWORD, DWORD, const MSAAPROPID*, int) override {
    EXPECT_TRUE(IsWindow(window));
    Told.erase(window);
    return S_OK;
  }

#define NEVER_ASKED(name, ...) \
  HRESULT WINAPI name(__VA_ARGS__) override { return E_NOTIMPL; }
#define KEY const BYTE*, DWORD
#define SERVER const MSAAPROPID*, int, IAccPropServer*, AnnoScope
  NEVER_ASKED(LockServer, BOOL)
  NEVER_ASKED(SetPropValue, KEY, MSAAPROPID, VARIANT)
  NEVER_ASKED(SetPropServer, KEY, SERVER)
  NEVER_ASKED(ClearProps, KEY, const MSAAPROPID*, int)
  NEVER_ASKED(SetHwndProp, HWND, DWORD, DWORD, MSAAPROPID, VARIANT)
  NEVER_ASKED(SetHwndPropServer, HWND, DWORD, DWORD, SERVER)
  NEVER_ASKED(ComposeHwndIdentityString, HWND, DWORD, DWORD, BYTE**, DWORD*)
  NEVER_ASKED(DecomposeHwndIdentityString, KEY, HWND*, DWORD*, DWORD*)
  NEVER_ASKED(SetHmenuProp, HMENU, DWORD, MSAAPROPID, VARIANT)
  NEVER_ASKED(SetHmenuPropStr, HMENU, DWORD, MSAAPROPID, LPCWSTR)
  NEVER_ASKED(SetHmenuPropServer, HMENU, DWORD, SERVER)
  NEVER_ASKED(ClearHmenuProps, HMENU, DWORD, const MSAAPROPID*, int)
  NEVER_ASKED(ComposeHmenuIdentityString, HMENU, DWORD, BYTE**, DWORD*)
  NEVER_ASKED(DecomposeHmenuIdentityString, KEY, HMENU*, DWORD*)
#undef SERVER
#undef KEY
#undef NEVER_ASKED

 private:
  DWORD FRegistration = 0;
};

BOOL CALLBACK AddName(HMODULE, LPCSTR, LPSTR name, LONG_PTR names) {
  return reinterpret_cast<std::set<std::string>*>(names)->insert(name).second;
}

std::set<std::string> LayoutNames() {
  std::set<std::string> names;
  EnumResourceNamesA(TApplication::Instance(), "FORM", AddName, reinterpret_cast<LONG_PTR>(&names));
  return names;
}

DWORD StyleOf(HWND window) { return static_cast<DWORD>(GetWindowLongW(window, GWL_STYLE)); }

/// In the content of the form, however far that is scrolled.
RECT InContent(HWND form, HWND child) {
  RECT bounds = BoundsOf(child);
  MapWindowPoints(nullptr, form, reinterpret_cast<POINT*>(&bounds), 2);
  OffsetRect(&bounds, GetScrollPos(form, SB_HORZ), GetScrollPos(form, SB_VERT));
  return bounds;
}

bool Holds(const RECT& area, const RECT& part) {
  RECT both{};
  UnionRect(&both, &area, &part);
  return EqualRect(&both, &area);
}

/// The width that a window needs for its caption; 0 when it has none or may cut it.
LONG NeededWidth(HWND window, int dpi) {
  const DWORD style = StyleOf(window), kind = style & BS_TYPEMASK;
  const bool button = ClassOf(window) == "Button";
  if (button ? kind == BS_OWNERDRAW : ClassOf(window) != "Static" || (style & SS_SUNKEN)) return 0;
  const std::wstring text = Wide(TextOf(window));
  const HDC dc = GetDC(window);
  const auto font = reinterpret_cast<HGDIOBJ>(SendMessageW(window, WM_GETFONT, 0, 0));
  const HGDIOBJ before = SelectObject(dc, font);
  RECT room{};
  DrawTextW(dc, text.c_str(), -1, &room, DT_CALCRECT | DT_SINGLELINE);
  SelectObject(dc, before);
  ReleaseDC(window, dc);
  if (!button || text.empty()) return room.right;
  BUTTON_IMAGELIST images{};
  SendMessageW(window, BCM_GETIMAGELIST, 0, reinterpret_cast<LPARAM>(&images));
  const bool box = kind == BS_3STATE || kind == BS_AUTORADIOBUTTON;
  return room.right + MulDiv(images.himl ? 26 : box ? 18 : 8, dpi, 96);
}

void ExpectSoundPlaces(const TForm& form) {
  const RECT window = BoundsOf(form.Handle());
  EXPECT_TRUE(Holds(WorkAreaOf(window), window)) << "leaves the work area";
  RECT client{};
  GetClientRect(form.Handle(), &client);
  if (StyleOf(form.Handle()) & WS_HSCROLL) client.right = LONG_MAX;
  if (StyleOf(form.Handle()) & WS_VSCROLL) client.bottom = LONG_MAX;
  auto children = Descendants(form.Handle());
  std::erase_if(children, [&](HWND child) {
    return GetParent(child) != form.Handle() || !(StyleOf(child) & WS_VISIBLE);
  });
  for (const HWND child : children) {
    SCOPED_TRACE(NameOf(child));
    const RECT bounds = InContent(form.Handle(), child);
    EXPECT_TRUE(Holds(client, bounds) && !IsRectEmpty(&bounds))
        << "leaves the form: " << bounds.right << " x " << bounds.bottom;
    const TLayoutItem& layout = form.FindControl(child)->Layout();
    if (layout.Kind.ends_with("combo") || layout.Kind.starts_with("combo")) {
      EXPECT_EQ(bounds.bottom - bounds.top, form.Scaled(*layout.Bounds[3])) << "beside edits";
    }
    EXPECT_LE(NeededWidth(child, form.Dpi()), bounds.right - bounds.left) << TextOf(child);
    for (const HWND other : children) {
      const RECT others = InContent(form.Handle(), other);
      RECT common{};
      // The buttons of a group stand in its frame.
      const bool together = form.FindControl(child) == form.FindControl(other);
      EXPECT_TRUE(together || !IntersectRect(&common, &bounds, &others)) << NameOf(other);
    }
  }
}

/// As many pixels as given, and in the end as many as before.
class Layouts : public testing::Test {
 protected:
  ~Layouts() override { ChangeDisplaySettingsW(nullptr, 0); }
  static void SetDesktop(int width, int height) {
    DEVMODEW mode{};
    mode.dmSize = sizeof mode;
    mode.dmFields = DM_PELSWIDTH | DM_PELSHEIGHT | DM_BITSPERPEL;
    mode.dmBitsPerPel = 32;
    mode.dmPelsWidth = static_cast<DWORD>(width);
    mode.dmPelsHeight = static_cast<DWORD>(height);
    ASSERT_EQ(ChangeDisplaySettingsW(&mode, 0), DISP_CHANGE_SUCCESSFUL);
    ASSERT_EQ(GetSystemMetrics(SM_CXSCREEN), width);
  }
};

// With all controls, hidden ones included, and their handlers; what is wrong is thrown.
TEST_F(Layouts, AreThoseOfTheClassesThatAreMadeFromThem) {
  const auto forms = std::make_tuple(
      CreateForm<TDlgBase>(), CreateForm<TDialogViewBaseForm>(HWND{}),
      CreateForm<TExampleView>(HWND{}), CreateForm<TDlgDebug>(), CreateForm<TDlgSyntax>(),
      CreateForm<TDlgDirSelect>(), CreateForm<TDlgSelectTypOp>(), CreateForm<TDlgAskDwld>(),
      CreateForm<TDlgDwnld>());
  // These are made where they are used only.
  std::set<std::string> made{"TDLGDIRMOVE", "TINPUTBOX"};
  // With the dialogs that these make for themselves.
  for (const TForm* form : Application().Forms()) {
    std::string name = form->ClassName();
    CharUpperA(name.data());
    made.insert(name);
  }
  EXPECT_EQ(LayoutNames(), made);
}

TEST_F(Layouts, HaveRoomForEverything) {
  const struct {
    int Width, Height, Dpi;
  } screens[] = {
      {1600, 1200, 96}, {1600, 1200, 144}, {1366, 768, 96}, {1366, 768, 144}, {640, 480, 144}};
  for (const auto& screen : screens) {
    SetDesktop(screen.Width, screen.Height);
    for (const auto& name : LayoutNames()) {
      SCOPED_TRACE(Say(name, " on ", screen.Width, " at ", screen.Dpi));
      const auto form = CreateForm<TAnyForm>(name);
      RECT bounds = form->WindowBounds();
      SendMessageW(form->Handle(), WM_DPICHANGED, MAKEWPARAM(screen.Dpi, screen.Dpi),
                   reinterpret_cast<LPARAM>(&bounds));
      ASSERT_EQ(form->Dpi(), screen.Dpi);
      ExpectSoundPlaces(*form);
      // As small as it goes: those that cannot be sized have to scroll.
      SetWindowPos(form->Handle(), nullptr, 0, 0, 300, 150, SWP_NOMOVE | SWP_NOACTIVATE);
      ExpectSoundPlaces(*form);
    }
  }
}

// Open, hidden or minimised while the screen changes: always inside it, and in the end as large as
// the user made it.
TEST_F(Layouts, OutlastASmallerScreen) {
  SetDesktop(1600, 1200);
  const auto form = CreateForm<TAnyForm>("TDLGSELECTTYPOP");
  form->Show();
  SetWindowPos(form->Handle(), nullptr, 100, 50, 1300, 1000, SWP_NOZORDER);
  SendMessageW(form->Handle(), WM_EXITSIZEMOVE, 0, 0);
  for (const int aside : {SW_SHOW, SW_HIDE, SW_MINIMIZE}) {
    SCOPED_TRACE(aside);
    aside == SW_HIDE ? form->Hide() : void(ShowWindow(form->Handle(), aside));
    SetDesktop(800, 600);
    aside == SW_HIDE ? form->Show() : void(ShowWindow(form->Handle(), SW_RESTORE));
    ExpectSoundPlaces(*form);
    SetDesktop(1600, 1200);
    const RECT bounds = form->WindowBounds();
    EXPECT_EQ(bounds.right - bounds.left, 1300);
    EXPECT_EQ(bounds.bottom - bounds.top, 1000);
  }
}

/// A key on a control presses that button: what comes is its result and its handler; null: none.
void ExpectPressed(TAnyForm& form, const TControl& control, WPARAM key, const TControl* pressed) {
  SendMessageW(form.Handle(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control.Handle()), TRUE);
  form.SetModalResult(mrNone);
  form.Pressed.clear();
  for (const UINT message : {WM_KEYDOWN, WM_KEYUP}) {
    MSG typed{GetFocus(), message, key, message == WM_KEYUP ? ~0x3FFFFFFE : 1, 0, {}};
    if (!IsDialogMessageW(form.Handle(), &typed)) DispatchMessageW(&typed);
  }
  // Memos pass such keys on by posting.
  for (MSG posted; PeekMessageW(&posted, nullptr, 0, 0, PM_REMOVE);) DispatchMessageW(&posted);
  const auto* button = dynamic_cast<const TButton*>(pressed);
  EXPECT_EQ(form.ModalResult(), button ? button->ModalResult() : mrNone) << key;
  const auto* click = button ? button->Layout().Find("click") : nullptr;
  EXPECT_EQ(form.Pressed, click ? click->Values[0] : "") << key;
}

TEST_F(Layouts, LetEveryTabStopBeHeardAndObeyEnterSpaceAndEscape) {
  TAnnotationServer server;
  for (const auto& name : LayoutNames()) {
    SCOPED_TRACE(name);
    ASSERT_TRUE(server.Told.empty());
    const auto form = CreateForm<TAnyForm>(name);
    form->Show();
    const TControl* cancel = nullptr;
    for (const TControl* each : form->Controls())
      if (!cancel && each->Layout().Find("cancel")) cancel = each;
    std::set<std::string> heard;
    for (const TControl* control : form->Controls()) {
      SCOPED_TRACE(control->Name());
      const DWORD style = StyleOf(control->Handle());
      if (!(style & WS_TABSTOP) || !control->CanFocus()) continue;
      const auto* button = dynamic_cast<const TButton*>(control);
      const bool breaksLines = dynamic_cast<const TMemo*>(control) && !(style & ES_READONLY);
      const TControl* byEnter = breaksLines ? nullptr : form->DefaultButton();
      ExpectPressed(*form, *control, VK_RETURN, button ? button : byEnter);
      ExpectPressed(*form, *control, VK_SPACE, button);
      ExpectPressed(*form, *control, VK_ESCAPE, cancel);
      // Of a control made of several windows, an inner one has the focus.
      const HWND inner = IsChild(control->Handle(), GetFocus()) ? GetFocus() : control->Handle();
      const std::string told = server.Told.contains(inner) ? server.Told[inner][true] : "";
      const std::string text = told.empty() ? TextOf(inner) : told;
      EXPECT_TRUE(!text.empty() && heard.insert(text).second) << "is heard as " << text;
    }
  }
}

}  // namespace
