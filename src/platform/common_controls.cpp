#include "platform/common_controls.h"

#include <memory>
#include <stdexcept>
#include <string>

#include "platform/system_library.h"

// Set by the linker to where this module lies.
extern "C" IMAGE_DOS_HEADER __ImageBase;

#ifndef DEACTIVATE_ACTCTX_FLAG_FORCE_EARLY_DEACTIVATION
#define DEACTIVATE_ACTCTX_FLAG_FORCE_EARLY_DEACTIVATION 1
#endif

namespace {

/// The number under which the loader, too, looks for the manifest of a library.
constexpr WORD kManifest = 2;

HANDLE MakeContext() {
  ACTCTXW request{};
  request.cbSize = sizeof request;
  request.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
  request.hModule = reinterpret_cast<HMODULE>(&__ImageBase);
  request.lpResourceName = MAKEINTRESOURCEW(kManifest);
  return CreateActCtxW(&request);
}

ULONG_PTR Activate(HANDLE context) {
  ULONG_PTR cookie = 0;
  return ActivateActCtx(context, &cookie) ? cookie : 0;
}

void Deactivate(ULONG_PTR cookie) {
  // Also when an exception of the host's has passed through and left others on top of this one.
  if (cookie) DeactivateActCtx(DEACTIVATE_ACTCTX_FLAG_FORCE_EARLY_DEACTIVATION, cookie);
}

class TLoadedControls {
 public:
  TLoadedControls() : FContext(MakeContext()) {
    // By its name alone only while the manifest leads to the right one; else from the system's own
    // folder.
    if (FContext != INVALID_HANDLE_VALUE) {
      const ULONG_PTR cookie = Activate(FContext);
      ACTCTX_SECTION_KEYED_DATA redirection{};
      redirection.cbSize = sizeof redirection;
      FControls.Themed =
          cookie && FindActCtxSectionStringW(0, nullptr, ACTIVATION_CONTEXT_SECTION_DLL_REDIRECTION,
                                             L"comctl32.dll", &redirection);
      if (FControls.Themed) FModule = LoadLibraryW(L"comctl32.dll");
      Deactivate(cookie);
    }
    if (!FModule) FModule = static_cast<HMODULE>(LoadSystemLibrary(L"comctl32.dll"));
    Find(FControls.InitCommonControlsEx, "InitCommonControlsEx");
    Find(FControls.SetWindowSubclass, "SetWindowSubclass", 410);
    Find(FControls.RemoveWindowSubclass, "RemoveWindowSubclass", 412);
    Find(FControls.DefSubclassProc, "DefSubclassProc", 413);
    Find(FControls.ImageList_Create, "ImageList_Create");
    Find(FControls.ImageList_Destroy, "ImageList_Destroy");
    Find(FControls.ImageList_Add, "ImageList_Add");
    Find(FControls.ImageList_DrawIndirect, "ImageList_DrawIndirect");
    Find(FControls.ImageList_GetIconSize, "ImageList_GetIconSize");
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_WIN95_CLASSES | ICC_USEREX_CLASSES};
    FControls.InitCommonControlsEx(&classes);
  }
  TLoadedControls(const TLoadedControls&) = delete;
  TLoadedControls& operator=(const TLoadedControls&) = delete;
  ~TLoadedControls() {
    if (FContext != INVALID_HANDLE_VALUE) ReleaseActCtx(FContext);
    if (FModule) FreeLibrary(FModule);
  }

  const TCommonControls& Controls() const { return FControls; }
  HANDLE Context() const { return FContext; }

 private:
  /// The number is that of versions which export the function without its name.
  template <class TFunction>
  void Find(TFunction& function, const char* name, WORD number = 0) {
    FARPROC found = FModule ? GetProcAddress(FModule, name) : nullptr;
    if (!found && FModule && number) found = GetProcAddress(FModule, MAKEINTRESOURCEA(number));
    if (!found) throw std::runtime_error(std::string("no ") + name + " in the common controls");
    function = reinterpret_cast<TFunction>(reinterpret_cast<void*>(found));
  }

  HANDLE FContext;
  HMODULE FModule = nullptr;
  TCommonControls FControls;
};

// On the heap, and left there when the process ends: the system's libraries may be gone by then.
TLoadedControls* loaded = nullptr;

const TLoadedControls& Loaded() {
  if (!loaded) loaded = std::make_unique<TLoadedControls>().release();
  return *loaded;
}

}  // namespace

const TCommonControls& CommonControls() { return Loaded().Controls(); }

void ReleaseCommonControls() {
  delete loaded;
  loaded = nullptr;
}

TOurControls::TOurControls() {
  const HANDLE context = Loaded().Context();
  if (context != INVALID_HANDLE_VALUE) FCookie = Activate(context);
}

TOurControls::~TOurControls() { Deactivate(FCookie); }

THostControls::THostControls() : FCookie(Activate(nullptr)) {}

THostControls::~THostControls() { Deactivate(FCookie); }
