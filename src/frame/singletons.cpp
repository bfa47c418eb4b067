#include "frame/singletons.h"

#include <array>

#include "platform/kept.h"

namespace {

struct TSingletons {
  std::unique_ptr<THintWindow> Bubble;
  bool HintShown = false;
  std::array<std::unique_ptr<TForm>, 4> Forms;
};

TSingletons& Singletons() { return Kept<TSingletons>(); }

std::unique_ptr<TForm>& Slot(TFormSlot slot) {
  return Singletons().Forms[static_cast<std::size_t>(slot)];
}

}  // namespace

TForm* FormInSlot(TFormSlot slot) {
  auto& form = Slot(slot);
  // The host destroyed its main window, and with it the windows it owned.
  if (form && !form->HasWindow()) Application().Retire(std::move(form));
  return form.get();
}

void PutFormInSlot(TFormSlot slot, std::unique_ptr<TForm> form) { Slot(slot) = std::move(form); }

std::unique_ptr<THintWindow>& HintBubble() { return Singletons().Bubble; }

bool& HintShown() { return Singletons().HintShown; }

void ReleaseSingletons() {
  HintBubble().reset();
  HintShown() = false;
  for (auto& form : Singletons().Forms) Application().Retire(std::move(form));
}

bool HasWindows() {
  return HintBubble() || !Application().Forms().empty() || Application().InCall();
}

void ForgetWindows() {
  Application().WindowsLost();
  ReleaseSingletons();
  Application().ReleaseHostForms();
}
