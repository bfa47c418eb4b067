#include "platform/window_annotations.h"

#include <initguid.h>
#include <oleacc.h>

TWindowAnnotations::TWindowAnnotations()
    : FService(FCom.Make<IAccPropServices>(CLSID_AccPropServices, IID_IAccPropServices)) {}

TWindowAnnotations::~TWindowAnnotations() = default;

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
