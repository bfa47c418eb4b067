// Takes the example host through the library's dialogs as a user would, looks at each stop for what
// is to be seen there, and leaves a picture of each and the log of the host's calls:
//
//   tour DIRECTORY [--contrast] [STOP]
//
// --contrast shows white on black meanwhile. Prints each stop with its outcome; the exit code is
// the number of stops that could not be made.

#include <windows.h>

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "tour/stops.h"
#include "user/saved_settings.h"
#include "user/window.h"

namespace {

struct TStop {
  const char* Name;
  int Script;        ///< counts from 1
  const char* Text;  ///< where the cursor stands in the script; null: where the program puts it;
                     ///< empty: the user's list of directories is empty
  void (*Make)(TTourHost& host);
};

void SetSetting(const wchar_t* name, const std::wstring& value) {
  RegSetKeyValueW(HKEY_CURRENT_USER, TSavedSettings::Product, name, REG_SZ, value.c_str(),
                  static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

/// A user's list of one accounts directory, which opens by itself, or an empty list.
void KeepDirectories(const std::wstring& directory) {
  if (directory.empty()) return SetSetting(L"NbDirAlias", L"0");
  SetSetting(L"DirAliasName0", L"Comptes de la visite");
  SetSetting(L"DirAliasPath0", directory);
  SetSetting(L"DirAliasDefault", L"Comptes de la visite");
  SetSetting(L"NbDirAlias", L"1");
}

constexpr TStop Stops[] = {
    {"first", 1, nullptr, FirstStart},
    {"directories", 1, "", Directories},
    {"assistant", 1, "SoldeAu(Date, zefPointee", Assistant},
    {"chain", 2, "Categorie.Budget.Periodes", Chain},
    {"member", 2, "texte & ", Member},
    {"function", 2, "MsgBox texte", FunctionCall},
    {"constants", 2, "MsgBox texte", Constants},
    {"types", 2, "MsgBox texte", Types},
    {"dialogs", 1, "SoldeAu(", Dialogs},
    {"bubble", 2, "MsgBox texte", Bubble},
    {"filter", 1, "SoldeAu(", Filter},
    {"place", 1, "SoldeAu(", Place},
    {"update", 1, "SoldeAu", Update},
};

/// White on black, as those choose who see little, while there is an object of this kind.
class THighContrast {
 public:
  THighContrast() {
    for (const int element : Elements) FBefore.push_back(GetSysColor(element));
    std::vector<COLORREF> colours;
    for (const int element : Elements) colours.push_back(ColourOf(element));
    Set(colours, HCF_HIGHCONTRASTON);
  }
  THighContrast(const THighContrast&) = delete;
  THighContrast& operator=(const THighContrast&) = delete;
  ~THighContrast() { Set(FBefore, 0); }

 private:
  static constexpr int Elements[] = {
      COLOR_WINDOW,       COLOR_WINDOWTEXT,    COLOR_BTNFACE,       COLOR_BTNTEXT,
      COLOR_BTNSHADOW,    COLOR_BTNHIGHLIGHT,  COLOR_3DLIGHT,       COLOR_3DDKSHADOW,
      COLOR_GRAYTEXT,     COLOR_HIGHLIGHT,     COLOR_HIGHLIGHTTEXT, COLOR_MENU,
      COLOR_MENUTEXT,     COLOR_MENUBAR,       COLOR_INFOBK,        COLOR_INFOTEXT,
      COLOR_APPWORKSPACE, COLOR_ACTIVECAPTION, COLOR_CAPTIONTEXT};
  static COLORREF ColourOf(int element) {
    switch (element) {
      case COLOR_GRAYTEXT:
        return RGB(0, 255, 0);
      case COLOR_HIGHLIGHT:
        return RGB(0, 128, 255);
      case COLOR_ACTIVECAPTION:
        return RGB(128, 0, 128);
      case COLOR_WINDOWTEXT:
      case COLOR_BTNTEXT:
      case COLOR_BTNSHADOW:
      case COLOR_BTNHIGHLIGHT:
      case COLOR_HIGHLIGHTTEXT:
      case COLOR_MENUTEXT:
      case COLOR_INFOTEXT:
      case COLOR_CAPTIONTEXT:
        return RGB(255, 255, 255);
      default:
        return RGB(0, 0, 0);
    }
  }
  static void Set(const std::vector<COLORREF>& colours, DWORD flags) {
    HIGHCONTRASTW contrast{};
    contrast.cbSize = sizeof contrast;
    contrast.dwFlags = flags | HCF_AVAILABLE;
    SystemParametersInfoW(SPI_SETHIGHCONTRAST, sizeof contrast, &contrast, 0);
    SetSysColors(static_cast<int>(colours.size()), Elements, colours.data());
  }

  std::vector<COLORREF> FBefore;
};

bool Make(const TStop& stop, const std::wstring& directory) {
  const TSavedSettings saved;
  // A null text leaves the cursor where the program puts it; an empty one is for an empty list.
  if (stop.Text) KeepDirectories(*stop.Text ? directory : L"");
  try {
    TTourHost host(directory, stop.Name, L"--script " + std::to_wstring(stop.Script));
    try {
      if (stop.Text && *stop.Text) host.GoTo(stop.Text);
      stop.Make(host);
      host.Quit();
      std::printf("%s: made\n", stop.Name);
      std::fflush(stdout);
      return true;
    } catch (const TUserError& error) {
      std::printf("%s: %s\nlast steps:\n%swindows:\n%s", stop.Name, error.what(),
                  host.User().LastSteps().c_str(), WindowTree(host.User().Process()).c_str());
      host.PictureOfAll("failed");
    }
  } catch (const TUserError& error) {
    std::printf("%s: %s\n", stop.Name, error.what());
  }
  return false;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  const std::vector<std::wstring> arguments(argv + 1, argv + argc);
  if (arguments.empty()) {
    std::printf("tour DIRECTORY [--contrast] [STOP]\n");
    return 1;
  }
  const bool contrast = arguments.size() > 1 && arguments[1] == L"--contrast";
  std::optional<THighContrast> colours;
  if (contrast) colours.emplace();
  const std::wstring only = arguments.size() > (contrast ? 2 : 1) ? arguments.back() : L"";
  int failed = 0;
  for (const TStop& stop : Stops)
    if (only.empty() || Wide(stop.Name) == only) failed += Make(stop, arguments[0]) ? 0 : 1;
  return failed;
}
