#include "forms/code_page_edit.h"

#include <algorithm>

#include "forms/control.h"
#include "platform/code_page.h"

bool ShowInCodePage(HWND edit) {
  const std::wstring typed = WindowTextWide(edit);
  DWORD start = 0;
  DWORD end = 0;
  SendMessageW(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  const std::size_t caret = std::min<std::size_t>(end, typed.size());
  // The other half of such a character is on its way.
  if (caret > 0 && IS_HIGH_SURROGATE(typed[caret - 1])) return false;
  const std::wstring held = ToWide(ToAnsi(typed));
  if (held == typed || ToWide(ToAnsi(held)) != held) return false;
  // Only what differs, so that the rest can be undone; up to the caret, which stays behind it then.
  const std::size_t common = std::min(typed.size(), held.size());
  std::size_t before = 0;
  while (before < common && typed[before] == held[before]) ++before;
  std::size_t behind = 0;
  while (behind < std::min(common - before, typed.size() - caret) &&
         typed[typed.size() - 1 - behind] == held[held.size() - 1 - behind]) {
    ++behind;
  }
  const std::wstring instead = held.substr(before, held.size() - behind - before);
  SendMessageW(edit, EM_SETSEL, before, static_cast<LPARAM>(typed.size() - behind));
  SendMessageW(edit, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(instead.c_str()));
  return true;
}
