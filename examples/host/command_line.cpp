#include "command_line.h"

#include <algorithm>
#include <cwchar>
#include <string_view>

std::optional<TCommandLine> ParseCommandLine(int count, const wchar_t* const* arguments) {
  TCommandLine line;
  for (int i = 1; i < count; ++i) {
    const std::wstring_view option = arguments[i];
    if (option == L"--assist") {
      line.Assist = true;
      continue;
    }
    if (++i == count) return std::nullopt;
    const int fromZero = std::max(static_cast<int>(std::wcstol(arguments[i], nullptr, 10)) - 1, 0);
    if (option == L"--script") {
      line.Script = fromZero;
    } else if (option == L"--line") {
      if (!line.Position) line.Position.emplace();
      line.Position->Line = fromZero;
    } else if (option == L"--column") {
      if (!line.Position) line.Position.emplace();
      line.Position->Column = fromZero;
    } else if (option == L"--log") {
      line.LogFile = arguments[i];
    } else {
      return std::nullopt;
    }
  }
  return line;
}
