#include "platform/folder_picker.h"

#include <windows.h>

#include <commctrl.h>
#include <shlobj.h>
#include <shlwapi.h>

#include <memory>

#include "platform/code_page.h"
#include "platform/com_ptr.h"
#include "platform/com_session.h"
#include "platform/common_controls.h"
#include "platform/guard.h"
#include "platform/quiet_disks.h"
#include "platform/system_library.h"
#include "platform/unwind_notice.h"

namespace {

constexpr UINT_PTR kSubclassId = 2;
constexpr std::size_t kMostOfPath = 260;

/// What the shell hands out is freed by the system's common allocator, which the shell has loaded.
/// Looked up as it lies there: loading it once more takes memory, and may throw.
struct TFreeItems {
  void operator()(void* items) const noexcept {
    const FARPROC address = GetProcAddress(GetModuleHandleW(L"ole32.dll"), "CoTaskMemFree");
    const auto free = reinterpret_cast<decltype(&CoTaskMemFree)>(reinterpret_cast<void*>(address));
    if (free) free(items);
  }
};
using TItems = std::unique_ptr<ITEMIDLIST, TFreeItems>;

using TShellFolder = TComPtr<IShellFolder>;

/// Only a thread for windows can have the newer look, which has drop targets; other threads get the
/// older one instead of nothing.
UINT FlagsFor(const TComSession& ole, UINT flags) {
  return ole.Apartment() ? flags : flags & ~UINT{BIF_NEWDIALOGSTYLE};
}

/// To the picker's own window: time to select again.
UINT SelectAgain() {
  static const UINT message = RegisterWindowMessageW(L"zefext select again");
  return message;
}

std::string PathText(const std::wstring& path) {
  std::string text = ToAnsi(path);
  if (ToWide(text) == path) return text;
  // Its nearest letters may name another folder.
  std::wstring shortPath(GetShortPathNameW(path.c_str(), nullptr, 0), L'\0');
  const DWORD length =
      GetShortPathNameW(path.c_str(), shortPath.data(), static_cast<DWORD>(shortPath.size()));
  if (length > 0 && length < shortPath.size()) {
    shortPath.resize(length);
    std::string shortText = ToAnsi(shortPath);
    if (ToWide(shortText) == shortPath) return shortText;
  }
  return text;
}

std::string ReturnedText(const STRRET& returned, const ITEMIDLIST* items) {
  switch (returned.uType) {
    case STRRET_WSTR: {
      const std::unique_ptr<wchar_t, TFreeItems> text(returned.pOleStr);
      return text ? ToAnsi(text.get()) : std::string();
    }
    case STRRET_OFFSET:
      return reinterpret_cast<const char*>(items) + returned.uOffset;
    case STRRET_CSTR:
      return returned.cStr;
    default:
      return {};
  }
}

LPARAM TextParam(const std::wstring& text) { return reinterpret_cast<LPARAM>(text.c_str()); }

}  // namespace

/// What the shell lends for one run.
struct TFolderPicker::TShell {
  TSystemLibrary Library{L"shell32.dll"};
  decltype(&SHBrowseForFolderW) Browse =
      Library.Function<decltype(&SHBrowseForFolderW)>("SHBrowseForFolderW");
  decltype(&SHGetPathFromIDListW) PathFromItems =
      Library.Function<decltype(&SHGetPathFromIDListW)>("SHGetPathFromIDListW");
  decltype(&SHGetSpecialFolderLocation) SpecialFolder =
      Library.Function<decltype(&SHGetSpecialFolderLocation)>("SHGetSpecialFolderLocation");
  TShellFolder Desktop;

  TShell() {
    const auto get = Library.Function<decltype(&SHGetDesktopFolder)>("SHGetDesktopFolder");
    IShellFolder* desktop = nullptr;
    if (get && SUCCEEDED(get(&desktop))) Desktop.reset(desktop);
  }
  explicit operator bool() const { return Browse && PathFromItems && SpecialFolder && Desktop; }

