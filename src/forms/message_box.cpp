#include "forms/message_box.h"

#include <windows.h>

#include "forms/application.h"
#include "platform/code_page.h"

namespace {

int Ask(std::string_view text, const char* caption, UINT style) {
  const HWND active = GetActiveWindow();
  const HWND owner = active ? active : Application().MainWindow();
  return MessageBoxW(owner, ToWide(text).c_str(), Utf8ToWide(caption).c_str(),
                     style | MB_TASKMODAL);
}

}  // namespace

void ShowMessageBox(TMessageKind kind, std::string_view text) {
  if (kind == TMessageKind::Error) {
    Ask(text, "Erreur", MB_OK | MB_ICONERROR);
  } else {
    Ask(text, "Avertissement", MB_OK | MB_ICONWARNING);
  }
}

bool AskYesNo(std::string_view text) {
  return Ask(text, "Confirmation", MB_YESNO | MB_ICONQUESTION) == IDYES;
}
