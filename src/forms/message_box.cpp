#include "forms/message_box.h"

#include <windows.h>

#include "forms/application.h"
#include "platform/code_page.h"
#include "platform/common_controls.h"

namespace {

/// The dialog that runs on top of the others, or what the system shows over it; else whatever is
/// active. Only the window that owns a box is kept from the user meanwhile.
HWND Owner() {
  if (const HWND dialog = Application().TopmostModal()) {
    const HWND popup = GetLastActivePopup(dialog);
    return IsWindowVisible(popup) && IsWindowEnabled(popup) ? popup : dialog;
  }
  const HWND active = GetActiveWindow();
  return active ? active : Application().MainWindow();
}

int Ask(std::string_view text, const char* caption, UINT style) {
  const TOurControls controls;
  return MessageBoxW(Owner(), ToWide(text).c_str(), Utf8ToWide(caption).c_str(),
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
