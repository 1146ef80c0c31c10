// The window from creation to its end: both documents in every order, the failure path, the prompt.
//
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

#include "app/frmSelect.h"
#include "app/modXPStyle.h"
#include "tests/unit/app/window_test.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class Window : public WindowTest {
 protected:
  static auto TimesNavigatedToThePage() {
    return std::ranges::count(World().journal, "Navigate " + PagePath());
  }

  static std::vector<std::string> JournalSince(std::size_t begin) {
    const auto& journal = World().journal;
    return {journal.begin() + static_cast<std::ptrdiff_t>(begin), journal.end()};
  }
};

TEST_F(Window, RegistersTheCommonControlsOnce) {
  Start();
  ASSERT_EQ(World().commonControls.size(), 1U);
  EXPECT_EQ(World().commonControls[0].recordSize, 8U);
  EXPECT_EQ(World().commonControls[0].classes, 0x200U);
}

TEST_F(Window, OpensAlsoWhenTheCommonControlsFail) {
  World().commonControlsFail = true;
  Start();
  EXPECT_TRUE(HasWindow());
  EXPECT_THAT(World().messages, IsEmpty());
}

TEST_F(Window, TellsWhetherTheCommonControlsCouldBeAsked) {
  EXPECT_TRUE(modXPStyle::InitCommonControlsXP());
  World().commonControlsFail = true;
  EXPECT_FALSE(modXPStyle::InitCommonControlsXP());
}

TEST_F(Window, HasTheDesignedControls) {
  Start();
  EXPECT_EQ(fake::ControlNamed("picLogo").kind, "PictureBox");
  EXPECT_EQ(fake::ControlNamed("webOptions").kind, "WebBrowser");
  EXPECT_EQ(Button().kind, "CommandButton");
  EXPECT_EQ(Status().kind, "Label");
  EXPECT_EQ(Button().Where().width, 1215);
  EXPECT_EQ(Button().Where().height, 495);
  EXPECT_LT(fake::ControlNamed("picLogo").Where().width, fake::TheForm().clientWidth);
}

TEST_F(Window, CallsTheButtonInstallWithoutATranslation) {
  World().WriteFile(InProgramFolder("VelorVoiceSetup.Language.xml"), "<texts/>");
  Start();
  EXPECT_EQ(Button().caption, "Install");
}

TEST_F(Window, CannotInstallBeforeAVoiceIsTicked) {
  Start();
  EXPECT_FALSE(Button().enabled);
  EXPECT_EQ(Status().caption, "");
}

TEST_F(Window, KnowsTheCataloguesAddress) { EXPECT_EQ(GetCatalogueURL(), kCatalogueAddress); }

TEST_F(Window, CallsTheWaitPageByWhatTheStatusLineSaysAndAnnouncesIt) {
  World().WriteFile(InProgramFolder("VelorVoiceSetup.Language.xml"),
                    "<texts><contents>" +
                        TextItem("frmSelect.lblStatus.Caption", "Just a moment", "Moment noch") +
                        "</contents></texts>");
  Speak("de");
  Start();
  EXPECT_EQ(Status().caption, "Moment noch");
  EXPECT_EQ(Browser().busyText, "Moment noch");
  EXPECT_THAT(Status().announced, ElementsAre("Moment noch"));
}

TEST_F(Window, ShowsTheWaitPageWhileTheCatalogueLoads) {
  Start();
  EXPECT_THAT(Browser().shown, ElementsAre(InProgramFolder("wait.htm")));
  EXPECT_FALSE(IsPageBuilt());
}

TEST_F(Window, DoesNotCheckForTheWaitPage) {
  ASSERT_FALSE(World().HasFile(InProgramFolder("wait.htm")));
  Start();
  CatalogueArrives(TwoVoices());
  EXPECT_THAT(Browser().shown, ElementsAre(InProgramFolder("wait.htm"), PagePath()));
}

TEST_F(Window, BuildsThePageWhenTheCatalogueArrivesAndThereIsNoQueue) {
  Start();
  CatalogueArrives(TwoVoices());
  EXPECT_EQ(TimesNavigatedToThePage(), 1);
  EXPECT_THAT(Page(), HasSubstr("<label for='check12'>English (UK) Anna</label>"));
  EXPECT_THAT(Page(), HasSubstr("60MB"));
  EXPECT_THAT(Page(), Not(HasSubstr("checked")));
}

