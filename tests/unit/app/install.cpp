// The Install button: the two files, the installer program, the window's end.
//
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <filesystem>
#include <utility>

#include "tests/unit/app/window_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class InstallButton : public WindowTest {
 protected:
  /// Also while the button is greyed.
  static void PressAnyway() {
    Button().onClick();
    fake::HandleEvents();
  }

  static std::string Queue() { return World().ReadFile(QueuePath()); }
};

TEST_F(InstallButton, WritesBothFilesStartsTheInstallerAndCloses) {
  ShowVoices(TwoVoices());
  Tick("40");
  Wait();
  const auto before = World().journal.size();
  PressInstall();
  const auto& journal = World().journal;
  EXPECT_THAT(std::vector(journal.begin() + static_cast<std::ptrdiff_t>(before), journal.end()),
              ElementsAre("Save " + QueuePath(), "Save " + ProductsPath(),
                          "RunElevated " + InProgramFolder("VelorVoiceInstaller.exe"), "Gone"));
  EXPECT_FALSE(HasWindow());
}

TEST_F(InstallButton, QueuesTheTickedVoices) {
  ShowVoices(TwoVoices());
  Tick("12");
  Tick("40");
  Wait();
  PressInstall();
  EXPECT_EQ(Queue(), "<queue><item>12</item><item>40</item></queue>");
}

TEST_F(InstallButton, QueuesInTheOrderOfThePage) {
  ShowVoices(Catalogue(Product("1", "Zoe") + Product("2", "Clara") + Product("3", "Anna")));
  Tick("1");
  Tick("3");
  Wait();
  PressInstall();
  EXPECT_EQ(Queue(), "<queue><item>3</item><item>1</item></queue>");
}

TEST_F(InstallButton, QueuesWhatIsTickedWhenItIsPressed) {
  ShowVoices(TwoVoices());
  Tick("12");
  Wait();
  Tick("12", false);
  Tick("40");
  PressInstall();
  EXPECT_EQ(Queue(), "<queue><item>40</item></queue>");
}

TEST_F(InstallButton, QueuesNoInstalledVoice) {
  Install("12");
  ShowVoices(TwoVoices());
  Tick("40");
  Wait();
  PressInstall();
  EXPECT_EQ(Queue(), "<queue><item>40</item></queue>");
}

TEST_F(InstallButton, ReplacesAnEarlierQueue) {
  WriteQueue("<queue><item>40</item></queue>");
  ShowVoices(TwoVoices());
  Tick("40", false);
  Tick("12");
  Wait();
  PressInstall();
  EXPECT_EQ(Queue(), "<queue><item>12</item></queue>");
}

TEST_F(InstallButton, FindsWhatItQueuedTickedAtTheNextStart) {
  ShowVoices(TwoVoices());
  Tick("40");
  Wait();
  PressInstall();
  ShowVoices(TwoVoices());
  Wait();
  EXPECT_EQ(Status().caption, "1 voice chosen, 60MB");
}

TEST_F(InstallButton, SavesTheCatalogueAsItCame) {
  const std::string catalogue = "<?xml version=\"1.0\"?>\r\n<catalogue  note='x'>" +
                                Product("12", "Anna") + "<!-- kept -->\n</catalogue>\n";
  ShowVoices(catalogue);
  Tick("12");
  Wait();
  PressInstall();
  EXPECT_EQ(World().ReadFile(ProductsPath()), catalogue);
}

TEST_F(InstallButton, StartsTheInstallerInTheProgramFolder) {
  ShowVoices(TwoVoices());
  Tick("12");
  Wait();
  PressInstall();
  ASSERT_EQ(World().elevatedRuns.size(), 1U);
  EXPECT_EQ(World().elevatedRuns[0].file, InProgramFolder("VelorVoiceInstaller.exe"));
  EXPECT_EQ(World().elevatedRuns[0].workingFolder, World().programFolder);
  EXPECT_THAT(World().commandLines, IsEmpty());
}

TEST_F(InstallButton, ShowsNoPrompt) {
  ShowVoices(TwoVoices());
  Tick("12");
  Wait();
  PressInstall();
  EXPECT_THAT(World().messages, IsEmpty());
}

TEST_F(InstallButton, WritesAnEmptyQueueWhenNothingIsTicked) {
  ShowVoices(TwoVoices());
  PressAnyway();
  EXPECT_EQ(Queue(), "<queue></queue>");
  EXPECT_EQ(World().elevatedRuns.size(), 1U);
  EXPECT_FALSE(HasWindow());
}

