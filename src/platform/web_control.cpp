#include "platform/web_control.h"

#include <windows.h>

#include <exdisp.h>
#include <ocidl.h>
#include <ole2.h>

#include <algorithm>

#include "platform/code_page.h"
#include "platform/com_ptr.h"
#include "platform/floating_point.h"
#include "platform/system_library.h"
#include "platform/web_site.h"

namespace {

constexpr int kNoHistory = 2;

/// OLE, loaded and initialised for this thread while the object lives.
class TOleSession {
 public:
  TOleSession() : FOle(L"ole32.dll"), FAutomation(L"oleaut32.dll") {
    CreateInstance = FOle.Function<decltype(&CoCreateInstance)>("CoCreateInstance");
    AllocString = FAutomation.Function<decltype(&SysAllocString)>("SysAllocString");
    FreeString = FAutomation.Function<decltype(&SysFreeString)>("SysFreeString");
    const auto initialize = FOle.Function<decltype(&OleInitialize)>("OleInitialize");
    FInitialized = initialize && SUCCEEDED(initialize(nullptr));
  }
  ~TOleSession() {
    if (FInitialized) FOle.Function<decltype(&OleUninitialize)>("OleUninitialize")();
  }
  TOleSession(const TOleSession&) = delete;
  TOleSession& operator=(const TOleSession&) = delete;

  /// False also in a thread that the host gave a threading model without windows.
  bool Usable() const { return FInitialized && CreateInstance && AllocString && FreeString; }

  decltype(&CoCreateInstance) CreateInstance;
  decltype(&SysAllocString) AllocString;
  decltype(&SysFreeString) FreeString;

 private:
  TSystemLibrary FOle;
  TSystemLibrary FAutomation;
  bool FInitialized;
};

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

  TOleSession FOle;
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
  void* object = nullptr;
  if (!FOle.Usable() || FAILED(FOle.CreateInstance(CLSID_WebBrowser, nullptr, CLSCTX_INPROC_SERVER,
                                                   IID_IOleObject, &object))) {
    return false;
  }
  FObject.reset(static_cast<IOleObject*>(object));
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
  const BSTR url = FOle.AllocString(page.c_str());
  VARIANT flags{};
  flags.vt = VT_I4;
  flags.lVal = kNoHistory;
  VARIANT frame = Missing();
  VARIANT data = Missing();
  VARIANT headers = Missing();
  FBrowser->Navigate(url, &flags, &frame, &data, &headers);
  FOle.FreeString(url);
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
