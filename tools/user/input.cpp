#include "user/input.h"

#include <array>
#include <vector>

namespace {
constexpr std::array<std::pair<unsigned, WORD>, 3> ModifierKeys{
    {{mdShift, VK_SHIFT}, {mdControl, VK_CONTROL}, {mdAlt, VK_MENU}}};

class TInputs {
 public:
  void Key(WORD virtualKey, bool down) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = virtualKey;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(virtualKey, MAPVK_VK_TO_VSC));
    input.ki.dwFlags =
        (down ? 0U : KEYEVENTF_KEYUP) | (Extended(virtualKey) ? KEYEVENTF_EXTENDEDKEY : 0U);
    FInputs.push_back(input);
  }
  void Character(wchar_t unit) {
    for (const DWORD up : {0U, static_cast<unsigned>(KEYEVENTF_KEYUP)}) {
      INPUT input{};
      input.type = INPUT_KEYBOARD;
      input.ki.wScan = unit;
      input.ki.dwFlags = KEYEVENTF_UNICODE | up;
      FInputs.push_back(input);
    }
  }
  void Stroke(WORD virtualKey, unsigned modifiers) {
    for (const auto& [flag, key] : ModifierKeys)
      if (modifiers & flag) Key(key, true);
    Key(virtualKey, true);
    Key(virtualKey, false);
    for (auto item = ModifierKeys.rbegin(); item != ModifierKeys.rend(); ++item)
      if (modifiers & item->first) Key(item->second, false);
  }
  /// The position goes with every event: the pointer may be moved by others in between.
  void Mouse(DWORD flags, POINT screen) {
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dx = Scaled(screen.x, SM_CXSCREEN);
    input.mi.dy = Scaled(screen.y, SM_CYSCREEN);
    input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | flags;
    FInputs.push_back(input);
  }
  void Send() {
    if (!FInputs.empty())
      SendInput(static_cast<UINT>(FInputs.size()), FInputs.data(), sizeof(INPUT));
  }

 private:
  /// Absolute positions are 65536ths of the screen; the middle of the pixel survives the rounding.
  static LONG Scaled(LONG pixel, int metric) {
    return (pixel * 65536 + 32768) / GetSystemMetrics(metric);
  }
  static bool Extended(WORD key) {
    return (key >= VK_PRIOR && key <= VK_DOWN) || key == VK_INSERT || key == VK_DELETE;
  }
  std::vector<INPUT> FInputs;
};
}  // namespace

void SendKey(WORD virtualKey, unsigned modifiers) {
  TInputs inputs;
  inputs.Stroke(virtualKey, modifiers);
  inputs.Send();
}

void SendText(std::wstring_view text) {
  TInputs inputs;
  for (const wchar_t unit : text) {
    const SHORT key = VkKeyScanW(unit);
    // Shift is the one modifier that cannot turn a character into a command.
    if (key != -1 && (HIBYTE(key) & ~1) == 0)
      inputs.Stroke(LOBYTE(key), HIBYTE(key) & 1 ? mdShift : mdNone);
    else
      inputs.Character(unit);
  }
  inputs.Send();
}

void MovePointer(POINT screen) {
  TInputs inputs;
  inputs.Mouse(0, screen);
  inputs.Send();
}

void SendClick(POINT screen, int clicks) {
  // To the system, two clicks in a row at one place are a double click, whoever meant them as two.
  static POINT lastPlace{};
  static ULONGLONG lastTime = 0;
  const auto close = [](LONG a, LONG b, int metric) {
    return (a > b ? a - b : b - a) <= GetSystemMetrics(metric);
  };
  while (close(screen.x, lastPlace.x, SM_CXDOUBLECLK) &&
         close(screen.y, lastPlace.y, SM_CYDOUBLECLK) &&
         GetTickCount64() - lastTime <= GetDoubleClickTime()) {
    Sleep(10);
  }
  TInputs inputs;
  for (int click = 0; click < clicks; ++click) {
    inputs.Mouse(MOUSEEVENTF_LEFTDOWN, screen);
    inputs.Mouse(MOUSEEVENTF_LEFTUP, screen);
  }
  inputs.Send();
  lastPlace = screen;
  lastTime = GetTickCount64();
}
