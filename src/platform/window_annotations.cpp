#include "platform/window_annotations.h"

#include <initguid.h>
#include <oleacc.h>

TWindowAnnotations::TWindowAnnotations() : FCom(L"ole32.dll") {
  const auto initialize = FCom.Function<decltype(&CoInitializeEx)>("CoInitializeEx");
  const auto create = FCom.Function<decltype(&CoCreateInstance)>("CoCreateInstance");
  if (!initialize || !create) return;
  // A thread that the host gave the other threading model serves as well, but is not ours to end.
  FInitialized = SUCCEEDED(initialize(nullptr, COINIT_APARTMENTTHREADED));
  void* service = nullptr;
  if (SUCCEEDED(create(CLSID_AccPropServices, nullptr, CLSCTX_INPROC_SERVER, IID_IAccPropServices,
                       &service))) {
    FService.reset(static_cast<IAccPropServices*>(service));
  }
}

TWindowAnnotations::~TWindowAnnotations() {
  FService.reset();
  if (FInitialized) FCom.Function<decltype(&CoUninitialize)>("CoUninitialize")();
}

void TWindowAnnotations::Set(HWND window, const std::wstring& name,
                             const std::wstring& description) const {
  if (!FService) return;
  const auto tell = [&](const MSAAPROPID& property, const std::wstring& text) {
    FService->SetHwndPropStr(window, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, property,
                             text.c_str());
  };
  if (!name.empty()) tell(PROPID_ACC_NAME, name);
  if (!description.empty() && description != name) tell(PROPID_ACC_DESCRIPTION, description);
}

void TWindowAnnotations::Clear(HWND window) const {
  if (!FService) return;
  const MSAAPROPID told[] = {PROPID_ACC_NAME, PROPID_ACC_DESCRIPTION};
  FService->ClearHwndProps(window, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, told, 2);
}
