#include "outside/help_server.h"

#include <cstring>
#include <stdexcept>

namespace {
constexpr wchar_t ServerClass[] = L"MS_WINHELP";

/// What WinHelp sends; offsets count from the start, 0 for what is not there.
struct TWireRequest {
  WORD Size;
  WORD Command;
  LONG Data;
  LONG Reserved;
  WORD FileOffset;
  WORD DataOffset;
};
}  // namespace

THelpServer::THelpServer() {
  WNDCLASSW serverClass{};
  serverClass.lpfnWndProc = ServerProc;
  serverClass.hInstance = GetModuleHandleW(nullptr);
  serverClass.lpszClassName = ServerClass;
  RegisterClassW(&serverClass);
  FWindow = CreateWindowExW(0, ServerClass, L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                            serverClass.hInstance, nullptr);
  if (!FWindow) throw std::runtime_error("no help window");
  SetWindowLongPtrW(FWindow, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

THelpServer::~THelpServer() {
  DestroyWindow(FWindow);
  UnregisterClassW(ServerClass, GetModuleHandleW(nullptr));
}

LRESULT CALLBACK THelpServer::ServerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* self = reinterpret_cast<THelpServer*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (message != WM_COPYDATA || !self) return DefWindowProcW(window, message, wParam, lParam);
  self->Record(reinterpret_cast<HWND>(wParam), *reinterpret_cast<COPYDATASTRUCT*>(lParam));
  return TRUE;
}

void THelpServer::Record(HWND asker, const COPYDATASTRUCT& copy) {
  TWireRequest wire{};
  if (copy.cbData < sizeof wire) return;
  const auto* bytes = static_cast<const char*>(copy.lpData);
  std::memcpy(&wire, bytes, sizeof wire);
  const bool hasFile = wire.FileOffset && wire.FileOffset < copy.cbData;
  FRequests.push_back({asker, wire.Command, static_cast<int>(wire.Data),
                       hasFile ? std::string(bytes + wire.FileOffset) : std::string()});
}
