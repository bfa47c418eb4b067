#include "forms/form.h"
#include "forms/modal_world.h"

struct TForm::TModalState {
  bool Abandoned = false;
};

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
