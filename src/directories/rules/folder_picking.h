#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

/// What the shell's folder picker can be asked for.
enum class TBffOption {
  bffBrowseForComputer,
  bffBrowseForPrinter,
  bffDontGoBelowDomain,
  bffReturnFSAncestors,
  bffReturnOnlyFSDirs,
  bffStatusText,
  bffValidate,
  bffEditBox,
  bffBrowseIncludeFiles,
  bffBrowseIncludeURLs,
  bffNewDialogStyle,
  bffShareable,
  bffUseNewUI,
  bffNoNewFolderButton,
  bffNoTranslateTargets,
  bffUsageHint,
};
inline constexpr int kBffOptionCount = 16;

class TBffOptions {
 public:
  constexpr TBffOptions(std::initializer_list<TBffOption> options) {
    for (const TBffOption option : options) FBits |= Bit(option);
  }
  constexpr bool Has(TBffOption option) const { return (FBits & Bit(option)) != 0; }

 private:
  static constexpr unsigned Bit(TBffOption option) { return 1u << static_cast<unsigned>(option); }

  unsigned FBits = 0;
};

/// Where the picker's tree starts: a special folder, or the folder selected beforehand.
enum class TBffRootDir {
  rdDesktop,
  rdInternet,
  rdPrograms,
  rdControlPanel,
  rdPrinters,
  rdPersonal,
  rdFavorites,
  rdStartup,
  rdRecent,
  rdSendTo,
  rdBitBucked,
  rdStartMenu,
  rdMyDocuments,
  rdMyMusic,
  rdMyVideo,
  rdDesktopDirectory,
  rdDrives,
  rdNetwork,
  rdNetHood,
  rdFonts,
  rdTemplates,
  rdCommonStartMenu,
  rdCommonPrograms,
  rdCommonStartup,
  rdCommonDesktopDirectory,
  rdAppData,
  rdPrintHood,
  rdLocalAppData,
  rdAltStartup,
  rdCommonAltStartup,
  rdCommonFavorites,
  rdInternetCache,
  rdCookies,
  rdHistory,
  rdCommonAppData,
  rdWindows,
  rdSystem,
  rdProgramFiles,
  rdMyPictures,
  rdProfile,
  rdSystemX86,
  rdProgramFilesX86,
  rdProgramFilesCommon,
  rdProgramFilesCommonX86,
  rdCommonTemplates,
  rdCommonDocuments,
  rdCommonAdmintools,
  rdAdmintools,
  rdConnections,
  rdCommonMusic,
  rdCommonPictures,
  rdCommonVideo,
  rdResources,
  rdRecourcesLocalized,
  rdCommonOemLinks,
  rdCDBurnArea,
  rdComputersNearMe,
  rdUseSelectedDir,
};
inline constexpr int kBffRootDirCount = 58;

/// A shell's version: major in the high half, minor in the low half; 0 when it is unknown.
constexpr std::uint32_t ShellVersionNumber(std::uint32_t major, std::uint32_t minor) {
  return major * 0x10000u + minor;
}

/// The shell's flags for the options, without those that this shell is too old for. Summed, not
/// joined bit by bit: an option that holds others doubles their flags.
std::uint32_t FolderPickerFlags(const TBffOptions& options, std::uint32_t shellVersion);

/// Whether this shell tells of a name that the user typed and that is no folder.
bool ReportsWrongNames(std::uint32_t shellVersion);

/// The shell's number of the special folder; nothing for rdUseSelectedDir.
std::optional<int> SpecialFolder(TBffRootDir root);

/// Without the backslash at the end of a path with a drive letter, unless it is a bare drive root.
std::string WithoutEndSlash(std::string_view folder);
