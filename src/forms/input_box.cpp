#include "forms/input_box.h"

#include "forms/accessibility.h"
#include "forms/form.h"
#include "forms/std_controls.h"
#include "platform/code_page.h"

namespace {

class TInputBox : public TForm {
 public:
  using TForm::TForm;

  const char* ClassName() const override { return "TInputBox"; }

  TLabel* Prompt = nullptr;
  TEdit* Value = nullptr;

 protected:
  void Bind(TFormBinder& binder) override {
    binder.Control("Prompt", Prompt);
    binder.Control("Value", Value);
  }
};

}  // namespace

std::optional<std::string> InputBox(std::string_view captionUtf8, std::string_view promptUtf8,
                                    std::string_view value) {
  const auto box = CreateForm<TInputBox>();
  box->SetCaption(Utf8ToAnsi(captionUtf8));
  box->Prompt->SetTextUtf8(promptUtf8);
  box->Value->SetText(value);
  AnnotateControls(*box);
  if (box->ShowModal() != mrOk) return std::nullopt;
  return box->Value->Text();
}
