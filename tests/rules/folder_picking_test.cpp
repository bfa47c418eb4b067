#include "directories/rules/folder_picking.h"

#include <gtest/gtest.h>

namespace {

using enum TBffOption;
using enum TBffRootDir;

TEST(FolderPicking, OptionsCountFromTheirShellVersionOn) {
  constexpr TBffOptions all{
      bffBrowseForComputer,  bffBrowseForPrinter,  bffDontGoBelowDomain,  bffReturnFSAncestors,
      bffReturnOnlyFSDirs,   bffStatusText,        bffValidate,           bffEditBox,
      bffBrowseIncludeFiles, bffBrowseIncludeURLs, bffNewDialogStyle,     bffShareable,
      bffUseNewUI,           bffNoNewFolderButton, bffNoTranslateTargets, bffUsageHint};
  const struct {
    std::uint32_t Major, Minor, Sum;
  } cases[] = {{0, 0, 0x300F}, {4, 70, 0x300F}, {4, 71, 0x703F}, {4, 99, 0x703F},
               {5, 0, 0xF14F}, {5, 82, 0xF14F}, {6, 0, 0xF84F}};
  for (const auto& c : cases) {
    const std::uint32_t version = ShellVersionNumber(c.Major, c.Minor);
    EXPECT_EQ(FolderPickerFlags(all, version), c.Sum) << c.Major << c.Minor;
    EXPECT_EQ(ReportsWrongNames(version), c.Sum != 0x300F);
  }
  EXPECT_EQ(FolderPickerFlags({bffReturnOnlyFSDirs, bffStatusText, bffEditBox, bffNewDialogStyle},
                              ShellVersionNumber(6, 0)),
            0x55u);
}

TEST(FolderPicking, SpecialFoldersLeaveTheGaps) {
  int before = -1;
  for (int i = 0; i < kBffRootDirCount - 1; ++i) {
    const auto folder = SpecialFolder(static_cast<TBffRootDir>(i));
    ASSERT_TRUE(folder.has_value());
    EXPECT_GT(*folder, before);
    for (const int gap : {15, 50, 51, 52, 60}) EXPECT_NE(*folder, gap);
    before = *folder;
  }
  EXPECT_EQ(before, 61);
  EXPECT_EQ(SpecialFolder(rdUseSelectedDir), std::nullopt);
}

TEST(FolderPicking, OnlyPathsBehindADriveRootLoseTheirEndSlash) {
  const struct {
    const char *Given, *Kept;
  } cases[] = {{"c:\\", "c:\\"}, {"c:\\a\\", "c:\\a"},           {"c:\\a", "c:\\a"},
               {"c:a\\", "c:a"}, {"\\\\pc\\s\\", "\\\\pc\\s\\"}, {"", ""},
               {"\\", "\\"},     {"c:\\a\\\\", "c:\\a\\"},       {"abc\\", "abc\\"}};
  for (const auto& c : cases) EXPECT_EQ(WithoutEndSlash(c.Given), c.Kept);
}

}  // namespace
