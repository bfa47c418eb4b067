#include "forms/window_class.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "forms/application.h"

namespace {
std::vector<std::wstring>& Registered() {
  static std::vector<std::wstring> names;
  return names;
}
}  // namespace

void RegisterWindowClass(const std::wstring& name, WNDPROC proc, int extra, HBRUSH background) {
  if (std::ranges::find(Registered(), name) != Registered().end()) return;
  WNDCLASSEXW info{};
  info.cbSize = sizeof info;
  info.style = CS_DBLCLKS;
  info.lpfnWndProc = proc;
  info.cbWndExtra = extra;
  info.hInstance = TApplication::Instance();
  info.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
  info.hbrBackground = background;
  info.lpszClassName = name.c_str();
  if (!RegisterClassExW(&info)) throw std::runtime_error("window class refused");
  Registered().push_back(name);
}

void UnregisterWindowClasses() {
  for (const auto& name : Registered()) UnregisterClassW(name.c_str(), TApplication::Instance());
  Registered().clear();
}
