#pragma once

#include <windows.h>

#include <string>

#include "platform/com_ptr.h"
#include "platform/com_session.h"

struct IAccPropServices;

/// What assistive tools are told of windows in place of what they would guess. Needs COM, which it
/// keeps for as long as it lives; where the system has no such service, nothing is told.
class TWindowAnnotations {
 public:
  TWindowAnnotations();
  TWindowAnnotations(const TWindowAnnotations&) = delete;
  TWindowAnnotations& operator=(const TWindowAnnotations&) = delete;
  ~TWindowAnnotations();

  /// An empty text, or a description equal to the name, leaves the system's own.
  void Set(HWND window, const std::wstring& name, const std::wstring& description) const;
  /// To be called before the window is destroyed: the system keeps them else.
  void Clear(HWND window) const;

 private:
  TComSession FCom{TComSession::TKind::Com};
  TComPtr<IAccPropServices> FService;
};
