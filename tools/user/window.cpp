#include "user/window.h"

#include <algorithm>

#include "user/say.h"

namespace {
constexpr UINT AnswerMs = 30000;  // for hangs only
constexpr UINT TellMs = 1000;     // where the tree is told there may be one

std::wstring FromBytes(UINT codePage, std::string_view text) {
  const int length = static_cast<int>(text.size());
  std::wstring wide(text.size(), L'\0');
  wide.resize(static_cast<size_t>(MultiByteToWideChar(codePage, 0, text.data(), length, wide.data(),
                                                      static_cast<int>(wide.size()))));
  return wide;
}

std::string ToBytes(UINT codePage, std::wstring_view text) {
  const int length = static_cast<int>(text.size());
  std::string bytes(text.size() * 4, '\0');
  bytes.resize(
      static_cast<size_t>(WideCharToMultiByte(codePage, 0, text.data(), length, bytes.data(),
                                              static_cast<int>(bytes.size()), nullptr, nullptr)));
  return bytes;
}

LRESULT AskFor(UINT ms, HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT fallback) {
  DWORD_PTR result = 0;
  return SendMessageTimeoutW(window, message, wParam, lParam, SMTO_NORMAL, ms, &result)
             ? static_cast<LRESULT>(result)
             : fallback;
}

std::string TextWithin(UINT ms, HWND window) {
  // An owner-drawn combo box without strings answers with the address of an item.
  const LONG style = GetWindowLongW(window, GWL_STYLE);
  if (ClassOf(window) == "ComboBox" && (style & (CBS_OWNERDRAWFIXED | CBS_OWNERDRAWVARIABLE)) &&
      !(style & CBS_HASSTRINGS))
    return {};
  const LRESULT room = AskFor(ms, window, WM_GETTEXTLENGTH, 0, 0, 0);
  std::wstring text(static_cast<size_t>(room) + 1, L'\0');
  const auto place = reinterpret_cast<LPARAM>(text.data());
  text.resize(static_cast<size_t>(AskFor(ms, window, WM_GETTEXT, text.size(), place, 0)));
  return Utf8(text);
}

BOOL CALLBACK Collect(HWND window, LPARAM windows) {
  reinterpret_cast<std::vector<HWND>*>(windows)->push_back(window);
  return TRUE;
}

void Describe(HWND window, int depth, std::string& tree) {
  const RECT bounds = BoundsOf(window);
  tree += Say(std::string(static_cast<size_t>(depth) * 2, ' '), ClassOf(window), " \"",
              NameOf(window), "\" '", TextWithin(TellMs, window).substr(0, 80), "' (", bounds.left,
              ",", bounds.top, ")-(", bounds.right, ",", bounds.bottom, ")",
              IsWindowEnabled(window) ? "" : " disabled", Shown(window) ? "" : " hidden", "\n");
  if (!Shown(window)) return;
  for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
    Describe(child, depth + 1, tree);
}
}  // namespace

std::string Utf8(std::wstring_view text) { return ToBytes(CP_UTF8, text); }
std::wstring Wide(std::string_view utf8) { return FromBytes(CP_UTF8, utf8); }
std::string Ansi(std::string_view utf8) { return ToBytes(CP_ACP, Wide(utf8)); }
std::string FromAnsi(std::string_view text) { return Utf8(FromBytes(CP_ACP, text)); }

LRESULT Ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT fallback) {
  return AskFor(AnswerMs, window, message, wParam, lParam, fallback);
}

std::string ClassOf(HWND window) {
  wchar_t name[256];
  return Utf8({name, static_cast<size_t>(GetClassNameW(window, name, 256))});
}

std::string TextOf(HWND window) { return TextWithin(AnswerMs, window); }

std::string NameOf(HWND window) {
  const auto atom =
      static_cast<ATOM>(reinterpret_cast<ULONG_PTR>(GetPropW(window, L"ControlName")));
  wchar_t name[256];
  if (!atom) return {};
  return Utf8({name, GlobalGetAtomNameW(atom, name, 256)});
}

HWND ControlNamed(HWND form, std::string_view name) {
  const std::vector<HWND> windows = Descendants(form);
  const auto found = std::ranges::find(windows, name, NameOf);
  return found == windows.end() ? nullptr : *found;
}

RECT BoundsOf(HWND window) {
  RECT bounds{};
  GetWindowRect(window, &bounds);
  return bounds;
}

DWORD ProcessOf(HWND window) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  return process;
}

std::vector<HWND> TopWindows(DWORD process) {
  std::vector<HWND> windows;
  EnumWindows(Collect, reinterpret_cast<LPARAM>(&windows));
  std::erase_if(windows, [process](HWND window) { return ProcessOf(window) != process; });
  return windows;
}

std::vector<HWND> Descendants(HWND window) {
  std::vector<HWND> windows;
  EnumChildWindows(window, Collect, reinterpret_cast<LPARAM>(&windows));
  return windows;
}

std::string WindowTree(DWORD process) {
  std::string tree;
  for (const HWND window : TopWindows(process)) Describe(window, 0, tree);
  return tree.empty() ? "(no window)\n" : tree;
}
