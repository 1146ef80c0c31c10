// Where settings live, and what is created on the way there.
//
// SPDX-License-Identifier: MIT
#include <vector>

#include "tests/unit/paths/fresh_program.h"

namespace {

using fake::TheWorld;
using modPath::gCommonPath;
using modPath::gPortable;
using modPath::gSettingsPath;
using modPath::gUserSettingsPath;

class DataFolders : public unit::FreshProgram {
 protected:
  static void Init() { modPath::InitDataFolders("Maker", "Product", "6"); }

  static std::string Roaming() { return TheWorld().specialFolders.at(26); }
  static std::string PortableRoot() { return ProgramFolder() + "\\Settings"; }

  /// Whether settings are portable when the program's own ini holds `text`.
  static bool PortableWith(const std::string& text) {
    WriteOwnIni(text);
    Init();
    return gPortable;
  }

  static bool PortableWhenRunAsInstalledIs(const std::string& value) {
    return PortableWith("[Program]\nRunAsInstalled=" + value + "\n");
  }
};

// Which mode

TEST_F(DataFolders, LiveBesideAProgramThatNothingSaysIsInstalled) {
  Init();
  EXPECT_TRUE(gPortable);
  EXPECT_EQ(gSettingsPath, ProgramFolder() + "\\Settings\\Maker\\Product\\6");
  EXPECT_TRUE(TheWorld().HasFile(gSettingsPath));
}

TEST_F(DataFolders, LiveInTheUsersDataWhenTheProgramIsInstalled) {
  TheWorld().WriteFile(ProgramFolder() + "\\installed.ini", "");
  Init();
  EXPECT_FALSE(gPortable);
  EXPECT_EQ(gSettingsPath, Roaming() + "\\Maker\\Product\\6");
  EXPECT_TRUE(TheWorld().HasFile(gSettingsPath));
}

TEST_F(DataFolders, LiveInTheUsersDataWhenParvixPlusOrStandardIsInstalled) {
  for (const char* edition : {"Plus", "Standard"}) {
    SCOPED_TRACE(edition);
    fake::Reset();
    TheWorld().WriteFile(ParvixBase() + edition + "\\installed.ini", "");
    Init();
    EXPECT_FALSE(gPortable);
  }
}

TEST_F(DataFolders, StayBesideTheProgramWhenOnlyParvixProIsInstalled) {
  TheWorld().WriteFile(ParvixBase() + "Pro\\installed.ini", "");
  Init();
  EXPECT_TRUE(gPortable);
}

TEST_F(DataFolders, LiveInTheUsersDataWhenTheBareEditionFolderHasTheMarker) {
  TheWorld().WriteFile(ParvixBase() + "\\installed.ini", "");
  Init();
  EXPECT_FALSE(gPortable);
}

TEST_F(DataFolders, CountAProgramAsInstalledBeforeItsIniIsAsked) {
  TheWorld().WriteFile(ProgramFolder() + "\\installed.ini", "");
  EXPECT_FALSE(PortableWhenRunAsInstalledIs("0"));
}

TEST_F(DataFolders, CountParvixAsInstalledBeforeTheIniIsAsked) {
  TheWorld().WriteFile(ParvixBase() + "Plus\\installed.ini", "");
  EXPECT_FALSE(PortableWhenRunAsInstalledIs("0"));
}

TEST_F(DataFolders, AreInstalledWhenTheIniSaysTrue) {
  for (const char* value : {"1", "True", "TRUE", "true", "#TRUE#", "-1", "+1", "2", "0.5", "1e3"}) {
    SCOPED_TRACE(value);
    EXPECT_FALSE(PortableWhenRunAsInstalledIs(value));
  }
}

TEST_F(DataFolders, ArePortableWhenTheIniSaysFalse) {
  for (const char* value : {"0", "False", "FALSE", "false", "#FALSE#", "-0", "+0", "00", "0.0"}) {
    SCOPED_TRACE(value);
    EXPECT_TRUE(PortableWhenRunAsInstalledIs(value));
  }
}

TEST_F(DataFolders, AreInstalledWhenTheIniSaysNeither) {
  for (const char* value :
       {"yes", "no", "", "0x", "&H0", "1e-400", "0 0", "+-0", "#false#", "\" False \"", "."}) {
    SCOPED_TRACE(value);
    EXPECT_FALSE(PortableWhenRunAsInstalledIs(value));
  }
}

TEST_F(DataFolders, TakeANumberWithBlanksAroundIt) {
  EXPECT_TRUE(PortableWhenRunAsInstalledIs("\" 0 \""));
}

TEST_F(DataFolders, ArePortableWhenTheIniLacksTheSetting) {
  EXPECT_TRUE(PortableWith("[Other]\nRunAsInstalled=1\n"));
  EXPECT_TRUE(PortableWith("[Program]\nInstalled=1\n"));
}

TEST_F(DataFolders, AskTheIniThatIsNamedAfterTheProgramFile) {
  TheWorld().programName = "Twin";
  EXPECT_TRUE(PortableWhenRunAsInstalledIs("1"));
  TheWorld().WriteFile(ProgramFolder() + "\\Twin.ini", "[Program]\nRunAsInstalled=1\n");
  Init();
  EXPECT_FALSE(gPortable);
}

// The levels

TEST_F(DataFolders, HaveTheCommonFolderAtTheCompanyLevel) {
  Init();
  EXPECT_EQ(gCommonPath, PortableRoot() + "\\Maker\\Common");
  EXPECT_TRUE(TheWorld().HasFile(gCommonPath));
}

TEST_F(DataFolders, HaveASecondPathThatEqualsTheFirst) {
  for (const char* runAsInstalled : {"0", "1"}) {
    SCOPED_TRACE(runAsInstalled);
    PortableWhenRunAsInstalledIs(runAsInstalled);
    EXPECT_FALSE(gUserSettingsPath.empty());
    EXPECT_EQ(gUserSettingsPath, gSettingsPath);
  }
}

TEST_F(DataFolders, AreOverwrittenByEachCall) {
  Init();
  PortableWhenRunAsInstalledIs("1");
  modPath::InitDataFolders("Other", "Thing", "7");
  EXPECT_FALSE(gPortable);
  EXPECT_EQ(gSettingsPath, Roaming() + "\\Other\\Thing\\7");
  EXPECT_EQ(gUserSettingsPath, gSettingsPath);
  EXPECT_EQ(gCommonPath, Roaming() + "\\Other\\Common");
}

TEST_F(DataFolders, TakeFoldersThatExistAsTheyAre) {
  TheWorld().WriteFile(PortableRoot() + "\\Maker\\Product\\6\\config.ini", "kept");
  Init();
  EXPECT_EQ(TheWorld().ReadFile(gSettingsPath + "\\config.ini"), "kept");
}

TEST_F(DataFolders, AreNoFolderBesideAnInstalledProgram) {
  PortableWhenRunAsInstalledIs("1");
  EXPECT_FALSE(TheWorld().HasFile(PortableRoot()));
}

TEST_F(DataFolders, AreNotCreatedWhereTheRootIsMissing) {
  TheWorld().specialFolders[26] = Roaming() + "\\not there";
  PortableWhenRunAsInstalledIs("1");
  EXPECT_EQ(gSettingsPath, Roaming() + "\\Maker\\Product\\6");
  EXPECT_FALSE(TheWorld().HasFile(Roaming()));
}

TEST_F(DataFolders, AreCreatedOneLevelAtATime) {
  modPath::InitDataFolders("Maker", "two\\levels", "6");
  EXPECT_EQ(gSettingsPath, PortableRoot() + "\\Maker\\two\\levels\\6");
  EXPECT_TRUE(TheWorld().HasFile(gCommonPath));
  EXPECT_FALSE(TheWorld().HasFile(PortableRoot() + "\\Maker\\two"));
}

TEST_F(DataFolders, GoOnPastALevelThatCannotBeCreated) {
  TheWorld().WriteFile(PortableRoot() + "\\Maker\\Common", "a file in the way");
  Init();
  EXPECT_EQ(gCommonPath, PortableRoot() + "\\Maker\\Common");
  EXPECT_TRUE(TheWorld().HasFile(PortableRoot() + "\\Maker\\Product\\6"));
}

TEST_F(DataFolders, KeepTheirPathsWhereNoLevelCanBeCreated) {
  TheWorld().WriteFile(PortableRoot() + "\\Maker", "a file in the way");
  Init();
  EXPECT_EQ(gSettingsPath, PortableRoot() + "\\Maker\\Product\\6");
  EXPECT_EQ(gCommonPath, PortableRoot() + "\\Maker\\Common");
  EXPECT_EQ(TheWorld().ReadFile(PortableRoot() + "\\Maker"), "a file in the way");
}

TEST_F(DataFolders, BeginWithASeparatorWhereTheShellFails) {
  TheWorld().specialFolders.clear();
  WriteOwnIni("[Program]\nRunAsInstalled=1\n");
  // Two levels, so that nothing is created at the root of the system that runs the test.
  modPath::InitDataFolders("velor test\\none", "Product", "6");
  EXPECT_EQ(gSettingsPath, "\\velor test\\none\\Product\\6");
  EXPECT_EQ(gCommonPath, "\\velor test\\none\\Common");
}

// The names of the levels

TEST_F(DataFolders, AreNamedByTheArgumentsEvenWhenTheIniNamesOthers) {
  WriteOwnIni("[ApplicationDataPath]\nCompany=A\nApplicationName=B\nVersion=C\n");
  Init();
  EXPECT_EQ(gSettingsPath, PortableRoot() + "\\Maker\\Product\\6");
}

TEST_F(DataFolders, AreNamedByTheIniWhereTheArgumentsAreEmpty) {
  WriteOwnIni("[ApplicationDataPath]\nCompany=A\nApplicationName=B\nVersion=C\n");
  modPath::InitDataFolders("", "", "");
  EXPECT_EQ(gSettingsPath, PortableRoot() + "\\A\\B\\C");
}

TEST_F(DataFolders, AreNamedByTheVersionInformationWhereTheIniIsSilentToo) {
  TheWorld().companyName = "Own company";
  TheWorld().productName = "Own product";
  TheWorld().majorVersion = 3;
  modPath::InitDataFolders("", "", "");
  EXPECT_EQ(gSettingsPath, PortableRoot() + "\\Own company\\Own product\\3");
}

TEST_F(DataFolders, AreNamedEachByItsOwnRule) {
  WriteOwnIni("[ApplicationDataPath]\nApplicationName=B\n");
  modPath::InitDataFolders("", "", "6");
  EXPECT_EQ(gSettingsPath, PortableRoot() + "\\Velor Software\\B\\6");
}

TEST_F(DataFolders, LoseTheBlanksAroundANameFromTheIni) {
  WriteOwnIni("[ApplicationDataPath]\nCompany=\"  A  \"\n");
  modPath::InitDataFolders("", "B", "C");
  EXPECT_EQ(gSettingsPath, PortableRoot() + "\\A\\B\\C");
}

TEST_F(DataFolders, TakeANameOfBlanksFromTheIniForNone) {
  WriteOwnIni("[ApplicationDataPath]\nCompany=\"   \"\n");
  modPath::InitDataFolders("", "B", "C");
  EXPECT_EQ(gSettingsPath, PortableRoot() + "\\Velor Software\\B\\C");
}

TEST_F(DataFolders, TakeAtMost255BytesOfANameFromTheIni) {
  WriteOwnIni("[ApplicationDataPath]\nCompany=" + std::string(300, 'x') + "\n");
  modPath::InitDataFolders("", "B", "C");
  EXPECT_EQ(gSettingsPath, PortableRoot() + "\\" + std::string(255, 'x') + "\\B\\C");
}

TEST_F(DataFolders, TakeAnArgumentOfBlanksAsItStands) {
  modPath::InitDataFolders("Maker", " ", "6");
  EXPECT_EQ(gSettingsPath, PortableRoot() + "\\Maker\\ \\6");
}

// Of Parvix

class ParvixConfig : public unit::FreshProgram {};

TEST_F(ParvixConfig, LiesInTheSettingsFolderOfParvixSix) {
  EXPECT_EQ(modPath::GetParvixConfigPath(), PortableSettingsFolder() + "\\config.ini");
  EXPECT_EQ(gSettingsPath, PortableSettingsFolder());
  EXPECT_TRUE(TheWorld().HasFile(PortableSettingsFolder()));
}

TEST_F(ParvixConfig, LiesBelowTheCompanyOfTheProgram) {
  TheWorld().companyName = "Reseller";
  EXPECT_EQ(modPath::GetParvixConfigPath(),
            ProgramFolder() + "\\Settings\\Reseller\\Parvix\\6\\config.ini");
}

TEST_F(ParvixConfig, IsNotMovedByTheProgramsOwnIni) {
  WriteOwnIni("[ApplicationDataPath]\nCompany=A\nApplicationName=B\nVersion=C\n");
  EXPECT_EQ(modPath::GetParvixConfigPath(), PortableSettingsFolder() + "\\config.ini");
}

}  // namespace
