// The assistant from the call until it is painted, on a database of 1,000 types, against a bare
// native dialog with as many controls; then keys and choices in its dialogs, against the time that
// they have: a frame of the screen, a tenth of a second.

#include <algorithm>
#include <fstream>
#include <functional>

#include "bench.h"

namespace {

constexpr int kRounds = 15;
constexpr wchar_t kBareClass[] = L"BareDialog";

constexpr int kMembers = 10000, kParameters = 200, kConstants = 5000;

using THelpBox = void(WINAPI*)(const char*, int*, const char**, const char*);
using TConstantBox = void(WINAPI*)(const char*, const char**);

void WriteDatabase(const std::string& path) {
  std::ofstream file(path, std::ios::binary);
  file << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<objects>\n";
  for (int type = 0; type < 1000; ++type) {
    file << "<object name=\"Type" << type << "\"><comment>Un type.</comment>";
    for (int member = 0; member < 20; ++member) {
      file << "<method name=\"Membre" << member << "\" type=\"Type" << member
           << "\"><comment>Un membre.</comment><return type=\"Type" << type
           << "\">Une valeur.</return><param name=\"valeur\" type=\"Type1\">Une valeur.</param>"
              "</method>";
    }
    file << "</object>\n";
  }
  file << "<object name=\"Vaste\">";
  for (int member = 0; member < kMembers; ++member) file << "<data name=\"M" << member << "\"/>";
  file << "<method name=\"Appel\">";
  for (int i = 0; i < kParameters; ++i) file << "<oparam name=\"p" << i << "\"/>";
  file << "</method></object>\n<list name=\"Constantes\" flag=\"add\">";
  for (int i = 0; i < kConstants; ++i) file << "<listconst name=\"zefConstante" << i << "\"/>";
  file << "</list>\n<const name=\"Objet\" type=\"Type5\">Un objet.</const>\n"
          "<const name=\"V\" type=\"Vaste\"/></objects>\n";
}

const wchar_t* awaitedClass = nullptr;
double paintedAt = 0;
std::function<void(HWND)> whenPainted;  ///< what else is done with the dialog

double Seconds() {
  LARGE_INTEGER count;
  LARGE_INTEGER frequency;
  QueryPerformanceCounter(&count);
  QueryPerformanceFrequency(&frequency);
  return static_cast<double>(count.QuadPart) / static_cast<double>(frequency.QuadPart);
}

/// Comes after the dialog's own messages, has it paint, and closes it.
LRESULT CALLBACK WaiterProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != WM_APP) return DefWindowProcW(window, message, wParam, lParam);
  const HWND awaited = FindWindowW(awaitedClass, nullptr);
  if (!awaited || !IsWindowVisible(awaited)) {
    PostMessageW(window, WM_APP, 0, 0);
    return 0;
  }
  RedrawWindow(awaited, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  paintedAt = Seconds();
  if (whenPainted) whenPainted(awaited);
  PostMessageW(awaited, WM_CLOSE, 0, 0);
  return 0;
}

HWND MakeWaiter() {
  WNDCLASSW info{};
  info.lpfnWndProc = WaiterProc;
  info.hInstance = GetModuleHandleW(nullptr);
  info.lpszClassName = L"Waiter";
  RegisterClassW(&info);
  return CreateWindowW(L"Waiter", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, info.hInstance,
                       nullptr);
}

template <class TOpen>
double LeastToPainted(HWND waiter, const wchar_t* className, const TOpen& open) {
  double least = 1e9;
  for (int i = 0; i < kRounds; ++i) {
    awaitedClass = className;
    PostMessageW(waiter, WM_APP, 0, 0);
    const double start = Seconds();
    open();
    least = std::min(least, paintedAt - start);
  }
  return least;
}

LRESULT CALLBACK BareProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_CLOSE) {
    DestroyWindow(window);
    PostQuitMessage(0);
    return 0;
  }
  return DefDlgProcW(window, message, wParam, lParam);
}

