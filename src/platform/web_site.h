#pragma once

#include <windows.h>

#include <mshtmhst.h>
#include <ocidl.h>
#include <oleidl.h>

#include <atomic>
#include <string_view>

/// Whether a page is one of the web, and not of the machine or of a program on it.
bool IsWebPage(std::wstring_view address);

/// The place that a web browser control stands in, as the control sees it: a window that it fills,
/// and a host that shows nothing of what pages want to pop up and goes nowhere but to the web.
class TWebSite final : public IOleClientSite,
                       public IOleInPlaceSite,
                       public IOleInPlaceFrame,
                       public IOleControlSite,
                       public IDocHostUIHandler,
                       public IDocHostShowUI,
                       public IDispatch {
 public:
  /// Counts its references, the first being the maker's.
  explicit TWebSite(HWND window) : FWindow(window) {}
  TWebSite(const TWebSite&) = delete;
  TWebSite& operator=(const TWebSite&) = delete;
  virtual ~TWebSite() = default;

  RECT Place() const;

  STDMETHODIMP QueryInterface(REFIID id, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++FReferences; }
  STDMETHODIMP_(ULONG) Release() override;

  // IOleClientSite
  STDMETHODIMP SaveObject() override { return E_NOTIMPL; }
  STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
  STDMETHODIMP GetContainer(IOleContainer** container) override;
  STDMETHODIMP ShowObject() override { return S_OK; }
  STDMETHODIMP OnShowWindow(BOOL) override { return S_OK; }
  STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }

  // IOleWindow
  STDMETHODIMP GetWindow(HWND* window) override;
  STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }

  // IOleInPlaceSite
  STDMETHODIMP CanInPlaceActivate() override { return S_OK; }
  STDMETHODIMP OnInPlaceActivate() override { return S_OK; }
  STDMETHODIMP OnUIActivate() override { return S_OK; }
  STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document,
                                LPRECT place, LPRECT clip, LPOLEINPLACEFRAMEINFO info) override;
  STDMETHODIMP Scroll(SIZE) override { return E_NOTIMPL; }
  STDMETHODIMP OnUIDeactivate(BOOL) override { return S_OK; }
  STDMETHODIMP OnInPlaceDeactivate() override { return S_OK; }
  STDMETHODIMP DiscardUndoState() override { return E_NOTIMPL; }
  STDMETHODIMP DeactivateAndUndo() override { return E_NOTIMPL; }
  STDMETHODIMP OnPosRectChange(LPCRECT) override { return S_OK; }

  // IOleInPlaceFrame: without menus, tool bars and status bar
  STDMETHODIMP GetBorder(LPRECT) override { return INPLACE_E_NOTOOLSPACE; }
  STDMETHODIMP RequestBorderSpace(LPCBORDERWIDTHS) override { return INPLACE_E_NOTOOLSPACE; }
  STDMETHODIMP SetBorderSpace(LPCBORDERWIDTHS) override { return S_OK; }
  STDMETHODIMP SetActiveObject(IOleInPlaceActiveObject*, LPCOLESTR) override { return S_OK; }
  STDMETHODIMP InsertMenus(HMENU, LPOLEMENUGROUPWIDTHS) override { return E_NOTIMPL; }
  STDMETHODIMP SetMenu(HMENU, HOLEMENU, HWND) override { return S_OK; }
  STDMETHODIMP RemoveMenus(HMENU) override { return E_NOTIMPL; }
  STDMETHODIMP SetStatusText(LPCOLESTR) override { return S_OK; }
  STDMETHODIMP EnableModeless(BOOL) override { return S_OK; }
  STDMETHODIMP TranslateAccelerator(LPMSG, WORD) override { return S_FALSE; }

  // IOleControlSite: the focus leaves the page at either end of it
  STDMETHODIMP OnControlInfoChanged() override { return S_OK; }
  STDMETHODIMP LockInPlaceActive(BOOL) override { return S_OK; }
  STDMETHODIMP GetExtendedControl(IDispatch**) override { return E_NOTIMPL; }
  STDMETHODIMP TransformCoords(POINTL*, POINTF*, DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP TranslateAccelerator(MSG* message, DWORD modifiers) override;
  STDMETHODIMP OnFocus(BOOL) override { return S_OK; }
  STDMETHODIMP ShowPropertyFrame() override { return S_OK; }

  // IDocHostUIHandler: looks like one of our controls, without menus and dropping
  STDMETHODIMP ShowContextMenu(DWORD, POINT*, IUnknown*, IDispatch*) override { return S_OK; }
  STDMETHODIMP GetHostInfo(DOCHOSTUIINFO* info) override;
  STDMETHODIMP ShowUI(DWORD, IOleInPlaceActiveObject*, IOleCommandTarget*, IOleInPlaceFrame*,
                      IOleInPlaceUIWindow*) override {
    return S_FALSE;
  }
  STDMETHODIMP HideUI() override { return S_OK; }
  STDMETHODIMP UpdateUI() override { return S_OK; }
  STDMETHODIMP OnDocWindowActivate(BOOL) override { return S_OK; }
  STDMETHODIMP OnFrameWindowActivate(BOOL) override { return S_OK; }
  STDMETHODIMP ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, BOOL) override { return S_OK; }
  STDMETHODIMP TranslateAccelerator(LPMSG, const GUID*, DWORD) override { return S_FALSE; }
  STDMETHODIMP GetOptionKeyPath(LPOLESTR*, DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP GetDropTarget(IDropTarget*, IDropTarget**) override { return E_NOTIMPL; }
  STDMETHODIMP GetExternal(IDispatch**) override { return E_NOTIMPL; }
  STDMETHODIMP TranslateUrl(DWORD, LPWSTR, LPWSTR*) override { return S_FALSE; }
  STDMETHODIMP FilterDataObject(IDataObject*, IDataObject**) override { return S_FALSE; }

  // IDocHostShowUI
  STDMETHODIMP ShowMessage(HWND, LPOLESTR, LPOLESTR, DWORD, LPOLESTR, DWORD,
                           LRESULT* answer) override;
  STDMETHODIMP ShowHelp(HWND, LPOLESTR, UINT, DWORD, POINT, IDispatch*) override { return S_OK; }

  // IDispatch: asked for what a page may do, and told of what it is about to do
  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT* result,
                      EXCEPINFO*, UINT*) override;

 private:
  HWND FWindow;
  std::atomic<ULONG> FReferences = 1;
};
