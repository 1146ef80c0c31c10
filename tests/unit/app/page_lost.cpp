// What becomes of the page when the browser's engine ends.
//
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "tests/unit/app/window_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kMinute = 60'000;

class PageLost : public WindowTest {
 protected:
  std::vector<std::string> Shown(int pages) {
    std::vector<std::string> shown(static_cast<std::size_t>(pages), PagePath());
    shown.insert(shown.begin(), InProgramFolder("wait.htm"));
    return shown;
  }
};

TEST_F(PageLost, DisablesInstallAtOnce) {
  WriteQueue("<queue><item>40</item></queue>");
  const std::string queue = World().ReadFile(QueuePath());
  ShowVoices(TwoVoices());
  Tick("12");
  Wait();
  ASSERT_TRUE(Button().enabled);
  Browser().Lose();
  EXPECT_FALSE(Button().enabled);
  PressInstall();
  EXPECT_EQ(World().ReadFile(QueuePath()), queue);
  EXPECT_THAT(World().elevatedRuns, IsEmpty());
}

TEST_F(PageLost, IsLoadedAgainWithTheTicksOfItsFile) {
  WriteQueue("<queue><item>40</item></queue>");
  ShowVoices(TwoVoices());
  Tick("12");
  Wait();
  Browser().Lose();
  EXPECT_EQ(Browser().shown, Shown(2));
  Wait();
  EXPECT_EQ(Status().caption, "");
  PageIsShown();
  Wait();
  EXPECT_EQ(Status().caption, "1 voice chosen, 60MB");
  EXPECT_TRUE(Button().enabled);
}

TEST_F(PageLost, IsLoadedAgainOnceAMinute) {
  ShowVoices(TwoVoices());
  Browser().Lose();
  Browser().Lose();
  fake::Pass(kMinute - 1);
  EXPECT_EQ(Browser().shown, Shown(2));
  fake::Pass(1);
  EXPECT_EQ(Browser().shown, Shown(3));
  Browser().Lose();
  fake::Pass(kMinute - 1);
  EXPECT_EQ(Browser().shown, Shown(3));
  fake::Pass(1);
  EXPECT_EQ(Browser().shown, Shown(4));
}

TEST_F(PageLost, IsLoadedAgainAtOnceWhenAMinuteHasPassed) {
  ShowVoices(TwoVoices());
  Browser().Lose();
  fake::Pass(kMinute);
  EXPECT_EQ(Browser().shown, Shown(2));
  Browser().Lose();
  EXPECT_EQ(Browser().shown, Shown(3));
}

TEST_F(PageLost, IsTheWaitPageWhileTheCatalogueIsUnderWay) {
  Start();
  Browser().Lose();
  EXPECT_THAT(Browser().shown,
              ElementsAre(InProgramFolder("wait.htm"), InProgramFolder("wait.htm")));
  CatalogueArrives(TwoVoices());
  PageIsShown();
  Tick("12");
  Wait();
  EXPECT_EQ(Status().caption, "1 voice chosen, 75MB");
}

TEST_F(PageLost, IsNotLoadedAgainOnceTheWindowCloses) {
  ShowVoices(TwoVoices());
  Browser().Lose();
  Browser().Lose();
  World().whileMessageIsShown = [this] {
    fake::Pass(kMinute);
    EXPECT_EQ(Browser().shown, Shown(2));
  };
  CloseWindow();
  EXPECT_THAT(MessageTexts(), ElementsAre(kPrompt));
}

}  // namespace
