// Following the ticks: when the page is asked, and what button and status line make of the answer.
//
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "tests/unit/app/window_test.h"

namespace {

using SelectionStatus = WindowTest;

TEST_F(SelectionStatus, AsksNothingBeforeThePageIsBuilt) {
  Start();
  fake::Pass(5000);
  EXPECT_EQ(Browser().timesRead, 0);
}

TEST_F(SelectionStatus, AsksEveryHalfSecond) {
  ShowVoices(TwoVoices());
  fake::Pass(499);
  EXPECT_EQ(Browser().timesRead, 0);
  fake::Pass(1);
  EXPECT_EQ(Browser().timesRead, 1);
  fake::Pass(499);
  EXPECT_EQ(Browser().timesRead, 1);
  fake::Pass(1);
  EXPECT_EQ(Browser().timesRead, 2);
  fake::Pass(5000);
  EXPECT_EQ(Browser().timesRead, 12);
}

TEST_F(SelectionStatus, AsksNothingWhileThePageIsKnownToBeTheSame) {
  ShowVoices(TwoVoices());
  Wait();
  const int before = Browser().timesRead;
  Browser().tellsOfNoChange = true;
  fake::Pass(5000);
  EXPECT_EQ(Browser().timesRead, before);
  Browser().tellsOfNoChange = false;
  fake::Pass(500);
  EXPECT_EQ(Browser().timesRead, before + 1);
}

TEST_F(SelectionStatus, HasOneQuestionUnderWayAtATime) {
  ShowVoices(TwoVoices());
  fake::GoOff();
  fake::GoOff();
  EXPECT_EQ(Browser().timesRead, 1);
  fake::HandleEvents();
  fake::GoOff();
  EXPECT_EQ(Browser().timesRead, 2);
  fake::HandleEvents();
}

TEST_F(SelectionStatus, SaysNothingWhenNothingIsTicked) {
  ShowVoices(TwoVoices());
  Wait();
  EXPECT_EQ(Status().caption, "");
  EXPECT_FALSE(Button().enabled);
}

TEST_F(SelectionStatus, SpeaksOfOneVoice) {
  ShowVoices(TwoVoices());
  Tick("12");
  Wait();
  EXPECT_EQ(Status().caption, "1 voice chosen, 75MB");
  EXPECT_TRUE(Button().enabled);
}

TEST_F(SelectionStatus, AnnouncesEachChangeAndThatNothingIsSelectedAnyMore) {
  ShowVoices(TwoVoices());
  Wait();
  EXPECT_EQ(Status().announced, std::vector<std::string>());
  Tick("12");
  Wait();
  Wait();
  Tick("12", false);
  Wait();
  EXPECT_EQ(Status().announced,
            (std::vector<std::string>{"1 voice chosen, 75MB", "0 voices chosen, 0MB"}));
}

TEST_F(SelectionStatus, SpeaksOfSeveralVoicesAndTheirSize) {
  ShowVoices(TwoVoices());
  Tick("12");
  Tick("40");
  Wait();
  EXPECT_EQ(Status().caption, "2 voices chosen, 135MB");
  EXPECT_TRUE(Button().enabled);
}

TEST_F(SelectionStatus, PairsBoxesWithVoicesInSortedOrder) {
  ShowVoices(Catalogue(Product("1", "Zoe", "30000000") + Product("2", "Anna", "4000000")));
  Tick("1");
  Wait();
  EXPECT_EQ(Status().caption, "1 voice chosen, 30MB");
}

TEST_F(SelectionStatus, GoesBackToNothing) {
  ShowVoices(TwoVoices());
  Tick("12");
  Wait();
  Tick("12", false);
  Wait();
  EXPECT_EQ(Status().caption, "");
  EXPECT_FALSE(Button().enabled);
}

TEST_F(SelectionStatus, ChangesNothingForATickThatIsTakenBackAtOnce) {
  ShowVoices(TwoVoices());
  Wait();
  const auto captions = Status().timesSet["Caption"];
  const auto states = Button().timesSet["Enabled"];
  Tick("12");
  Tick("12", false);
  Wait();
  EXPECT_EQ(Status().timesSet["Caption"], captions);
  EXPECT_EQ(Button().timesSet["Enabled"], states);
}

TEST_F(SelectionStatus, SetsLabelAndButtonOnlyWhenTheyChange) {
  ShowVoices(TwoVoices());
  fake::Pass(2000);
  const auto captions = Status().timesSet["Caption"];
  const auto states = Button().timesSet["Enabled"];
  Tick("12");
  fake::Pass(2000);
  EXPECT_EQ(Status().timesSet["Caption"], captions + 1);
  EXPECT_EQ(Button().timesSet["Enabled"], states + 1);
  Tick("40");
  fake::Pass(2000);
  EXPECT_EQ(Status().timesSet["Caption"], captions + 2);
  EXPECT_EQ(Button().timesSet["Enabled"], states + 1);
  Tick("12", false);
  Tick("40", false);
  fake::Pass(2000);
  EXPECT_EQ(Status().timesSet["Caption"], captions + 3);
  EXPECT_EQ(Button().timesSet["Enabled"], states + 2);
}

TEST_F(SelectionStatus, SetsNothingWhereNothingIsTickedFromTheStart) {
  Start();
  const auto states = Button().timesSet["Enabled"];
  CatalogueArrives(TwoVoices());
  PageIsShown();
  fake::Pass(2000);
  EXPECT_EQ(Status().timesSet["Caption"], 0);
  EXPECT_EQ(Button().timesSet["Enabled"], states);
}

TEST_F(SelectionStatus, CountsQueuedVoicesFromTheFirstTime) {
  WriteQueue("<queue><item>40</item></queue>");
  ShowVoices(TwoVoices());
  Wait();
  EXPECT_EQ(Status().caption, "1 voice chosen, 60MB");
  EXPECT_TRUE(Button().enabled);
}

TEST_F(SelectionStatus, CountsDefaultVoicesFromTheFirstTime) {
  SetDefaultVoices("Vendor Anna", "Vendor Berta");
  ShowVoices(TwoVoices());
  Wait();
  EXPECT_EQ(Status().caption, "2 voices chosen, 135MB");
}

TEST_F(SelectionStatus, LeavesOutInstalledVoices) {
  Install("12");
  ShowVoices(TwoVoices());
  Wait();
  EXPECT_EQ(Status().caption, "");
  Tick("40");
  Wait();
  EXPECT_EQ(Status().caption, "1 voice chosen, 60MB");
}

TEST_F(SelectionStatus, TriesAgainWhereThePageCannotBeReadYet) {
  ShowVoices(TwoVoices());
  const auto boxes = Browser().inputs;
  Browser().inputs.reset();
  Wait();
  EXPECT_EQ(Status().caption, "");
  EXPECT_FALSE(Button().enabled);
  Browser().inputs = boxes;
  Tick("12");
  Wait();
  EXPECT_EQ(Status().caption, "1 voice chosen, 75MB");
}

TEST_F(SelectionStatus, PassesOverASizeThatOverflowsTheSum) {
  std::string products;
  for (int id = 1; id <= 16; ++id) products += Product(std::to_string(id), "Anna", "2147000000");
  ShowVoices(Catalogue(products));
  for (int id = 1; id <= 16; ++id) Tick(std::to_string(id));
  Wait();
  EXPECT_EQ(Status().caption, "16 voices chosen, 32205MB");
}

TEST_F(SelectionStatus, ShowsTheKeysWithoutATranslation) {
  World().WriteFile(InProgramFolder("VelorVoiceSetup.Language.xml"), "<texts/>");
  ShowVoices(TwoVoices());
  Tick("12");
  Wait();
  EXPECT_EQ(Status().caption, "1 voice, 75MB");
  Tick("40");
  Wait();
  EXPECT_EQ(Status().caption, "2 voices, 135MB");
}

}  // namespace