TEST_F(Window, TakesAFolderInTheQueuesPlaceForNoQueue) {
  World().WriteFile(QueuePath() + "\\file", "");
  Start();
  CatalogueArrives(TwoVoices());
  EXPECT_TRUE(IsPageBuilt());
}

TEST_F(Window, TicksWhatAnEarlierRunQueued) {
  WriteQueue("<queue><item>40</item></queue>");
  Start();
  CatalogueArrives(TwoVoices());
  EXPECT_EQ(TimesNavigatedToThePage(), 1);
  EXPECT_THAT(Page(), HasSubstr("'check12'><td"));
  EXPECT_THAT(Page(), HasSubstr("'check40' checked ><td"));
}

TEST_F(Window, WaitsForTheQueueWhenTheCatalogueArrivesFirst) {
  WriteQueue("<queue><item>40</item></queue>");
  modMain::Main();
  fake::FinishLoad(kCatalogueAddress, TwoVoices());
  EXPECT_FALSE(IsPageBuilt());
  fake::HandleEvents();
  EXPECT_EQ(TimesNavigatedToThePage(), 1);
  EXPECT_THAT(Page(), HasSubstr("'check40' checked ><td"));
}

TEST_F(Window, WaitsForTheCatalogueWhenTheQueueArrivesFirst) {
  WriteQueue("<queue><item>40</item></queue>");
  Start();
  EXPECT_FALSE(IsPageBuilt());
  EXPECT_TRUE(HasWindow());
  CatalogueArrives(TwoVoices());
  EXPECT_TRUE(IsPageBuilt());
}

TEST_F(Window, IgnoresAMalformedQueue) {
  WriteQueue("<queue><item>40</item>");
  Start();
  CatalogueArrives(TwoVoices());
  EXPECT_THAT(Page(), Not(HasSubstr("checked")));
  EXPECT_THAT(World().messages, IsEmpty());
}

TEST_F(Window, IgnoresAMalformedQueueThatArrivesLast) {
  WriteQueue("<queue><item>40</item>");
  modMain::Main();
  fake::FinishLoad(kCatalogueAddress, TwoVoices());
  EXPECT_FALSE(IsPageBuilt());
  fake::HandleEvents();
  EXPECT_EQ(TimesNavigatedToThePage(), 1);
  EXPECT_THAT(Page(), Not(HasSubstr("checked")));
  EXPECT_THAT(World().messages, IsEmpty());
}

TEST_F(Window, IgnoresAQueueThatCannotBeRead) {
  WriteQueue("<queue><item>40</item></queue>");
  World().unreadable = {QueuePath()};
  modMain::Main();
  CatalogueArrives(TwoVoices());
  EXPECT_THAT(Page(), Not(HasSubstr("checked")));
  EXPECT_THAT(World().messages, IsEmpty());
}

TEST_F(Window, TicksTheDefaultVoicesOfBothConfiguredLanguages) {
  SetDefaultVoices("Vendor Anna_Full_22kHz", "VW Berta - Velor");
  Start();
  CatalogueArrives(Catalogue(Product("1", "Anna") + Product("2", "Berta") + Product("3", "Clara")));
  EXPECT_THAT(Page(), HasSubstr("'check1' checked ><td"));
  EXPECT_THAT(Page(), HasSubstr("'check2' checked ><td"));
  EXPECT_THAT(Page(), HasSubstr("'check3'><td"));
  EXPECT_THAT(Page(), HasSubstr("id='defaultVoiceMessage'>These speak already.</p>"));
}

TEST_F(Window, TakesDanielForTheDefaultVoiceWhereParvixHasNone) {
  Start();
  CatalogueArrives(Catalogue(Product("1", "Daniel") + Product("2", "Anna")));
  EXPECT_THAT(Page(), HasSubstr("'check1' checked ><td"));
  EXPECT_THAT(Page(), HasSubstr("'check2'><td"));
}

TEST_F(Window, OffersTheSwedishVoicesWhenSwedishIsTheFirstConfiguredLanguage) {
  Speak("sv");
  Start();
  CatalogueArrives(Catalogue(Product("1", "Erik")));
  EXPECT_THAT(Page(), HasSubstr("'check1'"));
}

TEST_F(Window, DropsTheSwedishVoicesForOtherLanguages) {
  Start();
  CatalogueArrives(Catalogue(Product("1", "Erik") + Product("2", "Anna")));
  EXPECT_THAT(Page(), Not(HasSubstr("Erik")));
}