/// The kinds that the assistant has, about as many of each.
void OpenBare() {
  const HWND dialog = CreateWindowExW(0, kBareClass, L"", WS_POPUP | WS_CAPTION, 80, 80, 880, 580,
                                      nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
  const struct {
    const wchar_t* Class;
    DWORD Style;
    int Count;
  } kinds[] = {{L"STATIC", 0, 12},  {L"EDIT", WS_BORDER, 7},  {L"BUTTON", 0, 12},
               {L"COMBOBOX", 3, 2}, {L"SysListView32", 1, 1}, {L"msctls_updown32", 0, 1}};
  int at = 0;
  for (const auto& kind : kinds) {
    for (int i = 0; i < kind.Count; ++i, ++at) {
      CreateWindowExW(0, kind.Class, L"Texte", WS_CHILD | WS_VISIBLE | WS_TABSTOP | kind.Style,
                      8 + at % 4 * 210, 8 + at / 4 * 50, 200, 40, dialog, nullptr, nullptr,
                      nullptr);
    }
  }
  ShowWindow(dialog, SW_SHOW);
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (IsDialogMessageW(dialog, &message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

/// The form's control of that name.
HWND ControlOf(HWND form, const wchar_t* name) {
  const ATOM wanted = GlobalFindAtomW(name);
  HWND child = GetWindow(form, GW_CHILD);
  while (child && reinterpret_cast<UINT_PTR>(GetPropW(child, L"ControlName")) != wanted) {
    child = GetWindow(child, GW_HWNDNEXT);
  }
  if (!child) Fail("a control is missing");
  return child;
}

void Press(HWND control, WPARAM key) {
  SendMessageW(control, WM_KEYDOWN, key, 0);
  if (key >= '0' && key <= '9') SendMessageW(control, WM_CHAR, key, 0);
  SendMessageW(control, WM_KEYUP, key, 0);
}

/// Until what an act changed is painted.
double TimeOf(HWND form, const std::function<void()>& act) {
  return LeastSeconds(kRounds, [&] {
    act();
    RedrawWindow(form, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  });
}

void PrintAgainst(const std::string& subject, double seconds, const char* limit, double most) {
  PrintRow(subject + "/ours", kRounds, seconds * 1e3, "ms");
  PrintRow(subject + "/" + limit, 1, most * 1e3, "ms");
}

void MeasureActs(HWND waiter, THelpBox helpBox, TConstantBox constantBox) {
  const auto during = [&](const wchar_t* className, const std::function<void()>& call,
                          const std::function<void(HWND)>& act) {
    awaitedClass = className;
    whenPainted = act;
    PostMessageW(waiter, WM_APP, 0, 0);
    call();
    whenPainted = nullptr;
  };
  const char* result = nullptr;
  int cursor = 6;
  std::string line = "V.Appel 0";
  for (int i = 1; i < kParameters; ++i) line += ", " + std::to_string(i);
  during(
      L"TDlgSyntax", [&] { helpBox(line.c_str(), &cursor, &result, ""); },
      [](HWND form) {
        const HWND parameters = ControlOf(form, L"ListParam");
        SetFocus(parameters);
        Press(parameters, VK_END);
        const HWND value = ControlOf(form, L"EditValue"),
                   expression = ControlOf(form, L"EditLigne");
        SetFocus(value);
        PrintAgainst("KeyInValue", TimeOf(form, [&] { Press(value, '7'); }), "frame", 0.016);
        SetFocus(expression);
        Press(expression, VK_END);
        PrintAgainst("KeyInLine", TimeOf(form, [&] { Press(expression, '7'); }), "frame", 0.016);
      });
  during(
      L"TDlgSyntaxConst", [&] { constantBox("", &result); },
      [](HWND form) {
        const HWND categories = ControlOf(form, L"BoxCat");
        const double filled = TimeOf(form, [&] {
          SendMessageW(categories, CB_SETCURSEL, 0, 0);
          SendMessageW(form, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(categories), CBN_SELCHANGE),
                       reinterpret_cast<LPARAM>(categories));
        });
        PrintAgainst("ConstantsFilled", filled, "tenth_of_a_second", 0.1);
        const HWND list = ControlOf(form, L"ListConst");
        SetFocus(list);
        Press(list, VK_END);
        PrintAgainst("ConstantTicked", TimeOf(form, [&] { Press(list, VK_SPACE); }), "frame",
                     0.016);
      });
}

const TBenchGroup group("assistant", [] {
  WriteDatabase(ProgramFolder() + "VBSZEF.XML");
  const HMODULE library = LoadLibraryA((ProgramFolder() + "zefext.dll").c_str());
  if (!library) Fail("cannot load zefext.dll");
  const auto helpBox = LibraryFunction<THelpBox>(library, "VCLSyntaxHelpBox");
  const HWND waiter = MakeWaiter();

  WNDCLASSW bare{};
  bare.lpfnWndProc = BareProc;
  bare.cbWndExtra = DLGWINDOWEXTRA;
  bare.hInstance = GetModuleHandleW(nullptr);
  bare.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  bare.lpszClassName = kBareClass;
  RegisterClassW(&bare);
  const double bareSeconds = LeastToPainted(waiter, kBareClass, OpenBare);
  PrintRow("AssistantShown/bare_dialog", kRounds, bareSeconds * 1e3, "ms");

  const auto open = [&] {
    int cursor = 12;
    const char* result = nullptr;
    helpBox("x = Objet.Membre3(1).Membre2(2)", &cursor, &result, "");
  };
  awaitedClass = L"TDlgSyntax";
  PostMessageW(waiter, WM_APP, 0, 0);
  const double start = Seconds();
  open();
  PrintRow("AssistantFirst/ours", 1, (paintedAt - start) * 1e3, "ms");
  const double oursSeconds = LeastToPainted(waiter, L"TDlgSyntax", open);
  PrintRow("AssistantShown/ours", kRounds, oursSeconds * 1e3, "ms");
  MeasureActs(waiter, helpBox, LibraryFunction<TConstantBox>(library, "VCLSyntaxConstHelpBox"));
  LibraryFunction<void(WINAPI*)()>(library, "VCLFree")();
  DestroyWindow(waiter);
  FreeLibrary(library);
});

}  // namespace
