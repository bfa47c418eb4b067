#include "frame/exported.h"
#include "frame/singletons.h"
#include "syntax/dlg_syntax.h"
#include "syntax/result_strings.h"
#include "zefext.h"

namespace {

TDlgSyntax& Assistant() { return SingletonForm<TDlgSyntax>(TFormSlot::Assistant); }

/// The assistant. Once it is there, the result is the text that was given, until there is another.
TDlgSyntax& AssistantFor(const char* text, const char** result) {
  TDlgSyntax& assistant = Assistant();
  if (result) *result = OrEmpty(text);
  return assistant;
}

/// While one of the assistant's dialogs is on screen, a second run could only spoil the first: it
/// is answered as cancelled.
bool Busy(TDlgSyntax& assistant) {
  return assistant.Modal() || assistant.ConstantPicker().Modal() || assistant.TypesEditor().Modal();
}

void HandOut(TResultString which, std::string text, const char** result) {
  const char* filled = FillResultString(which, std::move(text));
  if (result) *result = filled;
}

}  // namespace

int ZEFEXT_API VCLSyntaxIsMethod(const char* word) {
  return Exported(0, [&] { return Assistant().Names().IsMethod(OrEmpty(word)) ? 1 : 0; });
}

int ZEFEXT_API VCLSyntaxIsConstant(const char* word) {
  return Exported(0, [&] { return Assistant().Names().IsConstant(OrEmpty(word)) ? 1 : 0; });
}

void ZEFEXT_API VCLSyntaxHelpBox(const char* line, int* cursor, const char** result,
                                 const char* types) {
  if (result) *result = nullptr;
  Exported([&] {
    TDlgSyntax& assistant = AssistantFor(line, result);
    std::string text = OrEmpty(line);
    std::optional<std::string_view> given;
    if (line) given = line;
    if (!Busy(assistant) && assistant.Run(given, cursor ? *cursor : 0, OrEmpty(types))) {
      text = assistant.ResultLine();
      if (cursor) *cursor = assistant.ResultCursor();
    }
    HandOut(TResultString::Assistant, std::move(text), result);
  });
}

void ZEFEXT_API VCLSyntaxConstHelpBox(const char* text, const char** result) {
  if (result) *result = nullptr;
  Exported([&] {
    TDlgSyntax& assistant = AssistantFor(text, result);
    std::string value = OrEmpty(text);
    if (!Busy(assistant)) {
      TDlgSyntaxConst& picker = assistant.ConstantPicker();
      assistant.TypesEditor().ClearTypesChanged();
      const TOpenDocument open(assistant.Document());
      picker.SetLine(value);
      if (picker.ShowModal() == mrOk) value = picker.GetResult();
    }
    HandOut(TResultString::Assistant, std::move(value), result);
  });
}

void ZEFEXT_API VCLSyntaxTypesBox(const char* text, const char** result) {
  if (result) *result = nullptr;
  Exported([&] {
    TDlgSyntax& assistant = AssistantFor(text, result);
    std::string variables = OrEmpty(text);
    if (!Busy(assistant)) {
      TDlgSyntaxTypes& editor = assistant.TypesEditor();
      const TOpenDocument open(assistant.Document());
      editor.SetVariables(variables);
      if (editor.ShowModal() == mrOk) {
        variables = editor.GetResult();
      } else {
        editor.ClearTypesChanged();
      }
    }
    HandOut(TResultString::Types, std::move(variables), result);
  });
}

unsigned char ZEFEXT_API VCLSyntaxGetNewTypes(const char** result) {
  if (result) *result = nullptr;
  return Exported<unsigned char>(0, [&] {
    auto* assistant = static_cast<TDlgSyntax*>(FormInSlot(TFormSlot::Assistant));
    if (!assistant) return false;
    const TDlgSyntaxTypes& editor = assistant->TypesEditor();
    HandOut(TResultString::Types, editor.TypesChanged() ? editor.GetResult() : std::string(),
            result);
    return editor.TypesChanged();
  });
}