  /// Nothing for a folder that is not on a disk.
  std::optional<std::string> PathOf(const ITEMIDLIST* items) const {
    wchar_t path[MAX_PATH];
    if (!PathFromItems(items, path)) return std::nullopt;
    return PathText(path);
  }
  std::string DisplayName(const ITEMIDLIST* items) const {
    STRRET returned{};
    if (FAILED(Desktop->GetDisplayNameOf(items, SHGDN_NORMAL, &returned))) return {};
    return ReturnedText(returned, items);
  }
  TItems Root(const TRequest& request, HWND owner) const {
    LPITEMIDLIST items = nullptr;
    if (!request.RootPath.empty()) {
      std::wstring path = ToWide(request.RootPath).substr(0, kMostOfPath);
      Desktop->ParseDisplayName(owner, nullptr, path.data(), nullptr, &items, nullptr);
    } else if (request.SpecialFolder != 0) {
      SpecialFolder(owner, request.SpecialFolder, &items);
    }
    return TItems(items);
  }
};

/// The shell's and the system's calls into the picker.
struct TFolderPicker::TCallbacks {
  static int CALLBACK Browse(HWND window, UINT message, LPARAM argument, LPARAM self) {
    return Guarded(0, [&] {
      return self ? Handle(*reinterpret_cast<TFolderPicker*>(self), window, message, argument) : 0;
    });
  }

  static int Handle(TFolderPicker& picker, HWND window, UINT message, LPARAM argument) {
    const TEvents& events = picker.FEvents;
    switch (message) {
      case BFFM_INITIALIZED:
        picker.FWindow = window;
        CommonControls().SetWindowSubclass(window, Watch, kSubclassId,
                                           reinterpret_cast<DWORD_PTR>(&picker));
        if (events.Initialized) events.Initialized();
        // The tree is not laid out yet: what is selected now may be scrolled out of view later.
        PostMessageW(window, SelectAgain(), 0, 0);
        return 0;
      case BFFM_SELCHANGED: {
        const auto* items = reinterpret_cast<const ITEMIDLIST*>(argument);
        if (!events.SelectionChanged || !items) return 0;
        const auto path = picker.FShell->PathOf(items);
        picker.Selected(path.value_or(std::string()));
        events.SelectionChanged(path ? *path : picker.FShell->DisplayName(items));
        return 0;
      }
      case BFFM_VALIDATEFAILEDA:
        return WrongName(events, reinterpret_cast<const char*>(argument));
      case BFFM_VALIDATEFAILEDW:
        return WrongName(events, ToAnsi(reinterpret_cast<const wchar_t*>(argument)));
      default:
        return 0;
    }
  }

  static int WrongName(const TEvents& events, const std::string& typed) {
    return events.WrongName && events.WrongName(typed) ? 1 : 0;
  }

  static LRESULT CALLBACK Watch(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                UINT_PTR /*id*/, DWORD_PTR self) {
    auto& picker = *reinterpret_cast<TFolderPicker*>(self);
    const auto& events = picker.FEvents;
    const bool hides = message == WM_WINDOWPOSCHANGING &&
                       (reinterpret_cast<const WINDOWPOS*>(lParam)->flags & SWP_HIDEWINDOW) != 0;
    if (hides && events.Closing) Guarded([&] { events.Closing(); });
    if (message == SelectAgain() && message != 0) {
      Guarded([&] { picker.Select(picker.FSelection); });
      return 0;
    }
    if (message == WM_NCDESTROY) CommonControls().RemoveWindowSubclass(window, Watch, kSubclassId);
    return CommonControls().DefSubclassProc(window, message, wParam, lParam);
  }
};

/// What a picker is while the shell shows it.
class TFolderPicker::TShowing {
 public:
  TShowing(TFolderPicker& picker, const TShell& shell, TEvents events) : FPicker(picker) {
    FPicker.FShell = &shell;
    FPicker.FEvents = std::move(events);
  }
  TShowing(const TShowing&) = delete;
  TShowing& operator=(const TShowing&) = delete;
  ~TShowing() { End(); }

