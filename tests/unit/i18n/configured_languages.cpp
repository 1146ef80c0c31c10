// Start: which languages are configured, and which of them is current.
//
// SPDX-License-Identifier: MIT
#include "tests/unit/i18n/language_files.h"

namespace {

using fake::TheWorld;
using modI18N2::TheState;

class ConfiguredLanguages : public unit::Localised {
 protected:
  ConfiguredLanguages() {
    WriteLanguages(R"(<language id="de"/><language id="fr"/><language id="en-gb"/>)");
  }

  static void Expect(const std::string& first, const std::string& second, int count) {
    EXPECT_EQ(TheState().configuredLanguages[0], first);
    EXPECT_EQ(TheState().configuredLanguages[1], second);
    EXPECT_EQ(TheState().configuredLanguageCount, count);
    EXPECT_EQ(modI18N2::GetLanguage1(), first);
    EXPECT_EQ(modI18N2::GetLanguage2(), second);
    EXPECT_EQ(modI18N2::GetPrimaryLanguage(), first);
    EXPECT_EQ(TheState().current.language, first);
  }
};

TEST_F(ConfiguredLanguages, AreTheProgramsOwn) {
  StartIn("de", "fr");
  Expect("de", "fr", 2);
}

TEST_F(ConfiguredLanguages, CanBeOneAlone) {
  StartIn("de");
  Expect("de", "", 1);
}

TEST_F(ConfiguredLanguages, AreNotTakenFromParvixWhenTheProgramNamesTheFirst) {
  ConfigureParvix("sv", "fr");
  StartIn("de");
  Expect("de", "", 1);
}

TEST_F(ConfiguredLanguages, ComputeNoDataFolderWhenTheProgramNamesTheFirst) {
  StartIn("de");
  EXPECT_EQ(modPath::gSettingsPath, "");
  EXPECT_FALSE(TheWorld().HasFile(ProgramFolder() + "\\Settings"));
}

TEST_F(ConfiguredLanguages, AreThoseOfParvixWhenTheProgramNamesNone) {
  ConfigureParvix("de", "fr");
  Start();
  Expect("de", "fr", 2);
}

TEST_F(ConfiguredLanguages, AreThoseOfParvixWhenTheProgramNamesOnlyTheSecond) {
  ConfigureParvix("de");
  StartIn("", "fr");
  Expect("de", "", 1);
}

TEST_F(ConfiguredLanguages, AreBritishEnglishWhereNobodyNamesOne) {
  Start();
  Expect("en-gb", "", 1);
}

TEST_F(ConfiguredLanguages, CanHaveASecondBehindBritishEnglish) {
  ConfigureParvix("", "fr");
  Start();
  Expect("en-gb", "fr", 2);
}

TEST_F(ConfiguredLanguages, StandInTheSectionForLocalisation) {
  WriteOwnIni("[Other]\nLanguage1=de\n");
  TheWorld().WriteFile(PortableSettingsFolder() + "\\config.ini", "[Other]\nLanguage1=fr\n");
  Start();
  Expect("en-gb", "", 1);
}

TEST_F(ConfiguredLanguages, KeepASecondOneThatALaterStartDoesNotName) {
  StartIn("de", "fr");
  StartIn("de");
  EXPECT_EQ(TheState().configuredLanguageCount, 1);
  EXPECT_EQ(TheState().configuredLanguages[1], "fr");
}

TEST_F(ConfiguredLanguages, ComeWithTheNameOfTheLanguageFile) {
  modI18N2::InitI18N("Some.Language.xml");
  EXPECT_EQ(TheState().applicationLanguageFileName, "Some.Language.xml");
}

class LanguageIndex : public ConfiguredLanguages {
 protected:
  static void WriteIndexFile(std::string_view text) {
    TheWorld().WriteFile(PortableSettingsFolder() + "\\I18N.ini", text);
  }

  /// The index when the file holds `value`, and Parvix names two languages.
  static int IndexFor(const std::string& value) {
    ConfigureParvix("de", "fr");
    WriteIndexFile("[LanguageIndex]\n1=" + value + "\n");
    Start();
    return TheState().languageIndex;
  }
};

TEST_F(LanguageIndex, IsOneWithoutItsFile) {
  ConfigureParvix("de", "fr");
  Start();
  EXPECT_EQ(TheState().languageIndex, 1);
}

TEST_F(LanguageIndex, IsTheNumberInItsFile) { EXPECT_EQ(IndexFor("2"), 2); }

TEST_F(LanguageIndex, IsTheNumberThatTheTextBeginsWith) { EXPECT_EQ(IndexFor("2 or so"), 2); }

TEST_F(LanguageIndex, IsOneForATextWithoutANumber) { EXPECT_EQ(IndexFor("second"), 1); }

TEST_F(LanguageIndex, IsOneForAnEmptyValue) { EXPECT_EQ(IndexFor(""), 1); }

TEST_F(LanguageIndex, IsAtLeastOne) {
  EXPECT_EQ(IndexFor("0"), 1);
  EXPECT_EQ(IndexFor("-2"), 1);
}

TEST_F(LanguageIndex, IsAtMostTheNumberOfLanguages) {
  EXPECT_EQ(IndexFor("3"), 2);
  EXPECT_EQ(IndexFor("100000"), 2);
}

TEST_F(LanguageIndex, IsOneWhereOneLanguageIsConfigured) {
  ConfigureParvix("de");
  WriteIndexFile("[LanguageIndex]\n1=2\n");
  Start();
  EXPECT_EQ(TheState().languageIndex, 1);
}

TEST_F(LanguageIndex, IsNotReadWithSectionAndKeyTheOtherWayRound) {
  ConfigureParvix("de", "fr");
  WriteIndexFile("[1]\nLanguageIndex=2\n[I18N]\nLanguageIndex=2\n");
  Start();
  EXPECT_EQ(TheState().languageIndex, 1);
}

TEST_F(LanguageIndex, IsReadFromTheSettingsFolderOfTheMoment) {
  modPath::gSettingsPath = TheWorld().specialFolders.at(26);
  TheWorld().WriteFile(modPath::gSettingsPath + "\\I18N.ini", "[LanguageIndex]\n1=2\n");
  StartIn("de", "fr");
  EXPECT_EQ(TheState().languageIndex, 2);
}

TEST_F(LanguageIndex, DoesNotChangeTheCurrentLanguage) {
  EXPECT_EQ(IndexFor("2"), 2);
  EXPECT_EQ(TheState().current.language, "de");
}

TEST_F(LanguageIndex, DoesNotChangeThePairOfLanguages) {
  EXPECT_EQ(IndexFor("2"), 2);
  EXPECT_EQ(TheState().firstChain.language, "de");
  EXPECT_EQ(TheState().secondChain.language, "fr");
}

}  // namespace
