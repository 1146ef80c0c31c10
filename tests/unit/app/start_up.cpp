// From the entry point to the window: order, the one instance, the switch.
//
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <algorithm>

#include "app/modMain.h"
#include "tests/unit/app/window_test.h"

namespace {

using modMain::FallbackCommandFrom;
using testing::ElementsAre;
using testing::IsEmpty;

class StartUp : public WindowTest {
 protected:
  static void StartSecondInstance(const std::string& arguments = "") {
    World().previousInstance = true;
    Start(arguments);
  }
};

TEST_F(StartUp, ShowsTheWindow) {
  Start();
  ASSERT_TRUE(HasWindow());
  EXPECT_TRUE(fake::TheForm().visible);
  EXPECT_EQ(fake::TheForm().name, "frmSelect");
  EXPECT_THAT(World().activated, IsEmpty());
  EXPECT_THAT(World().messages, IsEmpty());
}

TEST_F(StartUp, LoadsTheTextsOfThisProgram) {
  Start();
  EXPECT_EQ(modI18N2::TheState().applicationLanguageFileName, "VelorVoiceSetup.Language.xml");
  EXPECT_EQ(fake::TheForm().caption, "Get voices");
  EXPECT_EQ(Button().caption, "Get them");
}

TEST_F(StartUp, GoesFromTextsToWaitPageCatalogueQueueAndInstallerAndThenShows) {
  WriteQueue("<queue></queue>");
  Start();
  const auto& journal = World().journal;
  ASSERT_GE(journal.size(), 3U);
  EXPECT_EQ(journal[2], "Load " + InProgramFolder("VelorVoiceSetup.Language.xml"));
  EXPECT_THAT(std::vector(journal.begin() + 3, journal.end()),
              ElementsAre("InitCommonControls", "Navigate " + InProgramFolder("wait.htm"),
                          std::string("Load ") + kCatalogueAddress, "Load " + QueuePath(),
                          "WindowsInstaller", "Show"));
}

TEST_F(StartUp, NamesTheWindowByItsKeyWithoutATranslation) {
  World().WriteFile(InProgramFolder("VelorVoiceSetup.Language.xml"), "<texts/>");
  Start();
  EXPECT_EQ(fake::TheForm().caption, "frmSelect.Caption");
}

TEST_F(StartUp, ShowsTheWindowWithoutLanguageFilesAndReportsNothing) {
  World().WriteFile(InProgramFolder("Languages.xml"), "<languages>");
  World().WriteFile(InProgramFolder("VelorVoiceSetup.Language.xml"), "no document");
  Start();
  ASSERT_TRUE(HasWindow());
  EXPECT_TRUE(fake::TheForm().visible);
  EXPECT_EQ(Button().caption, "Install");
  EXPECT_THAT(World().messages, IsEmpty());
  EXPECT_EQ(fake::TheForm().caption, "Velor Voice Setup");  // as designed
}

TEST_F(StartUp, BringsTheWindowOfTheFirstInstanceToTheFront) {
  World().otherWindows = {"frmSelect.Caption", "Velor Voice Setup", "Get voices"};
  StartSecondInstance();
  EXPECT_THAT(World().activated, ElementsAre("Get voices"));
}

TEST_F(StartUp, LooksForTheFirstInstanceByItsTranslatedTitle) {
  Speak("de");
  World().otherWindows = {"Get voices", "Stimmen holen"};
  StartSecondInstance();
  EXPECT_THAT(World().activated, ElementsAre("Stimmen holen"));
}

TEST_F(StartUp, LooksForTheFirstInstanceByTheKeyWithoutATranslation) {
  World().WriteFile(InProgramFolder("VelorVoiceSetup.Language.xml"), "<texts/>");
  World().otherWindows = {"frmSelect.Caption"};
  StartSecondInstance();
  EXPECT_THAT(World().activated, ElementsAre("frmSelect.Caption"));
}

TEST_F(StartUp, MakesNoSecondWindowAndShowsNoMessage) {
  World().otherWindows = {"Get voices"};
  StartSecondInstance();
  EXPECT_FALSE(HasWindow());
  EXPECT_THAT(World().messages, IsEmpty());
  EXPECT_EQ(std::ranges::count(World().journal, std::string("Load ") + kCatalogueAddress), 0);
}

TEST_F(StartUp, EndsAlsoWhenTheFirstInstancesWindowIsNotFound) {
  World().otherWindows = {"Another program"};
  StartSecondInstance();
  EXPECT_FALSE(HasWindow());
  EXPECT_THAT(World().activated, IsEmpty());
  EXPECT_THAT(World().messages, IsEmpty());
}

TEST_F(StartUp, RunsNoLaterStepInASecondInstance) {
  StartSecondInstance("PARVIX###reader.exe");
  EXPECT_EQ(modMain::gFallbackCommand, "");
  EXPECT_THAT(World().commonControls, IsEmpty());
}

TEST_F(StartUp, ReadsTheFallbackCommand) {
  Start("PARVIX###C:\\Tools\\reader.exe /voices");
  EXPECT_EQ(modMain::gFallbackCommand, "C:\\Tools\\reader.exe /voices");
  EXPECT_THAT(World().commandLines, IsEmpty());
}

TEST_F(StartUp, DependsOnNoOtherArgument) {
  Start("/q --help file.xml");
  EXPECT_TRUE(HasWindow());
  EXPECT_EQ(modMain::gFallbackCommand, "");
  CatalogueArrives(TwoVoices());
  EXPECT_TRUE(IsPageBuilt());
}

TEST(FallbackCommand, IsWhatFollowsTheSwitch) {
  EXPECT_EQ(FallbackCommandFrom("PARVIX###C:\\Tools\\reader.exe /voices"),
            "C:\\Tools\\reader.exe /voices");
}

TEST(FallbackCommand, EndsAtTheNextSeparator) {
  EXPECT_EQ(FallbackCommandFrom("PARVIX###first###second"), "first");
}

TEST(FallbackCommand, IsEmptyForASwitchInLowerCase) {
  EXPECT_EQ(FallbackCommandFrom("parvix###C:\\x.exe"), "");
  EXPECT_EQ(FallbackCommandFrom("Parvix###C:\\x.exe"), "");
}

TEST(FallbackCommand, IsFoundBehindASwitchInLowerCase) {
  EXPECT_EQ(FallbackCommandFrom("parvix###PARVIX###C:\\x.exe"), "C:\\x.exe");
}

TEST(FallbackCommand, IsEmptyWhenTextStandsBeforeTheSwitch) {
  EXPECT_EQ(FallbackCommandFrom("/q PARVIX###C:\\x.exe"), "");
}

TEST(FallbackCommand, IsNotTrimmed) {
  EXPECT_EQ(FallbackCommandFrom(" PARVIX###C:\\x.exe"), "");
  EXPECT_EQ(FallbackCommandFrom("PARVIX ###C:\\x.exe"), "");
  EXPECT_EQ(FallbackCommandFrom("PARVIX### C:\\x.exe "), " C:\\x.exe ");
}

TEST(FallbackCommand, IsEmptyWhenNothingFollowsTheSwitch) {
  EXPECT_EQ(FallbackCommandFrom("PARVIX###"), "");
}

TEST(FallbackCommand, IsEmptyWithoutTheSwitch) {
  for (const char* arguments : {"", "PARVIX", "PARVIX##x", "###", "a###b###c", "x###PARVIX"}) {
    EXPECT_EQ(FallbackCommandFrom(arguments), "") << arguments;
  }
}

TEST(FallbackCommand, IsEmptyWhenTheLastPieceAloneIsTheSwitch) {
  EXPECT_EQ(FallbackCommandFrom("parvix###PARVIX"), "");
  EXPECT_EQ(FallbackCommandFrom("parvix###x###PARVIX"), "");
}

TEST(FallbackCommand, FollowsTheFirstOfTwoSwitches) {
  EXPECT_EQ(FallbackCommandFrom("PARVIX###one###PARVIX###two"), "one");
}

TEST(FallbackCommand, MayStandInALaterPiece) {
  EXPECT_EQ(FallbackCommandFrom("/q###PARVIX###two###three"), "two");
}

TEST(FallbackCommand, MayItselfBeTheWordOfTheSwitch) {
  EXPECT_EQ(FallbackCommandFrom("PARVIX###PARVIX"), "PARVIX");
}

TEST(FallbackCommand, IsEmptyBetweenTwoSeparators) {
  EXPECT_EQ(FallbackCommandFrom("PARVIX######x"), "");
}

TEST(FallbackCommand, KeepsASeparatorThatIsTooLong) {
  EXPECT_EQ(FallbackCommandFrom("PARVIX####x"), "#x");
}

}  // namespace
