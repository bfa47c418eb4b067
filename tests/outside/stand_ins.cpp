#include "outside/stand_ins.h"

#include <cstdio>
#include <mutex>
#include <string_view>
#include <utility>

#include "outside/imports.h"
#include "user/window.h"

std::vector<THelpRequest> THelpRequest::All;

namespace {
std::mutex Guard;
std::string Heard;

void WINAPI HearDebugLine(const char* line) {
  std::printf("%s", line);
  const std::lock_guard lock(Guard);
  Heard += line;
}

BOOL WINAPI RecordWinHelp(HWND window, const char* file, UINT command, ULONG_PTR data) {
  THelpRequest::All.push_back({window, file, command, static_cast<int>(data)});
  return TRUE;
}

HWND WINAPI RecordHtmlHelp(HWND window, const wchar_t* file, UINT command, DWORD_PTR data) {
  THelpRequest::All.push_back({window, Utf8(file), command, static_cast<int>(data), true});
  return nullptr;
}

/// From the system's directory, not from where a stranger may have put another one.
HMODULE WINAPI LoadSystemsOrOurs(const wchar_t* path) {
  wchar_t system[MAX_PATH];
  GetSystemDirectoryW(system, MAX_PATH);
  return std::wstring(system) + L"\\hhctrl.ocx" == path ? GetModuleHandleW(nullptr)
                                                        : LoadLibraryW(path);
}

FARPROC WINAPI FindSystemsOrOurs(HMODULE module, const char* name) {
  if (module != GetModuleHandleW(nullptr)) return GetProcAddress(module, name);
  return std::string_view(name) == "HtmlHelpW"
             ? reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&RecordHtmlHelp))
             : nullptr;
}
}  // namespace

std::string TakeDebugLines() {
  const std::lock_guard lock(Guard);
  return std::exchange(Heard, {});
}

void StandInFor(HMODULE library) {
  RedirectImports(library, [](std::string_view name, const void*) -> const void* {
    if (name == "OutputDebugStringA") return reinterpret_cast<void*>(&HearDebugLine);
    if (name == "WinHelpA") return reinterpret_cast<void*>(&RecordWinHelp);
    if (name == "LoadLibraryW") return reinterpret_cast<void*>(&LoadSystemsOrOurs);
    if (name == "GetProcAddress") return reinterpret_cast<void*>(&FindSystemsOrOurs);
    return nullptr;
  });
}