TEST_F(Window, ListsInstalledVoices) {
  Install("40");
  Start();
  CatalogueArrives(TwoVoices());
  EXPECT_THAT(Page(), HasSubstr("<h2 style=\"font-weight:normal\">On this computer</h2>"));
  EXPECT_THAT(Page(), Not(HasSubstr("id='check40'")));
}

TEST_F(Window, OffersEverythingWithoutWindowsInstaller) {
  World().installedProducts.reset();
  Start();
  EXPECT_TRUE(fake::TheForm().visible);
  CatalogueArrives(TwoVoices());
  EXPECT_THAT(Page(), HasSubstr("'check12'"));
  EXPECT_THAT(Page(), HasSubstr("'check40'"));
  EXPECT_THAT(World().messages, IsEmpty());
}

TEST_F(Window, HidesReportsRunsTheCommandPromptsAndGoesWhenTheCatalogueFails) {
  Start("PARVIX###reader.exe /voices");
  const auto before = World().journal.size();
  CatalogueFails();
  EXPECT_THAT(JournalSince(before), ElementsAre("Hide", std::string("Message ") + kFailure,
                                                "RunCommandLine reader.exe /voices",
                                                std::string("Message ") + kPrompt, "Gone"));
  EXPECT_FALSE(HasWindow());
}

TEST_F(Window, TakesAMalformedCatalogueForAFailedOne) {
  Start();
  CatalogueArrives("<catalogue><product>");
  EXPECT_THAT(MessageTexts(), ElementsAre(kFailure, kPrompt));
  EXPECT_FALSE(HasWindow());
  EXPECT_FALSE(IsPageBuilt());
}

TEST_F(Window, TitlesItsMessagesWithTheProgramsName) {
  Start();
  CatalogueFails();
  ASSERT_EQ(World().messages.size(), 2U);
  for (const auto& message : World().messages) {
    EXPECT_EQ(message.title, "Velor Voice Setup");
    EXPECT_FALSE(message.rightToLeft);
  }
}

TEST_F(Window, WritesItsMessagesFromRightToLeftWhereTheLanguageIs) {
  Speak("ar");
  Start();
  CatalogueFails();
  ASSERT_EQ(World().messages.size(), 2U);
  for (const auto& message : World().messages) EXPECT_TRUE(message.rightToLeft);
}

TEST_F(Window, ShowsTheKeysOfMessagesWithoutATranslation) {
  World().WriteFile(InProgramFolder("VelorVoiceSetup.Language.xml"), "<texts/>");
  Start();
  CatalogueFails();
  EXPECT_THAT(MessageTexts(), ElementsAre("Failed to access Velor Software website. Please check "
                                          "your Internet connection.",
                                          "Get more voices prompt"));
}

TEST_F(Window, ShowsEmptyMessagesWithoutALanguageFile) {
  World().WriteFile(InProgramFolder("VelorVoiceSetup.Language.xml"), "no document");
  Start();
  CatalogueFails();
  EXPECT_THAT(MessageTexts(), ElementsAre("", ""));
  EXPECT_FALSE(HasWindow());
}

TEST_F(Window, StartsNothingWithoutAFallbackCommand) {
  Start();
  CatalogueFails();
  EXPECT_THAT(World().commandLines, IsEmpty());
  EXPECT_THAT(MessageTexts(), ElementsAre(kFailure, kPrompt));
}

TEST_F(Window, StartsTheFallbackCommandOnce) {
  Start("PARVIX###reader.exe");
  CatalogueFails();
  EXPECT_THAT(World().commandLines, ElementsAre("reader.exe"));
}

TEST_F(Window, GoesAlsoWhenTheFallbackCommandDoesNotStart) {
  World().startingFails = true;
  Start("PARVIX###reader.exe");
  CatalogueFails();
  EXPECT_THAT(MessageTexts(), ElementsAre(kFailure, kPrompt));
  EXPECT_FALSE(HasWindow());
}

TEST_F(Window, DoesNotStartTheFallbackCommandWhenTheCatalogueArrives) {
  Start("PARVIX###reader.exe");
  CatalogueArrives(TwoVoices());
  CloseWindow();
  EXPECT_THAT(World().commandLines, IsEmpty());
}

