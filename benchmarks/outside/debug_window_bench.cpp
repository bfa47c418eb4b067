// What a line costs in the debug window, the more of them there are: against the first hundred,
// and against a line added to a native memo that holds as many.

#include "bench.h"

namespace {

constexpr char kLine[] = "VCLSyntaxIsMethod(\"Ecritures\") = 1";

HWND FindMemo(HWND form) { return FindWindowExA(form, nullptr, "Edit", nullptr); }

/// Seconds a line, from the first to the one that all can be read with.
double OurLine(HMODULE library, int lines) {
  const auto show = LibraryFunction<void(WINAPI*)(const char*)>(library, "VCLShowDebugText");
  show(kLine);
  const HWND form = FindWindowA("TDlgDebug", nullptr);
  const HWND memo = FindMemo(form);
  const HWND clear = FindWindowExA(form, nullptr, "Button", "Vider");
  const auto click = MAKEWPARAM(GetDlgCtrlID(clear), BN_CLICKED);
  const int rounds = lines > 10000 ? 2 : 5;
  const double seconds = LeastSeconds(rounds, [&] {
    SendMessageA(form, WM_COMMAND, click, reinterpret_cast<LPARAM>(clear));
    for (int line = 0; line < lines; ++line) show(kLine);
    if (SendMessageA(memo, EM_GETLINECOUNT, 0, 0) != lines) Fail("lines are missing");
  });
  LibraryFunction<void(WINAPI*)()>(library, "VCLFree")();
  return seconds / lines;
}

/// Seconds for one more line in a memo of that many.
double NativeLine(int lines) {
  const HWND window = CreateWindowA("STATIC", "", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100, 100, 400,
                                    180, nullptr, nullptr, nullptr, nullptr);
  const HWND memo = CreateWindowA("EDIT", "",
                                  WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_HSCROLL | ES_MULTILINE |
                                      ES_AUTOVSCROLL | ES_AUTOHSCROLL,
                                  0, 0, 382, 102, window, nullptr, nullptr, nullptr);
  SendMessageA(memo, EM_SETLIMITTEXT, 0, 0);
  const std::string line = std::string("\r\n12345 : ") + kLine;
  std::string text;
  for (int i = 0; i < lines; ++i) text += line;
  SetWindowTextA(memo, text.c_str());
  UpdateWindow(memo);
  const double seconds = LeastSeconds(20, [&] {
    const int end = GetWindowTextLengthA(memo);
    SendMessageA(memo, EM_SETSEL, static_cast<WPARAM>(end), end);
    SendMessageA(memo, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(line.c_str()));
  });
  DestroyWindow(window);
  return seconds;
}

const TBenchGroup group("debug window", [] {
  const HMODULE library = LoadLibraryA((ProgramFolder() + "zefext.dll").c_str());
  if (!library) Fail("cannot load zefext.dll");
  double hundred = 0;
  for (const int lines : {100, 10000, 100000}) {
    const std::string arguments = "/" + std::to_string(lines);
    const double ours = OurLine(library, lines) * 1e6;
    if (lines == 100) hundred = ours;
    PrintRow("DebugLine/ours" + arguments, 1, ours, "us");
    PrintRow("DebugLine/the first hundred" + arguments, 1, hundred, "us");
    PrintRow("DebugLine/native memo" + arguments, 1, NativeLine(lines) * 1e6, "us");
  }
  FreeLibrary(library);
});

}  // namespace
