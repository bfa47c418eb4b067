// The assistant from the call until it is painted, on a database of 1,000 types, against a bare
// native dialog made of the same controls; then keys and choices in its dialogs, against the time
// that they have: a frame of the screen, a tenth of a second.

#include <fstream>

#include "bench.h"
#include "painted.h"

namespace {

constexpr int kRounds = 15;
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

void MeasureActs(THelpBox helpBox, TConstantBox constantBox) {
  const char* result = nullptr;
  int cursor = 6;
  std::string line = "V.Appel 0";
  for (int i = 1; i < kParameters; ++i) line += ", " + std::to_string(i);
  SecondsToPainted(
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
  SecondsToPainted(
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
  const auto open = [&] {
    int cursor = 12;
    const char* result = nullptr;
    helpBox("x = Objet.Membre3(1).Membre2(2)", &cursor, &result, "");
  };
  PrintRow("AssistantFirst/ours", 1, SecondsToPainted(L"TDlgSyntax", open) * 1e3, "ms");
  PrintAgainstBare("AssistantShown", kRounds, L"TDlgSyntax", open);
  MeasureActs(helpBox, LibraryFunction<TConstantBox>(library, "VCLSyntaxConstHelpBox"));
  LibraryFunction<void(WINAPI*)()>(library, "VCLFree")();
  FreeLibrary(library);
});

}  // namespace
