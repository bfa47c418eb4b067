// ZEF: a small host of zefext.dll. Loads the library, gives it its window and help file, and opens
// its dialogs from a script editor.
#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>

#include <optional>

#include "call_log.h"
#include "command_line.h"
#include "main_window.h"

namespace {

int Fail(const wchar_t* message) {
  MessageBoxW(nullptr, message, L"ZEF", MB_OK | MB_ICONERROR);
  return 1;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int show) {
  int count = 0;
  wchar_t** arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  const std::optional<TCommandLine> commandLine = ParseCommandLine(count, arguments);
  LocalFree(arguments);
  if (!commandLine) {
    return Fail(L"Usage : ZEF.EXE [--script N] [--line L] [--column C] [--assist] [--log FICHIER]");
  }

  const INITCOMMONCONTROLSEX controls = {sizeof controls,
                                         ICC_TAB_CLASSES | ICC_BAR_CLASSES | ICC_LISTVIEW_CLASSES};
  InitCommonControlsEx(&controls);
  TCallLog log;
  if (!commandLine->LogFile.empty() && !log.Open(commandLine->LogFile)) {
    return Fail(L"Le journal des appels ne peut pas être écrit.");
  }
  TMainWindow window(log);
  if (!window.Create(*commandLine, show)) return Fail(L"La fenêtre ne peut pas être ouverte.");

  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    // The library's own windows see their keys first: only ours have our shortcuts.
    const bool ours = message.hwnd == window.Handle() || IsChild(window.Handle(), message.hwnd);
    if (ours && TranslateAcceleratorW(window.Handle(), window.Accelerators(), &message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return static_cast<int>(message.wParam);
}
