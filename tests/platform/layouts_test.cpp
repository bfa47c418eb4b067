// Every layout of the library as a form, on every kind of screen: whoever adds one has it tested.
#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>
// Before the header whose identifiers it defines.
#include <initguid.h>
#include <oleacc.h>

#include <algorithm>
#include <map>
#include <memory>
#include <set>

#include "forms/dpi.h"
#include "forms/form.h"
#include "forms/rules/layout_words.h"
#include "forms/std_controls.h"
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

  struct TTold {
    std::string Name, Description;
  };
  std::map<HWND, TTold> Told;

  /// What is heard when the window gets the focus.
  std::string NameOf(HWND window) const {
    const auto told = Told.find(window);
    return told == Told.end() || told->second.Name.empty() ? TextOf(window) : told->second.Name;
  }

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

BOOL CALLBACK AddName(HMODULE, LPCSTR, LPSTR name, LONG_PTR list) {
  reinterpret_cast<std::vector<std::string>*>(list)->emplace_back(name);
  return TRUE;
}

std::vector<std::string> LayoutNames() {
  std::vector<std::string> names;
  EnumResourceNamesA(TApplication::Instance(), "FORM", AddName, reinterpret_cast<LONG_PTR>(&names));
  return names;
}

/// In the content of the form, however far that is scrolled.
RECT InContent(HWND form, HWND child) {
  RECT bounds = BoundsOf(child);
  MapWindowPoints(nullptr, form, reinterpret_cast<POINT*>(&bounds), 2);
  OffsetRect(&bounds, GetScrollPos(form, SB_HORZ), GetScrollPos(form, SB_VERT));
  return bounds;
}

