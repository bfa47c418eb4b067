#include <cstring>

#include "outside/host_strings.h"
#include "outside/imports.h"
#include "outside/outside_test.h"

namespace {

struct TAsked {
  HWND Caller;
  std::wstring File;
  UINT Command;
  DWORD_PTR Data;
  bool operator==(const TAsked&) const = default;
};
std::vector<TAsked> asked;
std::wstring loadedFrom;

HMODULE WINAPI LoadTheFake(const wchar_t* path) {
  const std::wstring file(path);
  if (!file.ends_with(L"\\hhctrl.ocx")) return LoadLibraryW(path);
  loadedFrom = file;
  return GetModuleHandleW(nullptr);
}

/// The system's help, which the library finds where it looks for it.
HWND WINAPI RecordHtmlHelp(HWND caller, const wchar_t* file, UINT command, DWORD_PTR data) {
  asked.push_back({caller, file, command, data});
  return nullptr;
}

FARPROC WINAPI FindTheFake(HMODULE module, const char* name) {
  if (module != GetModuleHandleW(nullptr) || std::strcmp(name, "HtmlHelpW") != 0)
    return GetProcAddress(module, name);
  return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&RecordHtmlHelp));
}

using HtmlHelp = TOutsideTest;

TEST_F(HtmlHelp, OpensCompiledFilesOnly) {
  constexpr UINT DisplayTopic = 0;
  constexpr UINT HelpContext = 15;
  int redirected = 0;
  RedirectImports(Library->Module, [&](std::string_view name, const void*) -> const void* {
    const bool loads = name == "LoadLibraryW";
    if (!loads && name != "GetProcAddress") return nullptr;
    ++redirected;
    return loads ? reinterpret_cast<const void*>(&LoadTheFake)
                 : reinterpret_cast<const void*>(&FindTheFake);
  });
  ASSERT_EQ(redirected, 2);
  wchar_t system[MAX_PATH];
  GetSystemDirectoryW(system, MAX_PATH);
  HWND window = nullptr;
  const auto askFor = [&](const char* className) {
    return [&, className](TScriptedUser& user) {
      TFormDriver form = user.WaitForForm(className);
      window = form.Handle();
      const auto requests = [&] { return asked.size() + HelpServer->Requests().size(); };
      const std::size_t before = requests();
      form.Click("ButtonHelp");
      user.WaitUntil("the help request", [&] { return requests() > before; });
      form.Press(VK_ESCAPE);
      form.WaitGone();
    };
  };
  for (const bool compiled : {true, false}) {
    Library->VCLFree();  // a dialog keeps the file that it was made with
    Library->VCLSetMainHelpFile(compiled ? "C:\\ZEF\\Aide.CHM" : "C:\\ZEF\\Aide.chm.hlp");
    asked.clear();
    During([&] { Library->VCLInvokeModalDialog(nullptr); }, askFor("TDlgBase"));
    std::vector<TAsked> expected{{window, L"C:\\ZEF\\Aide.CHM", DisplayTopic, 0}};
    During([&] { Library->VCLSyntaxHelpBox("", nullptr, nullptr, nullptr); }, askFor("TDlgSyntax"));
    expected.push_back({window, L"C:\\ZEF\\Aide.CHM", HelpContext, 50001});
    EXPECT_EQ(asked, compiled ? expected : std::vector<TAsked>());
    EXPECT_EQ(HelpServer->Requests().size(), compiled ? 0U : 2U);
  }
  EXPECT_EQ(loadedFrom, std::wstring(system) + L"\\hhctrl.ocx");
}

}  // namespace
