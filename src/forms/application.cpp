#include "forms/application.h"

#include <algorithm>

#include "forms/form.h"

// Set by the linker to where this module lies.
extern "C" IMAGE_DOS_HEADER __ImageBase;

HINSTANCE TApplication::Instance() { return reinterpret_cast<HINSTANCE>(&__ImageBase); }

TApplication& Application() {
  static TApplication application;
  return application;
}

TForm* TApplication::FindForm(const void* handle) const {
  const auto found =
      std::ranges::find_if(FForms, [&](const TForm* form) { return form == handle; });
  return found == FForms.end() ? nullptr : *found;
}

TForm* TApplication::FindForm(HWND window) const {
  const auto found = std::ranges::find_if(
      FForms, [&](const TForm* form) { return window && form->Handle() == window; });
  return found == FForms.end() ? nullptr : *found;
}

void TApplication::Retire(std::unique_ptr<TForm> form) {
  if (!form) return;
  // A modal run that began after this form's own, or after that of a dialog of this form, stands on
  // top of it: it must unwind first.
  const auto modal = std::ranges::find_if(
      FModalForms, [&](const TForm* each) { return each == form.get() || form->Owns(*each); });
  for (auto each = modal; each != FModalForms.end(); ++each) (*each)->Abandon();
  std::erase(FForms, form.get());
  form->Hide();
  form->Retired();
  if (FCallDepth > 0) FRetired.push_back(std::move(form));
}

TForm& TApplication::Keep(std::unique_ptr<TForm> form, const TForm* owner) {
  FHostForms.push_back({std::move(form), owner});
  return *FHostForms.back().Form;
}

std::unique_ptr<TForm> TApplication::Take(const TForm& form) {
  const auto found =
      std::ranges::find_if(FHostForms, [&](const auto& kept) { return kept.Form.get() == &form; });
  if (found == FHostForms.end()) return nullptr;
  auto taken = std::move(found->Form);
  FHostForms.erase(found);
  return taken;
}

void TApplication::ReleaseHostForms() {
  while (!FHostForms.empty()) Retire(Take(*FHostForms.back().Form));
}

void TApplication::ReleaseOwnedBy(const TForm& owner) {
  while (true) {
    const auto owned = std::ranges::find(FHostForms, &owner, &THostForm::Owner);
    if (owned == FHostForms.end()) return;
    Retire(Take(*owned->Form));
  }
}

void TApplication::HelpCommand(UINT command, ULONG_PTR data) const {
  WinHelpA(FHandle, FHelpFile.c_str(), command, data);
}

TCallScope::TCallScope() { ++Application().FCallDepth; }

TCallScope::~TCallScope() {
  auto& application = Application();
  while (application.FCallDepth == 1 && !application.FRetired.empty()) {
    // Moved out first: destroying windows runs window procedures, which come by here again.
    const auto retired = std::move(application.FRetired.back());
    application.FRetired.pop_back();
  }
  --application.FCallDepth;
}