TEST_F(Window, BuildsNoPageForAQueueThatArrivesWhileTheFailureIsShown) {
  WriteQueue("<queue></queue>");
  modMain::Main();
  World().whileMessageIsShown = [] { fake::HandleEvents(); };
  fake::FailLoad(kCatalogueAddress);
  fake::HandleEvents();
  EXPECT_FALSE(IsPageBuilt());
  EXPECT_THAT(MessageTexts(), ElementsAre(kFailure, kPrompt));
}

TEST_F(Window, GoesOnceWhenTheSystemClosesItWhileTheFailureIsShown) {
  Start("PARVIX###reader.exe");
  World().whileMessageIsShown = [] {
    World().whileMessageIsShown = nullptr;
    CloseWindow();  // and the window's owner lets go of it
  };
  CatalogueFails();
  EXPECT_THAT(MessageTexts(), ElementsAre(kFailure, kPrompt));
  EXPECT_THAT(World().commandLines, ElementsAre("reader.exe"));
  EXPECT_FALSE(HasWindow());
}

TEST_F(Window, PromptsWhenItIsClosedWhileWaiting) {
  Start();
  CloseWindow();
  EXPECT_THAT(MessageTexts(), ElementsAre(kPrompt));
  EXPECT_FALSE(HasWindow());
}

TEST_F(Window, PromptsWhenItIsClosedWithNoVoiceInstalled) {
  ShowVoices(TwoVoices());
  Tick("12");
  Wait();
  CloseWindow();
  EXPECT_THAT(MessageTexts(), ElementsAre(kPrompt));
  EXPECT_EQ(World().messages.at(0).title, "Velor Voice Setup");
}

TEST_F(Window, PromptsBeforeItGoes) {
  Start();
  bool seen = false;
  World().whileMessageIsShown = [&] { seen = fake::TheForm().visible; };
  CloseWindow();
  EXPECT_TRUE(seen);
}

TEST_F(Window, PromptsOnceWhenItIsClosedAgainMeanwhile) {
  Start();
  World().whileMessageIsShown = [] { fake::TheForm().Close(); };
  CloseWindow();
  EXPECT_EQ(World().messages.size(), 1U);
}

TEST_F(Window, DoesNotPromptWhenAVoiceIsInstalled) {
  Install("40");
  ShowVoices(TwoVoices());
  CloseWindow();
  EXPECT_THAT(World().messages, IsEmpty());
  EXPECT_FALSE(HasWindow());
}

TEST_F(Window, PromptsWhenWhatIsInstalledIsNotInTheCatalogue) {
  Install("99");
  ShowVoices(TwoVoices());
  CloseWindow();
  EXPECT_THAT(MessageTexts(), ElementsAre(kPrompt));
}

TEST_F(Window, GivesUpTheCatalogueBeforeThePromptIsShown) {
  Start("PARVIX###reader.exe");
  std::size_t loads = 1;
  World().whileMessageIsShown = [&] {
    loads = World().pendingLoads.size();
    fake::HandleEvents();
  };
  CloseWindow();
  EXPECT_EQ(loads, 0U);
  EXPECT_THAT(MessageTexts(), ElementsAre(kPrompt));
  EXPECT_THAT(World().commandLines, IsEmpty());
  EXPECT_FALSE(IsPageBuilt());
}

TEST_F(Window, DoesNothingForAQueueThatArrivesWhileThePromptIsShown) {
  WriteQueue("<queue></queue>");
  modMain::Main();
  fake::FinishLoad(kCatalogueAddress, TwoVoices());
  World().whileMessageIsShown = [] { fake::HandleEvents(); };
  fake::TheForm().Close();
  fake::HandleEvents();
  EXPECT_EQ(World().messages.size(), 1U);
  EXPECT_FALSE(IsPageBuilt());
}

TEST_F(Window, DoesNotAskThePageWhileThePromptIsShown) {
  ShowVoices(TwoVoices());
  int timesRead = -1;
  World().whileMessageIsShown = [&] {
    fake::Pass(2000);
    timesRead = Browser().timesRead;
  };
  CloseWindow();
  EXPECT_EQ(timesRead, 0);
}

TEST_F(Window, IsReleasedWhenItHasGone) {
  Start();
  const std::weak_ptr<fake::Form> form = World().loadedForms.at(0);
  ASSERT_FALSE(form.expired());
  CloseWindow();
  EXPECT_TRUE(form.expired());
}

}  // namespace
