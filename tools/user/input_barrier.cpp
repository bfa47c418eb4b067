#include "user/input_barrier.h"

#include <array>
#include <atomic>

#include "user/user_error.h"

namespace {
constexpr DWORD WaitMs = 250;
constexpr DWORD MarkerLookMs = 1;
constexpr WORD MarkerKey = 0xE8;  // unassigned: no layout and no program gives it a meaning
constexpr WORD MarkerCount = 200;

// Markers are told apart by their scan code, so that a late one is not taken for its successor.
std::atomic<WORD> Expected = 0;
HANDLE ExpectedMet = nullptr;

bool IsKey(const MSG& message) {
  return message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
}

INPUT MarkerInput(WORD marker, DWORD flags) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = MarkerKey;
  input.ki.wScan = marker;
  input.ki.dwFlags = flags;
  return input;
}
}  // namespace

TInputBarrier::TInputBarrier() : FThread(GetCurrentThreadId()) {
  ExpectedMet = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  FHook = SetWindowsHookExW(WH_GETMESSAGE, HookProc, nullptr, FThread);
  if (!FHook) throw TUserError("no message hook");
}

TInputBarrier::~TInputBarrier() {
  UnhookWindowsHookEx(FHook);
  CloseHandle(ExpectedMet);
  ExpectedMet = nullptr;
}

bool TInputBarrier::Pass() {
  // Keys go to the foreground thread: between two dialogs it may be nobody for a moment.
  if (GetWindowThreadProcessId(GetForegroundWindow(), nullptr) != FThread) {
    Sleep(MarkerLookMs);
    return false;
  }
  FMarker = static_cast<WORD>(FMarker % MarkerCount + 1);
  Expected = FMarker;
  ResetEvent(ExpectedMet);
  std::array inputs{MarkerInput(FMarker, 0), MarkerInput(FMarker, KEYEVENTF_KEYUP)};
  SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
  return WaitForSingleObject(ExpectedMet, WaitMs) == WAIT_OBJECT_0;
}

LRESULT CALLBACK TInputBarrier::HookProc(int code, WPARAM wParam, LPARAM lParam) {
  MSG& message = *reinterpret_cast<MSG*>(lParam);
  if (code == HC_ACTION && wParam == PM_REMOVE && IsKey(message) && message.wParam == MarkerKey) {
    const bool up = message.message == WM_KEYUP || message.message == WM_SYSKEYUP;
    if (up && LOBYTE(HIWORD(message.lParam)) == Expected) SetEvent(ExpectedMet);
    message.message = WM_NULL;
  }
  return CallNextHookEx(nullptr, code, wParam, lParam);
}