 private:
  void End() {
    FPicker.FWindow = nullptr;
    FPicker.FShell = nullptr;
    FPicker.FEvents = {};
    FPicker.FSelection.clear();
    FPicker.FReached = false;
  }
  // The shell's loop is gone, and would leave its window behind.
  static void Unwound(void* self) {
    auto& showing = *static_cast<TShowing*>(self);
    if (showing.FPicker.Open()) DestroyWindow(static_cast<HWND>(showing.FPicker.FWindow));
    showing.End();
  }

  TFolderPicker& FPicker;
  TUnwindNotice FNotice{Unwound, this};
};

std::optional<std::string> TFolderPicker::Run(const TRequest& request, TEvents events) {
  const TComSession ole(TComSession::TKind::Ole);
  const TQuietDisks quiet;
  const TShell shell;
  if (!shell || FShell) return std::nullopt;
  const auto owner = static_cast<HWND>(request.Owner);
  const TItems root = shell.Root(request, owner);
  const std::wstring title = ToWide(request.Title);
  wchar_t displayName[MAX_PATH] = {};
  BROWSEINFOW info{};
  info.hwndOwner = owner;
  info.pidlRoot = root.get();
  info.pszDisplayName = displayName;
  info.lpszTitle = title.c_str();
  info.ulFlags = FlagsFor(ole, request.Flags);
  info.lpfn = TCallbacks::Browse;
  info.lParam = reinterpret_cast<LPARAM>(this);
  TItems chosen;
  {
    const TShowing showing(*this, shell, std::move(events));
    chosen.reset(shell.Browse(&info));
  }
  if (!chosen) return std::nullopt;
  return shell.PathOf(chosen.get()).value_or(std::string());
}

std::string TFolderPicker::Caption() const {
  wchar_t text[kMostOfPath] = {};
  GetWindowTextW(static_cast<HWND>(FWindow), text, static_cast<int>(kMostOfPath));
  return ToAnsi(text);
}

void TFolderPicker::SetCaption(const std::string& caption) {
  if (Open()) SetWindowTextW(static_cast<HWND>(FWindow), ToWide(caption).c_str());
}

void TFolderPicker::SetSelection(const std::string& folder) {
  if (!Open()) return;
  FSelection = ToWide(folder);
  Select(FSelection);
}

void TFolderPicker::Select(const std::wstring& folder) {
  if (folder.empty()) return;
  SendMessageW(static_cast<HWND>(FWindow), BFFM_SETSELECTIONW, TRUE, TextParam(folder));
}

void TFolderPicker::Selected(const std::string& folder) {
  const bool asAsked = lstrcmpiW(ToWide(folder).c_str(), FSelection.c_str()) == 0;
  // Someone has moved on from there: it is not selected again.
  if (FReached && !asAsked) FSelection.clear();
  FReached = asAsked;
}

void TFolderPicker::SetStatusText(const std::string& text) {
  if (!Open()) return;
  SendMessageW(static_cast<HWND>(FWindow), BFFM_SETSTATUSTEXTW, 0, TextParam(ToWide(text)));
}

void TFolderPicker::EnableOk(bool enabled) {
  // Shells differ in which of the two they read.
  if (Open()) {
    SendMessageW(static_cast<HWND>(FWindow), BFFM_ENABLEOK, static_cast<WPARAM>(enabled), enabled);
  }
}

void TFolderPicker::Cancel() {
  if (Open()) PostMessageW(static_cast<HWND>(FWindow), WM_COMMAND, IDCANCEL, 0);
}

std::uint32_t ShellVersion() {
  const TSystemLibrary shell(L"shell32.dll");
  const auto getVersion = shell.Function<DLLGETVERSIONPROC>("DllGetVersion");
  DLLVERSIONINFO version{};
  version.cbSize = sizeof version;
  if (!getVersion || FAILED(getVersion(&version))) return 0;
  return version.dwMajorVersion << 16 | (version.dwMinorVersion & 0xFFFF);
}
