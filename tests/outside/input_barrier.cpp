#include "outside/input_barrier.h"

#include "user/input.h"
#include "user/user_error.h"

namespace {
constexpr WORD MarkerKey = 0xE8;  // unassigned: no layout and no program gives it a meaning
HANDLE MarkerMet = nullptr;

bool IsMarker(const MSG& message) {
  return message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST &&
         message.wParam == MarkerKey;
}
}  // namespace

TInputBarrier::TInputBarrier() : FThread(GetCurrentThreadId()) {
  MarkerMet = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  FHook = SetWindowsHookExW(WH_GETMESSAGE, HookProc, nullptr, FThread);
  if (!FHook) throw TUserError("no message hook");
}

TInputBarrier::~TInputBarrier() {
  UnhookWindowsHookEx(FHook);
  CloseHandle(MarkerMet);
  MarkerMet = nullptr;
}

bool TInputBarrier::Pass(int ms) {
  const ULONGLONG deadline = GetTickCount64() + static_cast<ULONGLONG>(ms);
  // Keys go to the foreground thread: between two dialogs it may be nobody for a moment.
  while (GetWindowThreadProcessId(GetForegroundWindow(), nullptr) != FThread) {
    if (GetTickCount64() > deadline) return false;
    Sleep(1);
  }
  ResetEvent(MarkerMet);
  SendKey(MarkerKey);
  return WaitForSingleObject(MarkerMet, static_cast<DWORD>(ms)) == WAIT_OBJECT_0;
}

LRESULT CALLBACK TInputBarrier::HookProc(int code, WPARAM wParam, LPARAM lParam) {
  MSG& message = *reinterpret_cast<MSG*>(lParam);
  if (code == HC_ACTION && wParam == PM_REMOVE && IsMarker(message)) {
    if (message.message == WM_KEYUP || message.message == WM_SYSKEYUP) SetEvent(MarkerMet);
    message.message = WM_NULL;
  }
  return CallNextHookEx(nullptr, code, wParam, lParam);
}
