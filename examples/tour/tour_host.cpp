#include "tour/tour_host.h"

#include <algorithm>

#include "commands.h"
#include "user/picture.h"
#include "user/say.h"
#include "user/window.h"

namespace {
constexpr DWORD QuitMs = 30000;

std::wstring ProgramBesideTour() {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
  return path.substr(0, path.find_last_of(L'\\') + 1) + L"ZEF.EXE";
}
}  // namespace

TTourHost::TTourHost(const std::wstring& directory, const std::string& stop,
                     const std::wstring& arguments)
    : FDirectory(directory), FStop(stop) {
  const std::wstring log = FDirectory + L"\\" + Wide(stop) + L".log";
  std::wstring commandLine =
      L"\"" + ProgramBesideTour() + L"\" --log \"" + log + L"\" " + arguments;
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                      &startup, &FProcess))
    throw TUserError(Say("ZEF.EXE cannot be started: error ", GetLastError()));
  FUser = std::make_unique<TUser>(FProcess.dwProcessId);
  // Not as a form that takes input: a dialog may be open over it from the start.
  HWND window = nullptr;
  FUser->WaitUntil("the window of ZEF.EXE", [&] {
    for (const HWND each : TopWindows(FProcess.dwProcessId))
      if (Shown(each) && ClassOf(each) == Utf8(ZEF_MAIN_WINDOW_CLASS)) window = each;
    return window != nullptr;
  });
  FWindow = std::make_unique<TFormDriver>(*FUser, window);
}

TTourHost::~TTourHost() {
  if (WaitForSingleObject(FProcess.hProcess, 0) == WAIT_TIMEOUT)
    TerminateProcess(FProcess.hProcess, 1);
  CloseHandle(FProcess.hThread);
  CloseHandle(FProcess.hProcess);
}

std::string TTourHost::Script() const { return TextOf(GetDlgItem(FWindow->Handle(), IDC_EDITOR)); }

void TTourHost::GoTo(std::string_view text) {
  const std::string script = Script();
  const size_t place = script.find(text);
  if (place == std::string::npos) throw TUserError(Say("the script does not hold ", text));
  const std::string_view before(script.data(), place);
  const size_t lineStart = before.rfind('\n') + 1;  // 0 in the first line
  FWindow->Press(VK_HOME, mdControl);
  for (auto lines = std::ranges::count(before, '\n'); lines > 0; --lines) FUser->Press(VK_DOWN);
  for (size_t column = Wide(before.substr(lineStart)).size(); column > 0; --column)
    FUser->Press(VK_RIGHT);
}

void TTourHost::See(const TFormDriver& form, const std::string& picture,
                    const std::vector<TSight>& sights) {
  for (const TSight& sight : sights) {
    const auto seen = [&] {
      return form.Reading(sight.Control) == sight.Reading &&
             form.Enabled(sight.Control) == sight.Enabled;
    };
    FUser->WaitUntil(
        Say(sight.Control, sight.Enabled ? " enabled, reading \"" : " disabled, reading \"",
            sight.Reading, "\""),
        seen);
  }
  if (!picture.empty()) Picture(form, picture);
}

void TTourHost::WaitItems(const TFormDriver& form, const char* list,
                          const std::vector<std::string>& items) {
  FUser->WaitUntil(Say("all items of ", list), [&] { return form.Items(list) == items; });
}

void TTourHost::WaitScript(const std::string& text) {
  FUser->WaitUntil("in the script: " + text,
                   [&] { return Script().find(text) != std::string::npos; });
}

std::string TTourHost::FileFor(const std::string& name) const {
  return Ansi(Utf8(FDirectory) + "\\" + FStop + "_" + name + ".bmp");
}

void TTourHost::Picture(const TFormDriver& form, const std::string& name) {
  // Out of the way, so that no hint pops up under it.
  FUser->PointAt({GetSystemMetrics(SM_CXSCREEN) - 2, GetSystemMetrics(SM_CYSCREEN) - 2});
  form.SavePicture(FileFor(name));
}

void TTourHost::PictureOfAll(const std::string& name) {
  SavePicture({0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)}, FileFor(name));
}

void TTourHost::Quit() {
  FUser->Note("quit");
  PostMessageW(FWindow->Handle(), WM_CLOSE, 0, 0);
  DWORD code = 0;
  if (WaitForSingleObject(FProcess.hProcess, QuitMs) != WAIT_OBJECT_0 ||
      !GetExitCodeProcess(FProcess.hProcess, &code) || code != 0)
    throw TUserError(Say("ZEF.EXE does not end well: exit code ", code));
}
