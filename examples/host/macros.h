#pragma once

#include <string>
#include <vector>

#include "script_editor.h"

/// A script of the user's, with the place where its editing was left.
struct TMacro {
  std::wstring Title;
  std::wstring Text;
  TScriptEditor::TPosition Position;
};

/// The macros that come with the program.
std::vector<TMacro> LoadMacros();

/// The types of a script's variables, name=type comma text, stay in the script itself, in a comment
/// line of their own, so that they follow the script wherever it goes.
std::wstring DeclaredTypes(const TScriptEditor& editor);
/// Adds, changes or (for an empty text) removes that line.
void SetDeclaredTypes(TScriptEditor& editor, const std::wstring& types);
