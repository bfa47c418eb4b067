#include "first_start.h"

#include <windows.h>

#include "ansi.h"

namespace {

constexpr char Name[] = "Comptes d'exemple";
/// Its presence says that a directory holds the program's data.
constexpr wchar_t Marker[] = L"\\ZEF.INI";

}  // namespace

void BringOwnDirectory(TLibrary& library, const std::wstring& directory) {
  const std::optional<std::string> path = ToAnsi(directory);
  if (!path || !library.Loaded() || !library.Setting("NbDirAlias").empty()) return;
  CreateDirectoryW(directory.c_str(), nullptr);
  const HANDLE marker = CreateFileW((directory + Marker).c_str(), GENERIC_WRITE, 0, nullptr,
                                    CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (marker != INVALID_HANDLE_VALUE) CloseHandle(marker);
  library.KeepSetting("DirAliasName0", Name);
  library.KeepSetting("DirAliasPath0", *path);
  library.KeepSetting("DirAliasDefault", Name);
  library.KeepSetting("NbDirAlias", "1");
}
