#include "forms/application.h"

#include <algorithm>

#include "forms/form.h"
#include "forms/modal_run.h"
#include "platform/guard.h"
#include "platform/help.h"
#include "platform/kept.h"
#include "text/handle_table.h"

// Set by the linker to where this module lies.
extern "C" IMAGE_DOS_HEADER __ImageBase;

HINSTANCE TApplication::Instance() { return reinterpret_cast<HINSTANCE>(&__ImageBase); }

TApplication& Application() { return Kept<TApplication>(); }

TForm* TApplication::FindForm(const void* handle) const {
  const auto found = std::ranges::find_if(
      FHostForms, [&](const auto& kept) { return handle && kept.Form->HostHandle() == handle; });
  return found == FHostForms.end() ? nullptr : found->Form.get();
}

TForm* TApplication::FindForm(HWND window) const {
  const auto found = std::ranges::find_if(
      FForms, [&](const TForm* form) { return window && form->Handle() == window; });
  return found == FForms.end() ? nullptr : *found;
}

HWND TApplication::TopmostModal() const {
  const auto shown = [](const TModalRun* run) { return run->Form().Visible(); };
  const auto found = std::find_if(FModalRuns.rbegin(), FModalRuns.rend(), shown);
  return found == FModalRuns.rend() ? nullptr : (*found)->Form().Handle();
}

// ---- the end of forms ----

bool TApplication::PutToRest(const std::unique_ptr<TForm>& form) {
  if (!form) return false;
  // A modal run that began after this form's own, or after that of a dialog of this form, stands on
  // top of it: it must unwind first.
  const auto modal = std::ranges::find_if(FModalRuns, [&](const TModalRun* run) {
    return &run->Form() == form.get() || form->Owns(run->Form());
  });
  for (auto each = modal; each != FModalRuns.end(); ++each) (*each)->Abandon();
  std::erase(FForms, form.get());
  Guarded([&] { form->Hide(); });
  form->Retired();
  return FCallDepth > 0;
}

void TApplication::Retire(std::unique_ptr<TForm> form) {
  if (PutToRest(form)) FRetired.push_back({std::move(form), false});
}

void TApplication::RetireHostForm(std::unique_ptr<TForm> form) {
  if (PutToRest(form)) FRetired.push_back({std::move(form), true});
}

void TApplication::DestroyRetired() {
  const auto ready = [this](const TRetired& retired) {
    return FCallDepth == 1 || (retired.PinsDecide && !retired.Form->Pinned());
  };
  while (true) {
    const auto found = std::ranges::find_if(FRetired, ready);
    if (found == FRetired.end()) return;
    // Moved out first: destroying windows runs window procedures, which come by here again.
    const auto retired = std::move(found->Form);
    FRetired.erase(found);
  }
}

// ---- forms that the host holds ----

TForm& TApplication::Keep(std::unique_ptr<TForm> form, const TForm* owner) {
  do {
    form->FHostHandle = reinterpret_cast<void*>(static_cast<std::uintptr_t>(NewHandleNumber()));
  } while (FindForm(form->FHostHandle));
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

void TApplication::WindowsLost() {
  FCallDepth = 0;
  FModalRuns.clear();
  FHold.reset();
  for (TForm* form : FForms) form->LoseWindow();
  // What stood on the stack of that thread alone is out of reach.
  FForms.clear();
  FRetired.clear();
}

void TApplication::HelpCommand(UINT command, ULONG_PTR data) const {
  AskForHelp(FHandle, FHelpFile, command, data);
}

// ---- calls ----

TCallScope::TCallScope(const char* exportName) : FCallBefore(ExchangeReportedCall(exportName)) {
  // What a window does within a call is part of it.
  if (!exportName) ExchangeReportedCall(FCallBefore);
  ++Application().FCallDepth;
}

void TCallScope::Leave() {
  ExchangeReportedCall(FCallBefore);
  auto& application = Application();
  // Below 0 once the calls were forgotten under this one.
  if (application.FCallDepth <= 0) return;
  application.DestroyRetired();
  if (--application.FCallDepth == 0) application.FHold.reset();
}
