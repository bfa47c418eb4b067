#include "platform/window_list.h"

#include <new>

namespace {

struct TCollected {
  std::vector<HWND> Windows;
  bool Whole = true;

  static BOOL CALLBACK Add(HWND window, LPARAM self) {
    auto& collected = *reinterpret_cast<TCollected*>(self);
    try {
      collected.Windows.push_back(window);
    } catch (const std::bad_alloc&) {
      collected.Whole = false;
    }
    return collected.Whole;
  }
};

template <class TEnumerate>
std::vector<HWND> Collect(TEnumerate enumerate) {
  TCollected collected;
  enumerate(TCollected::Add, reinterpret_cast<LPARAM>(&collected));
  if (!collected.Whole) throw std::bad_alloc();
  return std::move(collected.Windows);
}

}  // namespace

std::vector<HWND> WindowsOfThread(DWORD thread) {
  return Collect([&](WNDENUMPROC add, LPARAM to) { EnumThreadWindows(thread, add, to); });
}

std::vector<HWND> WindowsWithin(HWND window) {
  return Collect([&](WNDENUMPROC add, LPARAM to) { EnumChildWindows(window, add, to); });
}
