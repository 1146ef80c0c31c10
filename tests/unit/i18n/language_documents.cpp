// The three documents: where they come from, how they are waited for, what is done without them.
//
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <functional>
#include <stdexcept>
#include <vector>

#include "platform/window/form.h"
#include "tests/unit/i18n/language_files.h"

namespace {

using fake::TheWorld;
using modI18N2::TheState;
using ::testing::ElementsAre;

constexpr const char* kFallingBack = R"(<language id="de" fallback="en"/>)";

class LanguageDocuments : public unit::Localised {
 protected:
  static void WriteAll() {
    WriteLanguages(kFallingBack);
    WriteTexts(unit::Item("Yes", {{"de", "Ja"}}));
    WriteSettings(unit::Item("Speech.Voice1", {{"de", "Anna"}}));
  }
};

TEST_F(LanguageDocuments, AreLoadedAtTheStart) {
  WriteAll();
  StartIn("de");
  EXPECT_TRUE(TheState().initialised);
  EXPECT_TRUE(TheState().languageList);
  EXPECT_TRUE(TheState().applicationLanguage);
  EXPECT_TRUE(TheState().productSettings);
  EXPECT_EQ(modI18N2::GetText("Yes"), "Ja");
  EXPECT_EQ(modI18N2::GetLanguageSetting("Speech.Voice1", 1, ""), "Anna");
}

TEST_F(LanguageDocuments, AreLoadedOneAfterTheOther) {
  WriteAll();
  // What has been read at the end of each round of events.
  std::vector<std::size_t> read;
  std::function<void()> look = [&] {
    if (read.empty() || read.back() != TheWorld().journal.size()) {
      read.push_back(TheWorld().journal.size());
    }
    TheWorld().events.push_back(look);
    throw std::runtime_error("enough for this round");
  };
  TheWorld().events.push_back(look);
  StartIn("de");
  EXPECT_THAT(TheWorld().journal,
              ElementsAre("Load " + ProgramFolder() + "\\Languages.xml",
                          "Load " + ParvixBase() + "\\Settings.xml",
                          "Load " + ProgramFolder() + "\\VelorVoiceSetup.Language.xml"));
  EXPECT_THAT(read, ElementsAre(1, 2, 3));
}

TEST_F(LanguageDocuments, AreEachWaitedForHoweverLongOneTakes) {
  WriteAll();
  // Far more rounds than one call of PumpEvents handles for each document.
  for (int i = 0; i < 1000; ++i) {
    TheWorld().events.push_back([] { throw std::runtime_error("a handler failed"); });
  }
  StartIn("de");
  EXPECT_EQ(modI18N2::GetText("Yes"), "Ja");
}

TEST_F(LanguageDocuments, LetEventHandlersUseLocalisationWhileTheyLoad) {
  WriteAll();
  bool initialised = false;
  std::string text = "not asked";
  TheWorld().events.push_back([&] {
    initialised = TheState().initialised;
    text = modI18N2::GetText("Yes");
  });
  StartIn("de");
  EXPECT_TRUE(initialised);
  EXPECT_EQ(text, "");
  EXPECT_EQ(modI18N2::GetText("Yes"), "Ja");
}

TEST_F(LanguageDocuments, TakeTheSettingsFromTheInstalledEditionOfParvix) {
  TheWorld().WriteFile(ParvixBase() + "Plus\\installed.ini", "");
  TheWorld().WriteFile(ParvixBase() + "Plus\\Settings.xml",
                       ItemsDocument(unit::Item("Speech.Voice1", {{"de", "Paul"}})));
  WriteSettings(unit::Item("Speech.Voice1", {{"de", "Anna"}}));
  StartIn("de");
  EXPECT_EQ(modI18N2::GetLanguageSetting("Speech.Voice1", 1, ""), "Paul");
}

TEST_F(LanguageDocuments, AreLoadedOnce) {
  WriteAll();
  StartIn("de");
  WriteTexts(unit::Item("Yes", {{"de", "Jawohl"}}));
  Start();
  EXPECT_EQ(modI18N2::GetText("Yes"), "Ja");
}

TEST_F(LanguageDocuments, DropOnlyTheOneThatIsMissing) {
  StartIn("de");
  EXPECT_TRUE(TheState().initialised);
  EXPECT_FALSE(TheState().languageList);
  EXPECT_FALSE(TheState().productSettings);
  EXPECT_FALSE(TheState().applicationLanguage);
  TheState() = {};
  WriteTexts("");
  StartIn("de");
  EXPECT_FALSE(TheState().languageList);
  EXPECT_FALSE(TheState().productSettings);
  EXPECT_TRUE(TheState().applicationLanguage);
}

TEST_F(LanguageDocuments, DropTheOneThatIsMalformed) {
  WriteAll();
  TheWorld().WriteFile(ParvixBase() + "\\Settings.xml", "<settings>");
  StartIn("de");
  EXPECT_TRUE(TheState().languageList);
  EXPECT_FALSE(TheState().productSettings);
  EXPECT_TRUE(TheState().applicationLanguage);
}

TEST_F(LanguageDocuments, DropTheOneWithADocumentTypeDeclaration) {
  WriteAll();
  WriteProgramFile("Languages.xml", "<!DOCTYPE languages><languages/>");
  StartIn("de");
  EXPECT_FALSE(TheState().languageList);
  EXPECT_TRUE(TheState().productSettings);
}

TEST_F(LanguageDocuments, LeaveTheCurrentLanguageEmptyWithoutALanguageList) {
  WriteTexts("");
  StartIn("de");
  EXPECT_EQ(TheState().current.language, "");
  EXPECT_EQ(modI18N2::GetLanguage1(), "de");
  EXPECT_EQ(modI18N2::GetPrimaryLanguage(), "de");
}

TEST_F(LanguageDocuments, LeaveTheCurrentLanguageEmptyWithAMalformedLanguageList) {
  WriteProgramFile("Languages.xml", "<languages><language id='de'></languages>");
  StartIn("de");
  EXPECT_EQ(TheState().current.language, "");
}

TEST_F(LanguageDocuments, LeaveEnglishTextsWithoutALanguageList) {
  WriteTexts(unit::Item("Yes", {{"de", "Ja"}, {"en", "Yes indeed"}}));
  StartIn("de");
  EXPECT_EQ(modI18N2::GetText("Yes"), "Yes indeed");
}

TEST_F(LanguageDocuments, LeaveNoTargetsAndNoFallbacksWithoutALanguageList) {
  StartIn("de", "fr");
  modI18N2::ResolveLanguagePair("de", "fr");
  EXPECT_THAT(TheState().translateTargets, ElementsAre("de", "fr"));
  EXPECT_EQ(TheState().firstChain.fallback, "");
  EXPECT_EQ(TheState().current.fallback, "");
}

class CalledTooEarly : public LanguageDocuments {};

TEST_F(CalledTooEarly, LoadsTheLanguageFileOfParvix) {
  WriteAll();
  WriteProgramFile("Parvix.Language.xml",
                   ItemsDocument(unit::Item("Yes", {{"en", "Yes of Parvix"}})));
  EXPECT_EQ(modI18N2::GetText("Yes"), "Yes of Parvix");
  EXPECT_EQ(TheState().applicationLanguageFileName, "Parvix.Language.xml");
}

TEST_F(CalledTooEarly, LeavesAnErrorRecord) {
  modI18N2::GetText("Yes");
  ASSERT_TRUE(TheState().lastError);
  EXPECT_EQ(TheState().lastError->number, 0x80040AF1U);
  EXPECT_EQ(TheState().lastError->description,
            "Called something in modI18N2 before calling InitI18N.");
  EXPECT_EQ(TheState().lastError->source, "modI18N2.Initialise()");
}

TEST_F(CalledTooEarly, LeavesNoErrorRecordInTheUsualOrder) {
  WriteAll();
  StartIn("de");
  modI18N2::GetText("Yes");
  EXPECT_FALSE(TheState().lastError);
}

TEST_F(CalledTooEarly, LeavesNoErrorRecordWhenTheDocumentsAreMissing) {
  StartIn("de");
  EXPECT_FALSE(TheState().lastError);
}

TEST_F(CalledTooEarly, KeepsTheDocumentsThroughALaterStart) {
  WriteAll();
  WriteProgramFile("Parvix.Language.xml",
                   ItemsDocument(unit::Item("Yes", {{"de", "Ja von Parvix"}})));
  modI18N2::Initialise();
  StartIn("de", "fr");
  EXPECT_EQ(modI18N2::GetText("Yes"), "Ja von Parvix");
  EXPECT_EQ(TheState().applicationLanguageFileName, "VelorVoiceSetup.Language.xml");
}

TEST_F(CalledTooEarly, TakesTheLanguagesOfALaterStart) {
  WriteAll();
  modI18N2::Initialise();
  StartIn("de", "fr");
  EXPECT_EQ(modI18N2::GetLanguage1(), "de");
  EXPECT_EQ(modI18N2::GetLanguage2(), "fr");
  EXPECT_EQ(TheState().current.language, "de");
}

TEST_F(CalledTooEarly, HasNoConfiguredLanguage) {
  EXPECT_EQ(modI18N2::GetLanguage1(), "");
  EXPECT_EQ(modI18N2::GetLanguage2(), "");
  EXPECT_EQ(modI18N2::GetPrimaryLanguage(), "");
}

class FirstUse : public LanguageDocuments {};

TEST_F(FirstUse, OfEveryCheckedOperationLoadsTheDocuments) {
  platform::Form form("frmSelect", 100, 100);
  const std::vector<std::pair<const char*, std::function<void()>>> operations = {
      {"SetLanguage", [] { modI18N2::SetLanguage("de"); }},
      {"ResolveFallbacks", [] { modI18N2::ResolveFallbacks(); }},
      {"DetectLocaleLanguage", [] { modI18N2::DetectLocaleLanguage(); }},
      {"GetLanguage1", [] { modI18N2::GetLanguage1(); }},
      {"GetLanguage2", [] { modI18N2::GetLanguage2(); }},
      {"GetPrimaryLanguage", [] { modI18N2::GetPrimaryLanguage(); }},
      {"PumpEvents", [] { modI18N2::PumpEvents(); }},
      {"GetText", [] { modI18N2::GetText("Yes"); }},
      {"GetText of nothing", [] { modI18N2::GetText(""); }},
      {"GetLanguageSetting", [] { modI18N2::GetLanguageSetting("Speech.Voice1", 1, ""); }},
      {"TranslateForm", [&] { modI18N2::TranslateForm(form, 0); }},
      {"GetLanguageFont", [] { modI18N2::GetLanguageFont(); }},
      {"GetLanguageCharset", [] { modI18N2::GetLanguageCharset(); }},
      {"IsRightToLeft", [] { modI18N2::IsRightToLeft(); }},
  };
  WriteAll();
  for (const auto& [name, operation] : operations) {
    SCOPED_TRACE(name);
    TheState() = {};
    operation();
    EXPECT_TRUE(TheState().initialised);
    EXPECT_TRUE(TheState().languageList);
  }
}

TEST_F(FirstUse, OfThePairAndOfTheLanguageNodeLoadsNothing) {
  WriteAll();
  modI18N2::ResolveLanguagePair("de", "fr");
  EXPECT_FALSE(modI18N2::FindLanguageNode());
  EXPECT_FALSE(TheState().initialised);
  EXPECT_FALSE(TheState().languageList);
}

TEST(PumpEvents, HandlesWaitingEventsOneHundredTimesInARow) {
  fake::Reset();
  modI18N2::TheState() = {};
  TheState().initialised = true;
  int handled = 0;
  // A handler that fails ends its round, so that each round handles one.
  for (int i = 0; i < 103; ++i) {
    TheWorld().events.push_back([&] {
      ++handled;
      throw std::runtime_error("a handler failed");
    });
  }
  modI18N2::PumpEvents();
  EXPECT_EQ(handled, 100);
  fake::Reset();
  modI18N2::TheState() = {};
}

}  // namespace
