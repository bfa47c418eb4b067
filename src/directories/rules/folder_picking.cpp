#include "directories/rules/folder_picking.h"

#include <array>

#include "text/collation.h"

namespace {

constexpr std::uint32_t kAnyShell = 0;
constexpr std::uint32_t kAbove470 = ShellVersionNumber(4, 70) + 1;
constexpr std::uint32_t kFrom5 = ShellVersionNumber(5, 0);
constexpr std::uint32_t kFrom6 = ShellVersionNumber(6, 0);

struct TFlag {
  TBffOption Option;
  std::uint32_t Value;
  std::uint32_t Needs;  ///< lowest shell version
};

constexpr TFlag kFlags[] = {
    {TBffOption::bffBrowseForComputer, 0x1000, kAnyShell},
    {TBffOption::bffBrowseForPrinter, 0x2000, kAnyShell},
    {TBffOption::bffDontGoBelowDomain, 0x2, kAnyShell},
    {TBffOption::bffReturnFSAncestors, 0x8, kAnyShell},
    {TBffOption::bffReturnOnlyFSDirs, 0x1, kAnyShell},
    {TBffOption::bffStatusText, 0x4, kAnyShell},
    {TBffOption::bffValidate, 0x20, kAbove470},
    {TBffOption::bffEditBox, 0x10, kAbove470},
    {TBffOption::bffBrowseIncludeFiles, 0x4000, kAbove470},
    {TBffOption::bffBrowseIncludeURLs, 0x80, kFrom5},
    {TBffOption::bffNewDialogStyle, 0x40, kFrom5},
    {TBffOption::bffShareable, 0x8000, kFrom5},
    {TBffOption::bffUseNewUI, 0x50, kFrom5},
    {TBffOption::bffNoNewFolderButton, 0x200, kFrom6},
    {TBffOption::bffNoTranslateTargets, 0x400, kFrom6},
    {TBffOption::bffUsageHint, 0x100, kFrom6},
};
static_assert(std::size(kFlags) == kBffOptionCount);

/// The shell's numbers in the order of TBffRootDir; 15, 50 to 52 and 60 name nothing here.
constexpr auto kSpecialFolders = std::to_array<int>(
    {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 16, 17, 18, 19,
     20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32, 33, 34, 35, 36, 37, 38,
     39, 40, 41, 42, 43, 44, 45, 46, 47, 48, 49, 53, 54, 55, 56, 57, 58, 59, 61});
static_assert(kSpecialFolders.size() == kBffRootDirCount - 1);
static_assert(static_cast<int>(TBffRootDir::rdUseSelectedDir) == kBffRootDirCount - 1);

}  // namespace

std::uint32_t FolderPickerFlags(const TBffOptions& options, std::uint32_t shellVersion) {
  std::uint32_t sum = 0;
  for (const TFlag& flag : kFlags) {
    if (options.Has(flag.Option) && shellVersion >= flag.Needs) sum += flag.Value;
  }
  return sum;
}

bool ReportsWrongNames(std::uint32_t shellVersion) { return shellVersion >= kAbove470; }

std::optional<int> SpecialFolder(TBffRootDir root) {
  if (root == TBffRootDir::rdUseSelectedDir) return std::nullopt;
  return kSpecialFolders.at(static_cast<std::size_t>(root));
}

std::string WithoutEndSlash(std::string_view folder) {
  const bool drivePath = folder.size() > 3 && folder[1] == ':';
  if (drivePath && MaskDoubleBytes(folder).back() == '\\') folder.remove_suffix(1);
  return std::string(folder);
}
