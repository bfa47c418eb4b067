#include "directories/rules/folder_picking.h"

#include <gtest/gtest.h>

namespace {

using enum TBffOption;
using enum TBffRootDir;

TEST(FolderPicking, FlagsOfEachOptionFromItsShellVersionOn) {
  constexpr std::uint32_t first = ShellVersionNumber(0, 0);
  constexpr std::uint32_t above470 = ShellVersionNumber(4, 71);
  constexpr std::uint32_t five = ShellVersionNumber(5, 0);
  constexpr std::uint32_t six = ShellVersionNumber(6, 0);
  const struct {
    TBffOption Option;
    std::uint32_t Flag;
    std::uint32_t Since;
  } cases[] = {
      {bffBrowseForComputer, 0x1000, first},
      {bffBrowseForPrinter, 0x2000, first},
      {bffDontGoBelowDomain, 0x2, first},
      {bffReturnFSAncestors, 0x8, first},
      {bffReturnOnlyFSDirs, 0x1, first},
      {bffStatusText, 0x4, first},
      {bffValidate, 0x20, above470},
      {bffEditBox, 0x10, above470},
      {bffBrowseIncludeFiles, 0x4000, above470},
      {bffBrowseIncludeURLs, 0x80, five},
      {bffNewDialogStyle, 0x40, five},
      {bffShareable, 0x8000, five},
      {bffUseNewUI, 0x50, five},
      {bffNoNewFolderButton, 0x200, six},
      {bffNoTranslateTargets, 0x400, six},
      {bffUsageHint, 0x100, six},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(FolderPickerFlags({c.Option}, c.Since), c.Flag);
    if (c.Since > 0) {
      EXPECT_EQ(FolderPickerFlags({c.Option}, c.Since - 1), 0u) << c.Flag;
    }
  }
  EXPECT_FALSE(ReportsWrongNames(ShellVersionNumber(4, 70)));
  EXPECT_TRUE(ReportsWrongNames(above470));
}

TEST(FolderPicking, FlagsAreSummed) {
  constexpr std::uint32_t six = ShellVersionNumber(6, 0);
  EXPECT_EQ(FolderPickerFlags({}, six), 0u);
  EXPECT_EQ(
      FolderPickerFlags({bffReturnOnlyFSDirs, bffStatusText, bffEditBox, bffNewDialogStyle}, six),
      0x55u);
  EXPECT_EQ(FolderPickerFlags({bffUseNewUI, bffNewDialogStyle}, six), 0x90u);
  EXPECT_EQ(FolderPickerFlags({bffUseNewUI, bffEditBox}, six), 0x60u);
  EXPECT_EQ(FolderPickerFlags({bffUseNewUI, bffEditBox}, 0), 0u);
}

TEST(FolderPicking, SpecialFoldersLeaveTheGaps) {
  const struct {
    TBffRootDir Root;
    int Folder;
  } cases[] = {{rdDesktop, 0},      {rdMyVideo, 14},        {rdDesktopDirectory, 16},
               {rdConnections, 49}, {rdCommonMusic, 53},    {rdRecourcesLocalized, 57},
               {rdCDBurnArea, 59},  {rdComputersNearMe, 61}};
  for (const auto& c : cases) EXPECT_EQ(SpecialFolder(c.Root), c.Folder);
  int before = -1;
  for (int i = 0; i < kBffRootDirCount - 1; ++i) {
    const auto folder = SpecialFolder(static_cast<TBffRootDir>(i));
    ASSERT_TRUE(folder.has_value());
    EXPECT_GT(*folder, before);
    for (const int gap : {15, 50, 51, 52, 60}) EXPECT_NE(*folder, gap);
    before = *folder;
  }
  EXPECT_EQ(SpecialFolder(rdUseSelectedDir), std::nullopt);
}

TEST(FolderPicking, OnlyPathsBehindADriveRootLoseTheirEndSlash) {
  const struct {
    const char* Given;
    const char* Kept;
  } cases[] = {{"c:\\", "c:\\"}, {"c:\\a\\", "c:\\a"},           {"c:\\a", "c:\\a"},
               {"c:a\\", "c:a"}, {"\\\\pc\\s\\", "\\\\pc\\s\\"}, {"", ""},
               {"\\", "\\"},     {"c:\\a\\\\", "c:\\a\\"},       {"abc\\", "abc\\"}};
  for (const auto& c : cases) EXPECT_EQ(WithoutEndSlash(c.Given), c.Kept);
}

}  // namespace
