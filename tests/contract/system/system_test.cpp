// Promises of platform/system/system.h, platform/system/shell.h and platform/system/program.h that
// can be asked alike everywhere.
//
// SPDX-License-Identifier: MIT
#include "platform/system/system.h"

#include "platform/system/program.h"
#include "platform/system/shell.h"
#include "tests/contract/services_case.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

using System = ServiceCase;
using Shell = ServiceCase;
using Program = ServiceCase;

TEST_F(System, SaysAVersionThatProgramsOfTodayAreMadeFor) {
  EXPECT_GE(platform::OperatingSystemMajorVersion(), 6);
}

TEST_F(System, SurvivesAskingForTheCountry) { EXPECT_NO_THROW(platform::CountryName()); }

TEST_F(System, RegistersCommonControls) { EXPECT_NO_THROW(platform::InitCommonControls(8, 0x200)); }

TEST_F(Shell, KnowsTheTwoFoldersOfApplicationData) {
  constexpr int kRoaming = 26;
  constexpr int kCommon = 35;
  EXPECT_TRUE(peer::IsFolder(platform::SpecialFolder(kRoaming)));
  EXPECT_TRUE(peer::IsFolder(platform::SpecialFolder(kCommon)));
  EXPECT_NE(platform::SpecialFolder(kRoaming), platform::SpecialFolder(kCommon));
}

TEST_F(Shell, NamesFoldersAsTheCoreDoes) {
  for (const int csidl : {26, 35}) {
    EXPECT_THAT(platform::SpecialFolder(csidl), Not(EndsWith("\\")));
    EXPECT_THAT(platform::SpecialFolder(csidl), HasSubstr("\\"));
    EXPECT_THAT(platform::SpecialFolder(csidl), Not(HasSubstr("/")));
  }
}

TEST_F(Shell, ThrowsForFoldersThatNobodyKnows) {
  EXPECT_ANY_THROW(platform::SpecialFolder(-1));
  EXPECT_ANY_THROW(platform::SpecialFolder(9999));
}

TEST_F(Program, LiesInAFolder) {
  EXPECT_TRUE(peer::IsFolder(platform::ProgramFolder()));
  EXPECT_THAT(platform::ProgramFolder(), Not(HasSubstr("/")));
  EXPECT_THAT(platform::ProgramFolder(), Not(EndsWith("\\")));
}

TEST_F(Program, HasANameWithoutAnExtension) {
  EXPECT_FALSE(platform::ProgramName().empty());
  EXPECT_THAT(platform::ProgramName(), Not(HasSubstr(".")));
  EXPECT_THAT(platform::ProgramName(), Not(HasSubstr("\\")));
}

TEST_F(Program, SaysWhoMadeIt) {
  EXPECT_EQ(platform::CompanyName(), "Velor Software");
  EXPECT_EQ(platform::ProductName(), "Velor Voice Setup");
  EXPECT_EQ(platform::MajorVersion(), 1);
}

}  // namespace
