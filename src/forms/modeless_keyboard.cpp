#include "forms/modeless_keyboard.h"

#include <algorithm>
#include <vector>

#include "forms/application.h"
#include "platform/guard.h"

namespace {

struct TModelessForms {
  std::vector<HWND> Forms;
  HHOOK Hook = nullptr;
};

TModelessForms& Modeless() {
  static TModelessForms forms;
  return forms;
}

/// Keys that mean something to a dialog. All others go through the host's loop untouched, so that
/// typed text is translated as the host does it.
bool IsDialogKey(const MSG& message) {
  if (message.message == WM_SYSCHAR) return true;
  if (message.message == WM_CHAR) {
    // A letter alone is a mnemonic where it is no text, on a button for one.
    const auto wanted = SendMessageW(message.hwnd, WM_GETDLGCODE, 0, 0);
    return (wanted & (DLGC_WANTCHARS | DLGC_WANTALLKEYS)) == 0;
  }
  if (message.message != WM_KEYDOWN) return false;
  switch (message.wParam) {
    case VK_TAB:
    case VK_RETURN:
    case VK_ESCAPE:
    case VK_LEFT:
    case VK_RIGHT:
    case VK_UP:
    case VK_DOWN:
      return true;
    default:
      return false;
  }
}

HWND ModelessFormAround(HWND window) {
  const auto& forms = Modeless().Forms;
  const auto around = std::ranges::find_if(
      forms, [&](HWND form) { return form == window || IsChild(form, window); });
  return around == forms.end() ? nullptr : *around;
}

LRESULT CALLBACK MessageHook(int code, WPARAM wParam, LPARAM lParam) {
  auto& message = *reinterpret_cast<MSG*>(lParam);
  if (code == HC_ACTION && wParam == PM_REMOVE) {
    Guarded([&] {
      const TCallScope scope;
      const HWND form = ModelessFormAround(message.hwnd);
      if (form && IsDialogKey(message) && IsDialogMessageW(form, &message)) {
        message.message = WM_NULL;
      }
    });
  }
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

}  // namespace

void AddModelessForm(HWND form) {
  auto& modeless = Modeless();
  if (std::ranges::find(modeless.Forms, form) != modeless.Forms.end()) return;
  modeless.Forms.push_back(form);
  if (!modeless.Hook) {
    modeless.Hook = SetWindowsHookExW(WH_GETMESSAGE, MessageHook, nullptr, GetCurrentThreadId());
  }
}

void RemoveModelessForm(HWND form) {
  auto& modeless = Modeless();
  std::erase(modeless.Forms, form);
  if (modeless.Forms.empty() && modeless.Hook) {
    UnhookWindowsHookEx(modeless.Hook);
    modeless.Hook = nullptr;
  }
}
