#include "platform/system_message.h"

#include <windows.h>

#include "platform/code_page.h"

std::string SystemMessage(long code) {
  wchar_t text[512];
  DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                static_cast<DWORD>(code), 0, text,
                                static_cast<DWORD>(std::size(text)), nullptr);
  while (length > 0 && text[length - 1] <= L' ') --length;
  return ToAnsi({text, length});
}
