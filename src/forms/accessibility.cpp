#include "forms/accessibility.h"

#include <utility>

#include "forms/form.h"
#include "forms/rules/labels.h"
#include "platform/code_page.h"
#include "platform/window_annotations.h"
#include "platform/window_list.h"

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

}  // namespace

void AnnotateControls(const TForm& form) {
  const TWindowAnnotations annotations;
  for (const HWND child : WindowsWithin(form.Handle())) {
    // Of a control made of several windows, the inner ones get the focus.
    if (const TControl* control = form.FindControl(child)) {
      annotations.Set(child, NameOf(form, *control), control->HintWide());
    }
  }
}

void ForgetAnnotations(const TForm& form) {
  if (Application().Unloading()) return;
  const TWindowAnnotations annotations;
  for (const HWND child : WindowsWithin(form.Handle())) annotations.Clear(child);
}
