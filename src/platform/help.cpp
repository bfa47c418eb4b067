#include "platform/help.h"

#include <windows.h>

#include "platform/code_page.h"
#include "platform/system_library.h"
#include "text/collation.h"

namespace {

using THtmlHelp = HWND(WINAPI*)(HWND caller, const wchar_t* file, UINT command, DWORD_PTR data);
constexpr UINT kDisplayTopic = 0;
constexpr UINT kHelpContext = 15;

bool IsCompiledHelp(std::string_view file) {
  constexpr std::string_view ending = ".chm";
  return file.size() > ending.size() && SameText(file.substr(file.size() - ending.size()), ending);
}

/// Never unloaded: its windows outlive the request.
THtmlHelp HtmlHelp() {
  static const auto module = static_cast<HMODULE>(LoadSystemLibrary(L"hhctrl.ocx"));
  if (!module) return nullptr;
  return reinterpret_cast<THtmlHelp>(reinterpret_cast<void*>(GetProcAddress(module, "HtmlHelpW")));
}

}  // namespace

void AskForHelp(void* owner, const std::string& file, unsigned command, std::uintptr_t data) {
  if (!IsCompiledHelp(file)) {
    WinHelpA(static_cast<HWND>(owner), file.c_str(), command, data);
    return;
  }
  if (command != HELP_CONTEXT && command != HELP_CONTEXTPOPUP) return;
  if (const THtmlHelp htmlHelp = HtmlHelp())
    htmlHelp(static_cast<HWND>(owner), ToWide(file).c_str(), data ? kHelpContext : kDisplayTopic,
             data);
}