std::vector<HWND> ShownChildren(HWND form) {
  std::vector<HWND> children;
  for (HWND child = GetWindow(form, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    if (GetWindowLongW(child, GWL_STYLE) & WS_VISIBLE) children.push_back(child);
  }
  return children;
}

/// The width that a window needs for its caption; 0 when it has none or may cut it.
LONG NeededWidth(HWND window, int dpi) {
  const auto style = static_cast<DWORD>(GetWindowLongW(window, GWL_STYLE));
  const bool button = ClassOf(window) == "Button";
  const DWORD kind = style & BS_TYPEMASK;
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
  const RECT area = WorkAreaOf(window);
  EXPECT_TRUE(window.left >= area.left && window.top >= area.top && window.right <= area.right &&
              window.bottom <= area.bottom)
      << "leaves the work area";
  RECT client{};
  GetClientRect(form.Handle(), &client);
  const auto style = static_cast<DWORD>(GetWindowLongW(form.Handle(), GWL_STYLE));
  if (style & WS_HSCROLL) client.right = LONG_MAX;
  if (style & WS_VSCROLL) client.bottom = LONG_MAX;
  const auto children = ShownChildren(form.Handle());
  for (const HWND child : children) {
    SCOPED_TRACE(NameOf(child));
    const RECT bounds = InContent(form.Handle(), child);
    EXPECT_TRUE(bounds.left >= 0 && bounds.top >= 0 && bounds.right <= client.right &&
                bounds.bottom <= client.bottom)
        << "leaves the form: " << bounds.right << " x " << bounds.bottom << " in " << client.right
        << " x " << client.bottom;
    EXPECT_LT(bounds.left, bounds.right);
    EXPECT_LT(bounds.top, bounds.bottom);
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

struct TScreen {
  const char* Name;
  DWORD Width, Height;
  int Dpi;
};

void SetDesktop(DWORD width, DWORD height) {
  DEVMODEW mode{};
  mode.dmSize = sizeof mode;
  mode.dmFields = DM_PELSWIDTH | DM_PELSHEIGHT | DM_BITSPERPEL;
  mode.dmBitsPerPel = 32;
  mode.dmPelsWidth = width;
  mode.dmPelsHeight = height;
  ASSERT_EQ(ChangeDisplaySettingsW(&mode, 0), DISP_CHANGE_SUCCESSFUL);
  ASSERT_EQ(GetSystemMetrics(SM_CXSCREEN), static_cast<int>(width));
}

class Layouts : public testing::TestWithParam<TScreen> {
 protected:
  Layouts() { SetDesktop(GetParam().Width, GetParam().Height); }
  ~Layouts() override { ChangeDisplaySettingsW(nullptr, 0); }
};

TEST_P(Layouts, HaveRoomForEverything) {
  const auto names = LayoutNames();
  ASSERT_GT(names.size(), 5u);
  for (const auto& name : names) {
    SCOPED_TRACE(name);
    const auto form = CreateForm<TAnyForm>(name);
    RECT bounds = form->WindowBounds();
    SendMessageW(form->Handle(), WM_DPICHANGED, MAKEWPARAM(GetParam().Dpi, GetParam().Dpi),
                 reinterpret_cast<LPARAM>(&bounds));
    ASSERT_EQ(form->Dpi(), GetParam().Dpi);
    ExpectSoundPlaces(*form);
    // As small as it goes: those that cannot be sized have to scroll.
    SetWindowPos(form->Handle(), nullptr, 0, 0, 300, 150, SWP_NOMOVE | SWP_NOACTIVATE);
    ExpectSoundPlaces(*form);
  }
}

INSTANTIATE_TEST_SUITE_P(Screens, Layouts,
                         testing::Values(TScreen{"Plain", 1600, 1200, 96},
                                         TScreen{"Fine", 1600, 1200, 144},
                                         TScreen{"Laptop", 1366, 768, 96},
                                         TScreen{"FineLaptop", 1366, 768, 144},
                                         TScreen{"Tiny", 640, 480, 144}),
                         [](const auto& screen) { return screen.param.Name; });

// Open, hidden or minimised while the screen changes: always inside it, and in the end as large as
// the user made it.
TEST(LayoutSizes, OutlastASmallerScreen) {
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
  ChangeDisplaySettingsW(nullptr, 0);
}

/// What the button that a key presses does: its result, its handler; nothing when it presses none.
void ExpectPressed(TAnyForm& form, const TButton* button) {
  EXPECT_EQ(form.ModalResult(), button ? button->ModalResult() : mrNone);
  const auto* click = button ? button->Layout().Find("click") : nullptr;
  EXPECT_EQ(form.Pressed, click ? click->Values[0] : "");
}

void Press(TAnyForm& form, const TControl& control, WPARAM key) {
  SendMessageW(form.Handle(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control.Handle()), TRUE);
  form.SetModalResult(mrNone);
  form.Pressed.clear();
  for (const UINT message : {WM_KEYDOWN, WM_KEYUP}) {
    MSG typed{GetFocus(), message, key, static_cast<LPARAM>(message == WM_KEYUP ? 0xC0000001 : 1),
              0,          {}};
    if (!IsDialogMessageW(form.Handle(), &typed)) DispatchMessageW(&typed);
  }
  // Memos pass such keys on by posting.
  for (MSG posted; PeekMessageW(&posted, nullptr, 0, 0, PM_REMOVE);) DispatchMessageW(&posted);
}

TEST(LayoutKeys, EveryTabStopObeysEnterSpaceAndEscape) {
  TAnnotationServer server;
  for (const auto& name : LayoutNames()) {
    SCOPED_TRACE(name);
    ASSERT_TRUE(server.Told.empty());
    const auto form = CreateForm<TAnyForm>(name);
    form->Show();
    std::set<std::string> heard;
    for (TControl* control : form->Controls()) {
      SCOPED_TRACE(control->Name());
      const auto style = static_cast<DWORD>(GetWindowLongW(control->Handle(), GWL_STYLE));
      if (!(style & WS_TABSTOP) || !control->CanFocus()) continue;
      const auto* button = dynamic_cast<const TButton*>(control);
      const bool breaksLines = dynamic_cast<TMemo*>(control) && !(style & ES_READONLY);
      Press(*form, *control, VK_RETURN);
      ExpectPressed(*form, button ? button : breaksLines ? nullptr : form->DefaultButton());
      Press(*form, *control, VK_SPACE);
      ExpectPressed(*form, button);
      Press(*form, *control, VK_ESCAPE);
      const auto cancel = std::ranges::find_if(form->Controls(), [](const TControl* each) {
        return each->Layout().Find("cancel") != nullptr;
      });
      ExpectPressed(*form, cancel == form->Controls().end()
                               ? nullptr
                               : dynamic_cast<const TButton*>(*cancel));
      // Of a control made of several windows, an inner one has the focus.
      const HWND inner = IsChild(control->Handle(), GetFocus()) ? GetFocus() : control->Handle();
      const std::string text = server.NameOf(inner);
      EXPECT_TRUE(!text.empty() && heard.insert(text).second) << "is heard as " << text;
    }
  }
}

}  // namespace