TEST_F(InstallButton, WritesAnEmptyQueueWhenThePageCannotBeRead) {
  ShowVoices(TwoVoices());
  Browser().inputs.reset();
  PressAnyway();
  EXPECT_EQ(Queue(), "<queue></queue>");
  EXPECT_EQ(World().elevatedRuns.size(), 1U);
}

TEST_F(InstallButton, DoesNotQueueAVoiceWhoseBoxIsNotFound) {
  ShowVoices(TwoVoices());
  Tick("12");
  Tick("40");
  Browser().inputs->pop_back();
  PressAnyway();
  EXPECT_EQ(Queue(), "<queue><item>12</item></queue>");
}

TEST_F(InstallButton, StartsTheInstallerAlsoWithoutTheCompanysFolder) {
  std::filesystem::remove_all(World().folder.Path() / "ProgramData" / "Velor Software");
  ShowVoices(TwoVoices());
  Tick("12");
  Wait();
  PressInstall();
  EXPECT_FALSE(World().HasFile(CompanyFolder()));
  EXPECT_EQ(World().elevatedRuns.size(), 1U);
  EXPECT_THAT(World().messages, IsEmpty());
  EXPECT_FALSE(HasWindow());
}

TEST_F(InstallButton, ClosesWithoutAMessageWhenTheUserDeclinesElevation) {
  World().startingFails = true;
  ShowVoices(TwoVoices());
  Tick("12");
  Wait();
  PressInstall();
  EXPECT_EQ(World().elevatedRuns.size(), 1U);
  EXPECT_THAT(World().messages, IsEmpty());
  EXPECT_FALSE(HasWindow());
}

TEST_F(InstallButton, KeepsTheEarlierQueueForAnIdThatIsNoXmlText) {
  for (const char* id : {"a&lt;b", "a&amp;b", "7&lt;/item&gt;&lt;item&gt;9", "a&amp;amp;b"}) {
    WriteQueue("<queue><item>earlier</item></queue>");
    ShowVoices(Catalogue(Product(id, "Anna")));
    Browser().inputs->at(0).checked = true;
    const auto runs = World().elevatedRuns.size();
    PressAnyway();
    EXPECT_EQ(Queue(), "<queue><item>earlier</item></queue>") << id;
    EXPECT_TRUE(World().HasFile(ProductsPath())) << id;
    EXPECT_EQ(World().elevatedRuns.size(), runs + 1) << id;
    EXPECT_THAT(World().messages, IsEmpty()) << id;
    EXPECT_FALSE(HasWindow()) << id;
  }
}

TEST_F(InstallButton, WritesNoQueueForAnIdThatIsNoXmlText) {
  ShowVoices(Catalogue(Product("a&lt;b", "Anna")));
  Browser().inputs->at(0).checked = true;
  PressAnyway();
  EXPECT_FALSE(World().HasFile(QueuePath()));
  EXPECT_EQ(World().elevatedRuns.size(), 1U);
}

TEST_F(InstallButton, InstallsOnceWhenItIsPressedTwice) {
  ShowVoices(TwoVoices());
  Tick("12");
  Wait();
  const int timesRead = Browser().timesRead;
  Button().Click();
  Button().Click();
  EXPECT_EQ(Browser().timesRead, timesRead + 1);
  fake::HandleEvents();
  EXPECT_EQ(World().elevatedRuns.size(), 1U);
  EXPECT_FALSE(HasWindow());
}

TEST_F(InstallButton, InstallsWhenTheWindowIsClosedBeforeThePageAnswers) {
  ShowVoices(TwoVoices());
  Tick("12");
  Wait();
  Button().Click();
  CloseWindow();
  EXPECT_EQ(Queue(), "<queue><item>12</item></queue>");
  EXPECT_TRUE(World().HasFile(ProductsPath()));
  EXPECT_EQ(World().elevatedRuns.size(), 1U);
  EXPECT_THAT(World().messages, IsEmpty());
  EXPECT_FALSE(HasWindow());
}

TEST_F(InstallButton, InstallsNothingWhenThePageAnswersOnlyAfterTheLimit) {
  ShowVoices(TwoVoices());
  Tick("12");
  Wait();
  Button().Click();
  // The answer comes while the prompt is shown.
  World().whileMessageIsShown = [answer = std::exchange(World().events, {})] {
    World().events = answer;
    fake::HandleEvents();
  };
  CloseWindow();
  EXPECT_THAT(World().elevatedRuns, IsEmpty());
  EXPECT_FALSE(World().HasFile(QueuePath()));
  EXPECT_THAT(MessageTexts(), ElementsAre(kPrompt));
}

}  // namespace
