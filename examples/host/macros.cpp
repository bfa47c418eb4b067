#include "macros.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace {

constexpr std::wstring_view TypesMark = L"'types:";

std::wstring ReadMacro(int id) {
  const HRSRC found = FindResourceW(nullptr, MAKEINTRESOURCEW(id), L"MACRO");
  if (!found) return {};
  const auto* bytes = static_cast<const char*>(LockResource(LoadResource(nullptr, found)));
  const int size = static_cast<int>(SizeofResource(nullptr, found));
  const int length = MultiByteToWideChar(CP_UTF8, 0, bytes, size, nullptr, 0);
  std::wstring text(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, bytes, size, text.data(), length);
  return text;
}

std::optional<int> TypesLine(const TScriptEditor& editor) {
  for (int line = 0; line < editor.LineCount(); ++line) {
    if (editor.Line(line).starts_with(TypesMark)) return line;
  }
  return std::nullopt;
}

/// The cursor stands in a call, so that the assistant has something to show from the start.
TMacro Macro(const wchar_t* title, int id, std::wstring_view call) {
  TMacro macro{title, ReadMacro(id), {}};
  const std::size_t place = macro.Text.find(call);
  if (place == std::wstring::npos) return macro;
  const std::wstring_view before(macro.Text.data(), place);
  const std::size_t lineStart = before.rfind(L'\n') + 1;  // 0 in the first line
  macro.Position = {static_cast<int>(std::ranges::count(before, L'\n')),
                    static_cast<int>(place - lineStart)};
  return macro;
}

}  // namespace

std::vector<TMacro> LoadMacros() {
  return {Macro(L"Épargne du mois", 1, L"Comptes.Item(\"Compte courant\")"),
          Macro(L"Alerte budget", 2, L"Afficher"), Macro(L"Dépenses par tiers", 3, L"Trier ")};
}

std::wstring DeclaredTypes(const TScriptEditor& editor) {
  const std::optional<int> line = TypesLine(editor);
  if (!line) return {};
  std::wstring_view types = editor.Line(*line);
  types.remove_prefix(TypesMark.size());
  while (types.starts_with(L' ')) types.remove_prefix(1);
  return std::wstring(types);
}

void SetDeclaredTypes(TScriptEditor& editor, const std::wstring& types) {
  if (types == DeclaredTypes(editor)) return;
  const std::optional<int> line = TypesLine(editor);
  const std::wstring text = std::wstring(TypesMark) + L' ' + types;
  if (!line) {
    editor.InsertLine(0, text);
  } else if (types.empty()) {
    editor.DeleteLine(*line);
  } else {
    editor.SetLine(*line, text);
  }
}
