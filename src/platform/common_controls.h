#pragma once

#include <windows.h>

#include <commctrl.h>

/// The system's common controls. The library does not import them: they are loaded when the first
/// window needs them, and in version 6, which this library's own manifest asks for, whatever the
/// host's says. Without that version (a system that refuses the manifest) the older one serves.
///
/// Members bear the names of the system's functions. User-interface thread only.
struct TCommonControls {
  decltype(&::InitCommonControlsEx) InitCommonControlsEx = nullptr;
  decltype(&::SetWindowSubclass) SetWindowSubclass = nullptr;
  decltype(&::RemoveWindowSubclass) RemoveWindowSubclass = nullptr;
  decltype(&::DefSubclassProc) DefSubclassProc = nullptr;
  decltype(&::ImageList_Create) ImageList_Create = nullptr;
  decltype(&::ImageList_Destroy) ImageList_Destroy = nullptr;
  decltype(&::ImageList_Add) ImageList_Add = nullptr;
  decltype(&::ImageList_DrawIndirect) ImageList_DrawIndirect = nullptr;
  decltype(&::ImageList_GetIconSize) ImageList_GetIconSize = nullptr;
  bool Themed = false;  ///< version 6
};

/// Loads them with the first call. Throws std::runtime_error when the system has none.
const TCommonControls& CommonControls();

/// Lets go of them, as the library is unloaded; no window with code of theirs is left.
void ReleaseCommonControls();

/// For as long as it lives, windows that the thread makes get the controls above. To stand around
/// everything that makes windows or runs the code of controls, which make more when they need them
/// (lists, tips), and around nothing that runs the host's code. Nests; nothing happens where the
/// system has refused the manifest.
class TOurControls {
 public:
  TOurControls();
  TOurControls(const TOurControls&) = delete;
  TOurControls& operator=(const TOurControls&) = delete;
  ~TOurControls();

 private:
  ULONG_PTR FCookie = 0;
};

/// The opposite: while messages of the host's windows are dispatched from inside the library.
class THostControls {
 public:
  THostControls();
  THostControls(const THostControls&) = delete;
  THostControls& operator=(const THostControls&) = delete;
  ~THostControls();

 private:
  ULONG_PTR FCookie = 0;
};
