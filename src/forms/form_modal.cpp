#include <vector>

#include "forms/form.h"

struct TForm::TModalState {
  bool Abandoned = false;
};

namespace {

/// Disables the other windows of the thread for as long as it lives; knows which one was active.
class TModalWorld {
 public:
  explicit TModalWorld(HWND form) : FForm(form), FActive(GetActiveWindow()) {
    EnumThreadWindows(GetCurrentThreadId(), Disable, reinterpret_cast<LPARAM>(this));
  }
  TModalWorld(const TModalWorld&) = delete;
  TModalWorld& operator=(const TModalWorld&) = delete;
  // Before the form hides: with no enabled window left, the system would activate another program.
  ~TModalWorld() {
    for (const HWND window : FDisabled) {
      if (IsWindow(window)) EnableWindow(window, TRUE);
    }
  }
  HWND Active() const { return FActive; }

 private:
  static BOOL CALLBACK Disable(HWND window, LPARAM self) {
    auto* world = reinterpret_cast<TModalWorld*>(self);
    if (window != world->FForm && IsWindowVisible(window) && IsWindowEnabled(window)) {
      EnableWindow(window, FALSE);
      world->FDisabled.push_back(window);
    }
    return TRUE;
  }

  HWND FForm;
  HWND FActive;
  std::vector<HWND> FDisabled;
};

}  // namespace

int TForm::ShowModal() {
  if (!FHandle || Modal()) return mrCancel;
  const TCallScope scope;
  TModalState state;
  FModalState = &state;
  FModalResult = mrNone;
  Application().FModalForms.push_back(this);
  HWND active = nullptr;
  {
    const TModalWorld world(FHandle);
    Show();
    RunModal(state);
    if (state.Abandoned) FModalResult = mrCancel;
    active = world.Active();
  }
  FModalState = nullptr;
  std::erase(Application().FModalForms, this);
  if (OnClose && !state.Abandoned) OnClose();
  const int result = FModalResult;
  Hide();
  if (IsWindow(active)) SetActiveWindow(active);
  FActiveControl = FFirstActive;
  return result;
}

void TForm::RunModal(const TModalState& state) {
  MSG message;
  while (!state.Abandoned) {
    if (FModalResult != mrNone) {
      if (CloseQuery()) return;
      FModalResult = mrNone;
    }
    const BOOL got = GetMessageW(&message, nullptr, 0, 0);
    if (got <= 0) {
      // The program is ending: the host's own loop must see it too.
      if (got == 0) PostQuitMessage(static_cast<int>(message.wParam));
      FModalResult = mrCancel;
      return;
    }
    if (!TranslateKey(message) && (!FHandle || !IsDialogMessageW(FHandle, &message))) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  }
}

bool TForm::TranslateKey(const MSG& message) const {
  if (message.message < WM_KEYFIRST || message.message > WM_KEYLAST) return false;
  TControl* control = FindControl(message.hwnd);
  return control && control->TranslateKey(message);
}

void TForm::Abandon() {
  if (!FModalState) return;
  FModalState->Abandoned = true;
  // Wakes the loop if it waits for a message.
  PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
}
