#include "forms/modeless_keyboard.h"

#include <algorithm>
#include <string>
#include <vector>

#include "forms/application.h"
#include "forms/buttons.h"
#include "forms/form.h"
#include "forms/std_controls.h"
#include "platform/guard.h"
#include "platform/kept.h"
#include "platform/window_list.h"

namespace {

/// Posted to a form behind a Tab that was left to the host: the window that had the focus then, and
/// whether Shift was down.
constexpr UINT kTabWasLeft = WM_APP + 0x2F1;

struct TModelessForms {
  std::vector<HWND> Forms;
  HHOOK Hook = nullptr;
};

TModelessForms& Modeless() { return Kept<TModelessForms>(); }

bool Pressed(int key) { return GetKeyState(key) < 0; }

LRESULT DialogCode(const MSG& key) {
  return SendMessageW(key.hwnd, WM_GETDLGCODE, key.wParam, reinterpret_cast<LPARAM>(&key));
}

/// The letter that a label or a button is reached by, or 0.
wchar_t MnemonicOf(HWND window) {
  const auto code = SendMessageW(window, WM_GETDLGCODE, 0, 0);
  const bool caption = (code & (DLGC_BUTTON | DLGC_STATIC)) != 0;
  if (!caption || !IsWindowVisible(window) || !IsWindowEnabled(window)) return 0;
  wchar_t text[256];
  const int length = GetWindowTextW(window, text, static_cast<int>(std::size(text)));
  wchar_t letter = 0;
  for (int at = 0; at + 1 < length; ++at) {
    if (text[at] == L'&' && text[++at] != L'&') letter = text[at];
  }
  return letter;
}

bool HasMnemonic(const TForm& form, wchar_t letter) {
  const auto upper = [](wchar_t each) {
    return CharUpperW(reinterpret_cast<LPWSTR>(UINT_PTR{each}));
  };
  return std::ranges::any_of(WindowsWithin(form.Handle()), [&](HWND window) {
    const wchar_t mnemonic = MnemonicOf(window);
    return mnemonic && upper(mnemonic) == upper(letter);
  });
}

enum class TUse { None, Key, LastTab };

/// What the form does with a key; LastTab: Tab would go round to its other end.
TUse UseOf(const TForm& form, const MSG& key) {
  const auto pressable = [](const TButton* button) { return button && button->CanFocus(); };
  const auto when = [](bool used) { return used ? TUse::Key : TUse::None; };
  const LRESULT code = DialogCode(key);
  if (code & DLGC_WANTALLKEYS) return TUse::Key;
  switch (key.wParam) {
    case VK_TAB: {
      if (Pressed(VK_CONTROL)) return TUse::None;
      const HWND window = form.Handle();
      const bool back = Pressed(VK_SHIFT);
      const HWND first = GetNextDlgTabItem(window, nullptr, FALSE);
      const HWND end = back ? GetNextDlgTabItem(window, first, TRUE) : first;
      return GetNextDlgTabItem(window, key.hwnd, back) == end ? TUse::LastTab : TUse::Key;
    }
    case VK_RETURN:
      return when((code & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) ||
                  pressable(form.DefaultButton()));
    case VK_ESCAPE:
      return when(pressable(form.CancelButton()));
    case VK_LEFT:
    case VK_RIGHT:
    case VK_UP:
    case VK_DOWN:
      return TUse::Key;
    default:
      return TUse::None;
  }
}

bool UsesLetter(const TForm& form, const MSG& message) {
  // A letter alone is a mnemonic where it is no text, on a button for one.
  if (message.message == WM_CHAR && (DialogCode(message) & (DLGC_WANTCHARS | DLGC_WANTALLKEYS))) {
    return false;
  }
  return HasMnemonic(form, static_cast<wchar_t>(message.wParam));
}

/// What the host's loop makes of a Tab, Enter or Escape that it was left: no text for any control.
bool IsLeftover(const MSG& message) {
  if (message.message != WM_CHAR || Pressed(VK_CONTROL)) return false;
  if (message.wParam == VK_TAB) return true;
  return (message.wParam == VK_RETURN || message.wParam == VK_ESCAPE) &&
         !(SendMessageW(message.hwnd, WM_GETDLGCODE, 0, 0) & DLGC_WANTALLKEYS);
}

/// Behind a Tab that was left to the host: where the focus has not moved, the host does not
/// navigate.
void GoRound(HWND form, const MSG& tab) {
  if (GetFocus() != reinterpret_cast<HWND>(tab.wParam)) return;
  SendMessageW(form, WM_NEXTDLGCTL, static_cast<WPARAM>(tab.lParam), FALSE);
}

/// True when the message is used up.
bool Take(const TForm& form, MSG& message) {
  const HWND window = form.Handle();
  if (message.message == kTabWasLeft && message.hwnd == window)
    return GoRound(window, message), true;
  if (message.message == WM_KEYDOWN) {
    const TUse use = UseOf(form, message);
    if (use == TUse::LastTab && (GetWindowLongW(window, GWL_STYLE) & WS_CHILD)) {
      PostMessageW(window, kTabWasLeft, reinterpret_cast<WPARAM>(message.hwnd), Pressed(VK_SHIFT));
      return false;
    }
    return use != TUse::None && IsDialogMessageW(window, &message);
  }
  if (message.message != WM_CHAR && message.message != WM_SYSCHAR) return false;
  if (IsLeftover(message)) return true;
  return UsesLetter(form, message) && IsDialogMessageW(window, &message);
}

TForm* ModelessFormAround(HWND window) {
  const auto& forms = Modeless().Forms;
  const auto around = std::ranges::find_if(
      forms, [&](HWND form) { return form == window || IsChild(form, window); });
  return around == forms.end() ? nullptr : Application().FindForm(*around);
}

LRESULT CALLBACK MessageHook(int code, WPARAM wParam, LPARAM lParam) {
  auto& message = *reinterpret_cast<MSG*>(lParam);
  if (code == HC_ACTION && wParam == PM_REMOVE) {
    Guarded([&] {
      const TCallScope scope;
      const TForm* form = ModelessFormAround(message.hwnd);
      if (form && Take(*form, message)) message.message = WM_NULL;
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
