#include "outside/outside_test.h"

#include <filesystem>
#include <fstream>
#include <set>

#include "user/watchdog.h"

namespace {
constexpr wchar_t MainClass[] = L"OutsideTestsMain";
constexpr UINT CallMessage = WM_APP;

LRESULT CALLBACK MainProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != CallMessage) return DefWindowProcW(window, message, wParam, lParam);
  (*reinterpret_cast<const std::function<void()>*>(lParam))();
  return 1;
}

HWND CreateMainWindow() {
  WNDCLASSW mainClass{};
  mainClass.lpfnWndProc = MainProc;
  mainClass.hInstance = GetModuleHandleW(nullptr);
  mainClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  mainClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_APPWORKSPACE + 1);
  mainClass.lpszClassName = MainClass;
  RegisterClassW(&mainClass);
  const HWND window =
      CreateWindowExW(0, MainClass, L"Zefkor", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 100, 100,
                      1200, 800, nullptr, nullptr, mainClass.hInstance, nullptr);
  ShowWindow(window, SW_SHOW);
  SetForegroundWindow(window);
  return window;
}

bool MadeBySystem(HWND window) {
  static const std::set<std::string> Classes{"IME", "MSCTFIME UI", "OleMainThreadWndClass"};
  return Classes.contains(ClassOf(window));
}

void ServeMessages() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

void ServeUntil(const std::function<bool()>& ready) {
  const ULONGLONG deadline = GetTickCount64() + TUser::PatienceMs;
  for (; !ready() && GetTickCount64() < deadline; Sleep(1)) ServeMessages();
  ServeMessages();
}
}  // namespace

void TOutsideTest::SetUp() {
  TWatchdog::Allow(TestSeconds);
  MainWindow = CreateMainWindow();
  ServeUntil([this] { return GetForegroundWindow() == MainWindow; });
  THelpRequest::All.clear();
  Library.emplace();
  Library->VCLSetMainWindowHandle(MainWindow);
  Library->VCLSetMainHelpFile(HelpFile);
}

void TOutsideTest::TearDown() {
  if (Library) {
    Library->VCLFree();
    Library.reset();
  }
  WaitUnloaded();
  DropOrphans();
  EXPECT_TRUE(IsWindowEnabled(MainWindow));
  DestroyWindow(MainWindow);
  UnregisterClassW(MainClass, GetModuleHandleW(nullptr));
  ServeMessages();
  TWatchdog::Allow(0);
}

// After a dialog the library stays for a moment.
void TOutsideTest::WaitUnloaded() {
  ServeUntil([] { return !GetModuleHandleA("zefext.dll"); });
  EXPECT_EQ(GetModuleHandleA("zefext.dll"), nullptr);
}

void TOutsideTest::During(const std::function<void()>& call,
                          const std::function<void(TScriptedUser&)>& script) {
  TWatchdog::Allow(TestSeconds);
  TScriptedUser().During(call, script);
}

HWND TOutsideTest::HostEdit(HWND parent, int top) {
  return CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 10, top, 200, 30,
                         parent, nullptr, nullptr, nullptr);
}

void TOutsideTest::InHost(const std::function<void()>& call) {
  SendMessageW(MainWindow, CallMessage, 0, reinterpret_cast<LPARAM>(&call));
}

// A window that outlives the library would run into its unmapped code at the next message.
void TOutsideTest::DropOrphans() {
  for (const HWND window : TopWindows(GetCurrentProcessId())) {
    if (window == MainWindow || MadeBySystem(window)) continue;
    ADD_FAILURE() << "outlives the library: " << ClassOf(window) << " '" << TextOf(window) << "'";
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(DefWindowProcW));
    DestroyWindow(window);
  }
}

TDatabaseFile::TDatabaseFile(std::string_view bytes) : FPath(MAX_PATH, L'\0') {
  GetModuleFileNameW(nullptr, FPath.data(), MAX_PATH);
  FPath = std::filesystem::path(FPath).replace_filename("VBSZEF.XML").wstring();
  std::ofstream file(FPath.c_str(), std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!file) throw std::runtime_error("cannot write the database");
}

TDatabaseFile::~TDatabaseFile() { DeleteFileW(FPath.c_str()); }
