#include "platform/web_control.h"

#include <windows.h>

#include <exdisp.h>
#include <ocidl.h>
#include <ole2.h>

#include <algorithm>

#include "platform/code_page.h"
#include "platform/com_ptr.h"
#include "platform/com_session.h"
#include "platform/floating_point.h"
#include "platform/system_library.h"
#include "platform/web_site.h"

namespace {

constexpr int kNoHistory = 2;

VARIANT Missing() {
  VARIANT missing{};
  missing.vt = VT_ERROR;
  missing.scode = DISP_E_PARAMNOTFOUND;
  return missing;
}

}  // namespace

class TWebControl::TBrowser {
 public:
  explicit TBrowser(HWND window) : FWindow(window), FSite(new TWebSite(window)) {}
  TBrowser(const TBrowser&) = delete;
  TBrowser& operator=(const TBrowser&) = delete;
  ~TBrowser();

  bool Create();
  void Navigate(std::string_view address) const;
  void Resize() const;
  void Activate() const;
  bool TranslateKey(MSG message) const;

 private:
  void HearEvents();

  TComSession FOle{TComSession::TKind::Ole};
  TSystemLibrary FAutomation{L"oleaut32.dll"};
  decltype(&SysAllocString) FAllocString =
      FAutomation.Function<decltype(&SysAllocString)>("SysAllocString");
  decltype(&SysFreeString) FFreeString =
      FAutomation.Function<decltype(&SysFreeString)>("SysFreeString");
  HWND FWindow;
  TComPtr<TWebSite> FSite;
  TComPtr<IOleObject> FObject;
  TComPtr<IWebBrowser2> FBrowser;
  TComPtr<IConnectionPoint> FEvents;
  DWORD FEventsCookie = 0;
};

TWebControl::TBrowser::~TBrowser() {
  if (FEvents) FEvents->Unadvise(FEventsCookie);
  if (!FObject) return;
  FObject->Close(OLECLOSE_NOSAVE);
  FObject->SetClientSite(nullptr);
}

bool TWebControl::TBrowser::Create() {
  // A thread that the host gave a threading model without windows has no place for it.
  if (!FOle.Apartment() || !FAllocString || !FFreeString) return false;
  FObject = FOle.Make<IOleObject>(CLSID_WebBrowser, IID_IOleObject);
  if (!FObject) return false;
  const RECT place = FSite->Place();
  if (FAILED(FObject->SetClientSite(FSite.get())) ||
      FAILED(FObject->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, FSite.get(), 0, FWindow, &place))) {
    return false;
  }
  FBrowser = QueryFor<IWebBrowser2>(FObject.get(), IID_IWebBrowser2);
  if (!FBrowser) return false;
  FBrowser->put_Silent(VARIANT_TRUE);
  FBrowser->put_RegisterAsDropTarget(VARIANT_FALSE);
  HearEvents();
  return true;
}

void TWebControl::TBrowser::HearEvents() {
  const auto points =
      QueryFor<IConnectionPointContainer>(FObject.get(), IID_IConnectionPointContainer);
  IConnectionPoint* point = nullptr;
  if (!points || FAILED(points->FindConnectionPoint(DIID_DWebBrowserEvents2, &point))) return;
  TComPtr<IConnectionPoint> events(point);
  if (SUCCEEDED(events->Advise(static_cast<IDispatch*>(FSite.get()), &FEventsCookie))) {
    FEvents = std::move(events);
  }
}

void TWebControl::TBrowser::Navigate(std::string_view address) const {
  constexpr std::string_view blanks = " \t\r\n";
  address.remove_prefix(std::min(address.find_first_not_of(blanks), address.size()));
  address = address.substr(0, address.find_last_not_of(blanks) + 1);
  const std::wstring page = ToWide(address);
  if (!IsWebPage(page)) return;
  const BSTR url = FAllocString(page.c_str());
  VARIANT flags{};
  flags.vt = VT_I4;
  flags.lVal = kNoHistory;
  VARIANT frame = Missing();
  VARIANT data = Missing();
  VARIANT headers = Missing();
  FBrowser->Navigate(url, &flags, &frame, &data, &headers);
  FFreeString(url);
}

void TWebControl::TBrowser::Resize() const {
  const RECT place = FSite->Place();
  if (const auto shown = QueryFor<IOleInPlaceObject>(FObject.get(), IID_IOleInPlaceObject)) {
    shown->SetObjectRects(&place, &place);
  }
}

void TWebControl::TBrowser::Activate() const {
  const RECT place = FSite->Place();
  FObject->DoVerb(OLEIVERB_UIACTIVATE, nullptr, FSite.get(), 0, FWindow, &place);
}

bool TWebControl::TBrowser::TranslateKey(MSG message) const {
  const auto active = QueryFor<IOleInPlaceActiveObject>(FObject.get(), IID_IOleInPlaceActiveObject);
  return active && active->TranslateAccelerator(&message) == S_OK;
}

TWebControl::TWebControl(void* window)
    : FBrowser(std::make_unique<TBrowser>(static_cast<HWND>(window))) {
  const TFloatingPointMasks masks;
  if (!FBrowser->Create()) FBrowser.reset();
}

TWebControl::~TWebControl() {
  const TFloatingPointMasks masks;
  FBrowser.reset();
}

void TWebControl::Navigate(std::string_view address) {
  const TFloatingPointMasks masks;
  if (FBrowser) FBrowser->Navigate(address);
}

void TWebControl::Resize() {
  const TFloatingPointMasks masks;
  if (FBrowser) FBrowser->Resize();
}

void TWebControl::Activate() {
  const TFloatingPointMasks masks;
  if (FBrowser) FBrowser->Activate();
}

bool TWebControl::TranslateKey(const void* message) {
  const TFloatingPointMasks masks;
  return FBrowser && FBrowser->TranslateKey(*static_cast<const MSG*>(message));
}
