#include "outside/directories_fixture.h"

#include <commctrl.h>
#include <shlobj.h>

#include <fstream>

namespace {
namespace fs = std::filesystem;
constexpr int NameEdit = 0x3745;
constexpr int StatusText = 0x3743;

HWND FindPicker(DWORD process) {
  for (const HWND window : TopWindows(process)) {
    if (!Shown(window) || ClassOf(window) != "#32770") continue;
    for (const HWND child : Descendants(window))
      if (ClassOf(child) == WC_TREEVIEWA) return window;
  }
  return nullptr;
}

HWND WaitForPicker(TUser& user) {
  user.Note("wait for the folder picker");
  HWND picker = nullptr;
  user.WaitUntil("the folder picker",
                 [&] { return (picker = FindPicker(user.Process())) != nullptr; });
  return picker;
}

/// The shell of some systems takes a folder for another one when its time of access differs from
/// the one it saw first: this far ahead, looking at a folder does not change it.
void FixAccessTime(const fs::path& directory) {
  const HANDLE handle = CreateFileW(directory.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ,
                                    nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  FILETIME time;
  GetSystemTimeAsFileTime(&time);
  time.dwHighDateTime += 1;
  SetFileTime(handle, nullptr, &time, nullptr);
  CloseHandle(handle);
}
}  // namespace

TPickerDriver::TPickerDriver(TUser& user) : Form(user, WaitForPicker(user)), FUser(user) {}

void TPickerDriver::WaitSelected(std::string_view name) const {
  FUser.WaitUntil("the folder " + std::string(name) + " to be selected",
                  [&] { return TextOf(GetDlgItem(Form.Handle(), NameEdit)).ends_with(name); });
}

void TPickerDriver::WaitShown(std::string_view caption, std::string_view status) const {
  FUser.WaitUntil("the caption " + std::string(caption), [&] {
    return Form.Caption() == caption && TextOf(GetDlgItem(Form.Handle(), StatusText)) == status;
  });
}

void TPickerDriver::Select(const std::string& path, std::string_view shownName) {
  FUser.Note("select the folder " + path);
  SendMessageW(Form.Handle(), BFFM_SETSELECTIONW, TRUE,
               reinterpret_cast<LPARAM>(Wide(path).c_str()));
  WaitSelected(shownName);
}

void TPickerDriver::TypeName(std::string_view utf8) {
  const RECT bounds = BoundsOf(GetDlgItem(Form.Handle(), NameEdit));
  FUser.Click({bounds.left + 8, (bounds.top + bounds.bottom) / 2});
  FUser.Press(VK_HOME);
  FUser.Press(VK_END, mdShift);
  FUser.Type(utf8);
}

void TPickerDriver::Leave(const char* button) {
  Form.Click(button);
  Form.WaitGone();
}

void TDirectoriesTest::SetUp() {
  wchar_t current[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, current);
  FCurrent = current;
  FRoot = L"C:\\zefext_" + std::to_wstring(GetCurrentProcessId());
  fs::create_directories(FRoot);
  FSettings.emplace();
  TOutsideTest::SetUp();
}

void TDirectoriesTest::TearDown() {
  TOutsideTest::TearDown();
  SetCurrentDirectoryW(FCurrent.c_str());
  FSettings.reset();
  std::error_code ignored;
  fs::remove_all(FRoot, ignored);
}

std::string TDirectoriesTest::Path(std::string_view name) const {
  return Utf8((FRoot / Wide(name)).make_preferred().wstring());
}

std::string TDirectoriesTest::MakeDirectory(std::string_view name, bool withData) const {
  const fs::path directory = Wide(Path(name));
  fs::create_directories(directory);
  if (withData) std::ofstream(directory / "ZEF.INI") << "[zef]";
  for (fs::path each = directory; each != FRoot; each = each.parent_path()) FixAccessTime(each);
  FixAccessTime(FRoot);
  return Path(name);
}

void TDirectoriesTest::StoreSetting(const std::string& name, const std::string& value) {
  const std::wstring wide = Wide(value);
  ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, TSavedSettings::Product, Wide(name).c_str(), REG_SZ,
                            wide.c_str(), static_cast<DWORD>((wide.size() + 1) * sizeof(wchar_t))),
            ERROR_SUCCESS);
}

void TDirectoriesTest::Store(const std::vector<std::pair<std::string, std::string>>& entries,
                             const std::string& defaultName) {
  for (size_t i = 0; i < entries.size(); ++i) {
    StoreSetting("DirAliasName" + std::to_string(i), entries[i].first);
    StoreSetting("DirAliasPath" + std::to_string(i), entries[i].second);
  }
  StoreSetting("NbDirAlias", std::to_string(entries.size()));
  StoreSetting("DirAliasDefault", defaultName);
}

std::map<std::string, std::string> TDirectoriesTest::Settings() const {
  std::map<std::string, std::string> settings;
  HKEY key = nullptr;
  if (RegOpenKeyW(HKEY_CURRENT_USER, TSavedSettings::Product, &key) != ERROR_SUCCESS)
    return settings;
  wchar_t name[100];
  wchar_t value[4096];
  for (DWORD index = 0;; ++index) {
    DWORD nameSize = 100;
    DWORD valueSize = sizeof value;
    if (RegEnumValueW(key, index, name, &nameSize, nullptr, nullptr, reinterpret_cast<BYTE*>(value),
                      &valueSize) != ERROR_SUCCESS) {
      break;
    }
    settings[Utf8(name)] = Utf8(value);
  }
  RegCloseKey(key);
  return settings;
}

TDirectoriesTest::TOutcome TDirectoriesTest::Choose(
    const char* name, bool showList,
    const std::function<void(TScriptedUser&, TFormDriver&)>& script) {
  unsigned char cancelled = 2;
  int changed = -1;
  During(
      [&] {
        changed = Library->VCLSelectDirList(name, static_cast<unsigned char>(showList), &cancelled);
      },
      [&](TScriptedUser& user) {
        TFormDriver form = user.WaitForForm("TDlgDirSelect");
        script(user, form);
        form.WaitGone();
      });
  return {changed, cancelled};
}

TDirectoriesTest::TOutcome TDirectoriesTest::ChooseSilently(const char* name) {
  unsigned char cancelled = 2;
  const int changed = Library->VCLSelectDirList(name, static_cast<unsigned char>(0), &cancelled);
  return {changed, cancelled};
}

std::string TDirectoriesTest::Current() {
  wchar_t current[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, current);
  return Utf8(current);
}

void TDirectoriesTest::Enter(const std::string& path) {
  ASSERT_TRUE(SetCurrentDirectoryW(Wide(path).c_str())) << path;
}
