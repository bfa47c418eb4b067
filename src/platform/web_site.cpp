#include "platform/web_site.h"

#include <exdisp.h>
#include <exdispid.h>
#include <mshtmdid.h>

namespace {

// The system's headers of this toolchain declare it, but no import library defines it.
constexpr GUID kDocHostShowUi = {
    0xc4d244b0, 0xd43e, 0x11cf, {0x89, 0x3b, 0x00, 0xaa, 0x00, 0xbd, 0xce, 0x1a}};

bool BeginsWith(std::wstring_view text, std::wstring_view lowered) {
  return text.size() >= lowered.size() &&
         CompareStringOrdinal(text.data(), static_cast<int>(lowered.size()), lowered.data(),
                              static_cast<int>(lowered.size()), TRUE) == CSTR_EQUAL;
}

/// Refuses what an event announces; its arguments come last first.
void Refuse(const DISPPARAMS& arguments, UINT cancel) {
  if (arguments.cArgs <= cancel) return;
  const VARIANT& argument = arguments.rgvarg[cancel];
  if (argument.vt == (VT_BYREF | VT_BOOL)) *argument.pboolVal = VARIANT_TRUE;
}

/// The address that a navigation event is about; empty when there is none.
std::wstring_view AddressIn(const DISPPARAMS& arguments, UINT address) {
  if (arguments.cArgs <= address) return {};
  const VARIANT* text = &arguments.rgvarg[address];
  if (text->vt == (VT_BYREF | VT_VARIANT)) text = text->pvarVal;
  return text->vt == VT_BSTR && text->bstrVal ? text->bstrVal : std::wstring_view();
}

}  // namespace

bool IsWebPage(std::wstring_view address) {
  return BeginsWith(address, L"http://") || BeginsWith(address, L"https://");
}

RECT TWebSite::Place() const {
  RECT place{};
  GetClientRect(FWindow, &place);
  return place;
}

HRESULT STDMETHODCALLTYPE TWebSite::QueryInterface(REFIID id, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (id == IID_IUnknown || id == IID_IOleClientSite) {
    *object = static_cast<IOleClientSite*>(this);
  } else if (id == IID_IOleWindow || id == IID_IOleInPlaceSite) {
    *object = static_cast<IOleInPlaceSite*>(this);
  } else if (id == IID_IOleInPlaceUIWindow || id == IID_IOleInPlaceFrame) {
    *object = static_cast<IOleInPlaceFrame*>(this);
  } else if (id == IID_IOleControlSite) {
    *object = static_cast<IOleControlSite*>(this);
  } else if (id == IID_IDocHostUIHandler) {
    *object = static_cast<IDocHostUIHandler*>(this);
  } else if (id == kDocHostShowUi) {
    *object = static_cast<IDocHostShowUI*>(this);
  } else if (id == IID_IDispatch || id == DIID_DWebBrowserEvents2) {
    *object = static_cast<IDispatch*>(this);
  } else {
    return E_NOINTERFACE;
  }
  AddRef();
  return S_OK;
}

ULONG STDMETHODCALLTYPE TWebSite::Release() {
  const ULONG left = --FReferences;
  if (left == 0) delete this;
  return left;
}

HRESULT STDMETHODCALLTYPE TWebSite::GetContainer(IOleContainer** container) {
  if (container) *container = nullptr;
  return E_NOINTERFACE;
}

HRESULT STDMETHODCALLTYPE TWebSite::GetWindow(HWND* window) {
  if (!window) return E_POINTER;
  *window = FWindow;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE TWebSite::GetWindowContext(IOleInPlaceFrame** frame,
                                                     IOleInPlaceUIWindow** document, LPRECT place,
                                                     LPRECT clip, LPOLEINPLACEFRAMEINFO info) {
  if (!frame || !document || !place || !clip || !info) return E_POINTER;
  *frame = this;
  AddRef();
  *document = nullptr;
  *place = *clip = Place();
  info->fMDIApp = FALSE;
  info->hwndFrame = FWindow;
  info->haccel = nullptr;
  info->cAccelEntries = 0;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE TWebSite::TranslateAccelerator(MSG* message, DWORD) {
  if (!message || message->message != WM_KEYDOWN || message->wParam != VK_TAB) return S_FALSE;
  PostMessageW(GetParent(FWindow), WM_NEXTDLGCTL, GetKeyState(VK_SHIFT) < 0, FALSE);
  return S_OK;
}

HRESULT STDMETHODCALLTYPE TWebSite::GetHostInfo(DOCHOSTUIINFO* info) {
  if (!info) return E_POINTER;
  info->dwFlags = DOCHOSTUIFLAG_NO3DBORDER | DOCHOSTUIFLAG_NO3DOUTERBORDER | DOCHOSTUIFLAG_THEME |
                  DOCHOSTUIFLAG_DPI_AWARE | DOCHOSTUIFLAG_DISABLE_HELP_MENU |
                  DOCHOSTUIFLAG_ENABLE_REDIRECT_NOTIFICATION;
  info->dwDoubleClick = DOCHOSTUIDBLCLK_DEFAULT;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE TWebSite::ShowMessage(HWND, LPOLESTR, LPOLESTR, DWORD, LPOLESTR, DWORD,
                                                LRESULT* answer) {
  if (answer) *answer = IDCANCEL;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE TWebSite::GetTypeInfoCount(UINT* count) {
  if (!count) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE TWebSite::Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* arguments,
                                           VARIANT* result, EXCEPINFO*, UINT*) {
  // The oldest events come without arguments, the ambient properties with none.
  const DISPPARAMS given = arguments ? *arguments : DISPPARAMS{};
  switch (member) {
    case DISPID_AMBIENT_DLCONTROL:
      if (!result) return E_POINTER;
      result->vt = VT_I4;
      result->lVal = DLCTL_DLIMAGES | DLCTL_VIDEOS | DLCTL_SILENT | DLCTL_NO_JAVA |
                     DLCTL_NO_DLACTIVEXCTLS | DLCTL_NO_RUNACTIVEXCTLS;
      return S_OK;
    case DISPID_BEFORENAVIGATE2:
      if (const auto address = AddressIn(given, 5);
          !IsWebPage(address) && address != L"about:blank") {
        Refuse(given, 0);
      }
      return S_OK;
    case DISPID_NEWWINDOW2:
    case DISPID_WINDOWCLOSING:
      Refuse(given, 0);
      return S_OK;
    case DISPID_NEWWINDOW3:
      Refuse(given, 3);
      return S_OK;
    case DISPID_FILEDOWNLOAD:
      // Told of every document; only what the page itself cannot show would ask the user.
      if (given.cArgs == 2 && given.rgvarg[1].vt == VT_BOOL &&
          given.rgvarg[1].boolVal == VARIANT_FALSE) {
        Refuse(given, 0);
      }
      return S_OK;
    default:
      return DISP_E_MEMBERNOTFOUND;
  }
}
