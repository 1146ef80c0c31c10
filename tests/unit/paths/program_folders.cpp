// The shell's folders, the program's own, the edition of Parvix beside it.
//
// SPDX-License-Identifier: MIT
#include "tests/unit/paths/fresh_program.h"

namespace {

using fake::TheWorld;

class SpecialFolder : public unit::FreshProgram {};

TEST_F(SpecialFolder, IsTheShellsFolderForItsIdentifier) {
  TheWorld().specialFolders = {{26, "C:\\Roaming"}, {35, "C:\\ProgramData"}};
  EXPECT_EQ(modPath::GetSpecialFolderPath(modPath::kUserApplicationData), "C:\\Roaming");
  EXPECT_EQ(modPath::GetSpecialFolderPath(modPath::kCommonApplicationData), "C:\\ProgramData");
}

TEST_F(SpecialFolder, HasTheShellsIdentifiers) {
  EXPECT_EQ(modPath::kUserApplicationData, 26);
  EXPECT_EQ(modPath::kCommonApplicationData, 35);
}

TEST_F(SpecialFolder, IsEmptyWhenTheShellDoesNotKnowIt) {
  TheWorld().specialFolders.clear();
  EXPECT_EQ(modPath::GetSpecialFolderPath(26), "");
}

TEST_F(SpecialFolder, LosesBlanksInFrontOnly) {
  TheWorld().specialFolders = {{26, "  C:\\App data "}, {35, "   "}};
  EXPECT_EQ(modPath::GetSpecialFolderPath(26), "C:\\App data ");
  EXPECT_EQ(modPath::GetSpecialFolderPath(35), "");
}

class AppFolder : public unit::FreshProgram {};

TEST_F(AppFolder, IsTheFolderOfTheProgramFile) {
  TheWorld().programFolder = "C:\\Tools\\Setup";
  EXPECT_EQ(modPath::GetAppFolder(), "C:\\Tools\\Setup");
}

TEST_F(AppFolder, OfAProgramAtADrivesRootIsTheDrive) {
  TheWorld().programFolder = "C:\\";
  EXPECT_EQ(modPath::GetAppFolder(), "C:");
}

TEST_F(AppFolder, LosesOneSeparatorAndNoMore) {
  TheWorld().programFolder = "C:\\Tools\\\\";
  EXPECT_EQ(modPath::GetAppFolder(), "C:\\Tools\\");
}

class EditionFolder : public unit::FreshProgram {
 protected:
  static void Install(const std::string& edition) {
    TheWorld().WriteFile(ParvixBase() + edition + "\\installed.ini", "");
  }
};

TEST_F(EditionFolder, IsTheBaseWithItsBlankWhereNoEditionIsInstalled) {
  EXPECT_EQ(modPath::GetParvixEditionFolder(), ParvixBase());
  EXPECT_TRUE(modPath::GetParvixEditionFolder().ends_with("\\Velor Software\\Parvix "));
}

TEST_F(EditionFolder, IsTheBareBaseForPro) {
  Install("Pro");
  EXPECT_EQ(modPath::GetParvixEditionFolder(), ParvixBase());
}

TEST_F(EditionFolder, EndsInPlusForPlus) {
  Install("Plus");
  EXPECT_EQ(modPath::GetParvixEditionFolder(), ParvixBase() + "Plus");
}

TEST_F(EditionFolder, EndsInStandardForStandard) {
  Install("Standard");
  EXPECT_EQ(modPath::GetParvixEditionFolder(), ParvixBase() + "Standard");
}

TEST_F(EditionFolder, PrefersProToPlusAndPlusToStandard) {
  Install("Standard");
  Install("Plus");
  EXPECT_EQ(modPath::GetParvixEditionFolder(), ParvixBase() + "Plus");
  Install("Pro");
  EXPECT_EQ(modPath::GetParvixEditionFolder(), ParvixBase());
}

TEST_F(EditionFolder, NeedsTheMarkerFileAndNotTheFolderAlone) {
  TheWorld().WriteFile(ParvixBase() + "Plus\\Parvix.exe", "");
  EXPECT_EQ(modPath::GetParvixEditionFolder(), ParvixBase());
}

TEST_F(EditionFolder, LosesEveryOccurrenceOfTheProgramsFolderName) {
  TheWorld().programFolder = "C:\\Velor Voice Setup\\Old Velor Voice Setup\\Velor Voice Setup";
  EXPECT_EQ(modPath::GetParvixEditionFolder(), "C:\\\\Old \\Parvix ");
}

TEST_F(EditionFolder, TellsLetterCaseApartInTheProgramsFolderName) {
  TheWorld().programFolder = "C:\\velor voice setup";
  EXPECT_EQ(modPath::GetParvixEditionFolder(), "C:\\velor voice setupParvix ");
}

class HandOver : public unit::FreshProgram {};

TEST_F(HandOver, LiesInTheCommonDataFolderOfTheMaker) {
  TheWorld().specialFolders[35] = "C:\\ProgramData";
  EXPECT_EQ(modPath::GetQueuePath(), "C:\\ProgramData\\Velor Software\\queue.xml");
  EXPECT_EQ(modPath::GetProductsPath(), "C:\\ProgramData\\Velor Software\\products.xml");
}

TEST_F(HandOver, CreatesNoFolder) {
  modPath::GetQueuePath();
  modPath::GetProductsPath();
  EXPECT_FALSE(TheWorld().HasFile(TheWorld().specialFolders.at(35) + "\\Velor Software"));
}

}  // namespace
