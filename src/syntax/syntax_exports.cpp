#include "frame/exported.h"
#include "frame/singletons.h"
#include "syntax/dlg_syntax.h"
#include "syntax/result_strings.h"
#include "zefext.h"

namespace {

TDlgSyntax& Assistant() { return SingletonForm<TDlgSyntax>(TFormSlot::Assistant); }

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
    std::string text = OrEmpty(line);
    TDlgSyntax& assistant = Assistant();
    std::optional<std::string_view> given;
    if (line) given = line;
    // While it is on screen, a second call could only spoil the first: it is answered as cancelled.
    if (!assistant.Modal() && assistant.Run(given, cursor ? *cursor : 0, OrEmpty(types))) {
      text = assistant.ResultLine();
      if (cursor) *cursor = assistant.ResultCursor();
    }
    const char* filled = FillResultString(TResultString::Assistant, std::move(text));
    if (result) *result = filled;
  });
}
