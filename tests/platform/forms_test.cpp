#include <windows.h>

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "dialogs/base/example_view.h"
#include "directories/dlg_dir_select.h"
#include "filter/dlg_select_typ_op.h"
#include "forms/input_box.h"
#include "frame/dlg_debug.h"
#include "syntax/dlg_syntax.h"
#include "update/dlg_ask_dwld.h"
#include "update/dlg_dwnld.h"

namespace {

std::set<std::string> made;

/// Makes a form with all its controls, hidden ones included, and ties its handlers; what is wrong
/// in its layout is in the message.
template <class T, class... TArguments>
void Make(TArguments... arguments) {
  try {
    const auto form = CreateForm<T>(arguments...);
    // With the dialogs that it makes for itself.
    for (const TForm* each : Application().Forms()) made.insert(each->ClassName());
  } catch (const std::exception& error) {
    ADD_FAILURE() << error.what();
  }
}

BOOL CALLBACK AddName(HMODULE, LPCWSTR, LPWSTR name, LONG_PTR names) {
  const std::wstring wide = name;
  reinterpret_cast<std::set<std::string>*>(names)->insert({wide.begin(), wide.end()});
  return TRUE;
}

std::string Upper(std::string text) {
  CharUpperA(text.data());
  return text;
}

TEST(Forms, AreMadeFromTheirLayoutsOneAndAll) {
  Make<TDlgBase>();
  Make<TDialogViewBaseForm>(HWND{});
  Make<TExampleView>(HWND{});
  Make<TDlgDebug>();
  Make<TDlgSyntax>();
  Make<TDlgDirSelect>();
  Make<TDlgSelectTypOp>();
  Make<TDlgAskDwld>();
  Make<TDlgDwnld>();
  std::set<std::string> layouts;
  EnumResourceNamesW(nullptr, L"FORM", AddName, reinterpret_cast<LONG_PTR>(&layouts));
  // These are made where they are used only.
  std::set<std::string> expected{"TDLGDIRMOVE", "TINPUTBOX"};
  for (const auto& name : made) expected.insert(Upper(name));
  EXPECT_EQ(layouts, expected);
}

}  // namespace
