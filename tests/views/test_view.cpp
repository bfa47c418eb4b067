// A view with controls, in a library that is otherwise the shipped one: hosts get views of their
// own through the same functions.
#include "dialogs/base/dialog_view_base_form.h"
#include "frame/exported.h"

namespace {

class TTestView : public TDialogViewBaseForm {
 public:
  using TDialogViewBaseForm::TDialogViewBaseForm;
  const char* ClassName() const override { return "TTestView"; }
  void InitDialog() override { NameEdit->SetText("Martin"); }

 protected:
  void Bind(TFormBinder& binder) override {
    TDialogViewBaseForm::Bind(binder);
    binder.Control("NameEdit", NameEdit);
    binder.Control("Outcome", Outcome);
    binder.Handler("AcceptClick", [this] { Outcome->SetText("accepted"); });
    binder.Handler("RejectClick", [this] { Outcome->SetText("rejected"); });
  }

 private:
  TEdit* NameEdit = nullptr;
  TLabel* Outcome = nullptr;
};

}  // namespace

extern "C" __declspec(dllexport) HWND CreateTestView(HWND parent, void** view) {
  return Exported<HWND>(nullptr, [&] {
    TForm& form = Application().Keep(CreateForm<TTestView>(parent));
    *view = form.HostHandle();
    return form.Handle();
  });
}
