#include "forms/accessibility.h"

#include <utility>

#include "forms/form.h"
#include "forms/rules/labels.h"
#include "platform/code_page.h"
#include "platform/window_annotations.h"

namespace {

/// Without the mark of a mnemonic and the blank that ends some labels.
std::wstring Spoken(std::wstring text) {
  std::erase(text, L'&');
  text.resize(text.find_last_not_of(L' ') + 1);
  return text;
}

/// Empty for a control that is called by its own text.
std::wstring NameOf(const TForm& form, const TControl& control) {
  if (control.NamesItself()) return {};
  std::vector<const TLayoutItem*> items;
  for (const TControl* each : form.Controls()) items.push_back(&each->Layout());
  if (const TLayoutItem* label = LabelOf(control.Layout(), items)) {
    return Spoken(WindowTextWide(form.FindControl(label->Name)->Handle()));
  }
  if (!control.HintWide().empty()) return control.HintWide();
  const auto* lines = control.Layout().Find("lines");
  return lines ? Utf8ToWide(lines->Values.front()) : WindowTextWide(form.Handle());
}

struct TAnnotating {
  const TForm& Form;
  const TWindowAnnotations& Annotations;

  static BOOL CALLBACK Tell(HWND child, LPARAM self) {
    const auto& [form, annotations] = *reinterpret_cast<const TAnnotating*>(self);
    // Of a control made of several windows, the inner ones get the focus.
    if (const TControl* control = form.FindControl(child)) {
      annotations.Set(child, NameOf(form, *control), control->HintWide());
    }
    return TRUE;
  }
  static BOOL CALLBACK Forget(HWND child, LPARAM self) {
    reinterpret_cast<const TAnnotating*>(self)->Annotations.Clear(child);
    return TRUE;
  }
};

void ForEachWindow(const TForm& form, WNDENUMPROC act) {
  const TWindowAnnotations annotations;
  const TAnnotating annotating{form, annotations};
  EnumChildWindows(form.Handle(), act, reinterpret_cast<LPARAM>(&annotating));
}

}  // namespace

void AnnotateControls(const TForm& form) { ForEachWindow(form, TAnnotating::Tell); }

void ForgetAnnotations(const TForm& form) {
  if (!Application().Unloading()) ForEachWindow(form, TAnnotating::Forget);
}
