// What stands behind a language: fallbacks, the pair of configured languages, the user's locale,
// the element that the current language's looks are taken from.
//
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "tests/unit/i18n/language_files.h"

namespace {

using fake::TheWorld;
using modI18N2::LanguageChain;
using modI18N2::TheState;
using ::testing::ElementsAre;

// Of a program without configuration, which has loaded its documents.
class Resolution : public unit::Localised {
 protected:
  static void Load(const std::string& elements) {
    WriteLanguages(elements);
    modI18N2::Initialise();
    ASSERT_TRUE(TheState().languageList);
  }

  static void ExpectChain(const LanguageChain& chain, const std::string& language,
                          const std::string& fallback, const std::string& secondFallback) {
    EXPECT_EQ(chain.language, language);
    EXPECT_EQ(chain.fallback, fallback);
    EXPECT_EQ(chain.secondFallback, secondFallback);
  }
};

constexpr const char* kLongChain =
    R"(<language id="xx" fallback="yy"/><language id="yy" fallback="zz"/>)"
    R"(<language id="zz" fallback="en"/><language id="en"/>)";

class Fallbacks : public Resolution {
 protected:
  static void Resolve(const std::string& language) {
    TheState().current.language = language;
    modI18N2::ResolveFallbacks();
  }
};

TEST_F(Fallbacks, FormAChainOfThreeLanguagesAtMost) {
  Load(kLongChain);
  Resolve("xx");
  ExpectChain(TheState().current, "xx", "yy", "zz");
}

TEST_F(Fallbacks, EndWhereALanguageNamesNone) {
  Load(R"(<language id="xx" fallback="yy"/><language id="yy"/>)");
  Resolve("xx");
  ExpectChain(TheState().current, "xx", "yy", "");
}

TEST_F(Fallbacks, EndAtALanguageThatTheListLacks) {
  Load(R"(<language id="xx" fallback="absent"/>)");
  Resolve("xx");
  ExpectChain(TheState().current, "xx", "absent", "");
}

TEST_F(Fallbacks, AreNoneForALanguageThatTheListLacks) {
  Load(kLongChain);
  Resolve("XX");
  ExpectChain(TheState().current, "XX", "", "");
}

TEST_F(Fallbacks, AreForgottenWhenTheNextLanguageHasNone) {
  Load(R"(<language id="xx" fallback="yy"/><language id="yy" fallback="zz"/><language id="de"/>)");
  Resolve("xx");
  Resolve("de");
  ExpectChain(TheState().current, "de", "", "");
}

TEST_F(Fallbacks, AreNoneForALanguageThatBreaksTheQuery) {
  Load(kLongChain);
  Resolve("xx");
  Resolve("x'x");
  ExpectChain(TheState().current, "x'x", "", "");
}

TEST_F(Fallbacks, StayAsTheyAreWithoutALanguageList) {
  TheState().initialised = true;
  TheState().current = {"xx", "yy", "zz"};
  modI18N2::ResolveFallbacks();
  ExpectChain(TheState().current, "xx", "yy", "zz");
}

TEST_F(Fallbacks, AreThoseOfTheFirstElementOfALanguage) {
  Load(R"(<language id="xx" fallback="yy"/><language id="xx" fallback="zz"/>)");
  Resolve("xx");
  ExpectChain(TheState().current, "xx", "yy", "");
}

TEST_F(Fallbacks, AreLookedUpAmongTheElementsBelowTheRootAlone) {
  Load(R"(<group><language id="xx" fallback="yy"/></group>)");
  Resolve("xx");
  ExpectChain(TheState().current, "xx", "", "");
}

class CaseSensitiveMark : public Fallbacks {
 protected:
  static std::string ChainMarkedAt(const std::string& id) {
    std::string elements = kLongChain;
    const std::string element = "id=\"" + id + "\"";
    return elements.replace(elements.find(element), element.size(),
                            element + " caseSensitive=\"false\"");
  }
};

TEST_F(CaseSensitiveMark, IsNotSetAtFirst) {
  Load(kLongChain);
  Resolve("xx");
  EXPECT_FALSE(TheState().caseSensitive);
}

TEST_F(CaseSensitiveMark, IsSetByAnyValueOnAnyLanguageOfTheChain) {
  for (const char* id : {"xx", "yy", "zz"}) {
    SCOPED_TRACE(id);
    TheState() = {};
    Load(ChainMarkedAt(id));
    Resolve("xx");
    EXPECT_TRUE(TheState().caseSensitive);
  }
}

TEST_F(CaseSensitiveMark, IsSetByAnEmptyValue) {
  Load(R"(<language id="xx" caseSensitive=""/>)");
  Resolve("xx");
  EXPECT_TRUE(TheState().caseSensitive);
}

TEST_F(CaseSensitiveMark, IsNotSetByAFourthLanguage) {
  Load(R"(<language id="1" fallback="2"/><language id="2" fallback="3"/>)"
       R"(<language id="3" fallback="4"/><language id="4" caseSensitive="true"/>)");
  Resolve("1");
  EXPECT_FALSE(TheState().caseSensitive);
}

TEST_F(CaseSensitiveMark, IsNeverCleared) {
  Load(R"(<language id="xx" caseSensitive="1"/><language id="de"/>)");
  Resolve("xx");
  Resolve("de");
  EXPECT_TRUE(TheState().caseSensitive);
}

class CurrentLanguage : public Resolution {};

TEST_F(CurrentLanguage, IsTheFirstConfiguredOneWhateverIsSet) {
  WriteLanguages(R"(<language id="de" fallback="en"/><language id="fr" fallback="sv"/>)");
  StartIn("de", "fr");
  modI18N2::SetLanguage("fr");
  ExpectChain(TheState().current, "de", "en", "");
}

TEST_F(CurrentLanguage, IsTheOneThatIsSetWhereNoneIsConfigured) {
  Load(R"(<language id="fr" fallback="sv"/>)");
  modI18N2::SetLanguage("fr");
  ExpectChain(TheState().current, "fr", "sv", "");
}

TEST_F(CurrentLanguage, IsNotSetWithoutALanguageList) {
  modI18N2::SetLanguage("fr");
  EXPECT_EQ(TheState().current.language, "");
}

TEST_F(CurrentLanguage, ReplacesTheOneThatTheLocaleLedTo) {
  WriteLanguages(R"(<language id="sv" localeID="1024"/><language id="de"/>)");
  StartIn("de");
  EXPECT_EQ(TheState().current.language, "de");
}

class LanguagePair : public Resolution {
 protected:
  static constexpr const char* kPairs =
      R"(<language id="a" fallback="a2" translateTo="at"/><language id="a2" fallback="a3"/>)"
      R"(<language id="a3" fallback="a4"/>)"
      R"(<language id="b" fallback="b2" translateTo="bt"/><language id="b2" fallback="b3"/>)"
      R"(<language id="b3" fallback="b4"/><language id="alone"/>)";
};

TEST_F(LanguagePair, IsRecordedWithTheChainsOfBoth) {
  Load(kPairs);
  modI18N2::ResolveLanguagePair("a", "b");
  ExpectChain(TheState().firstChain, "a", "a2", "a3");
  ExpectChain(TheState().secondChain, "b", "b2", "b3");
}

TEST_F(LanguagePair, HasNoLastLinkForTheSecondWhereTheFirstHasNoFallback) {
  Load(kPairs);
  modI18N2::ResolveLanguagePair("alone", "b");
  ExpectChain(TheState().firstChain, "alone", "", "");
  ExpectChain(TheState().secondChain, "b", "b2", "");
}

TEST_F(LanguagePair, HasNoLinksForASecondWithoutFallback) {
  Load(kPairs);
  modI18N2::ResolveLanguagePair("a", "alone");
  ExpectChain(TheState().firstChain, "a", "a2", "a3");
  ExpectChain(TheState().secondChain, "alone", "", "");
}

TEST_F(LanguagePair, RecordsWhatTheLanguagesAreTranslatedTo) {
  Load(kPairs);
  modI18N2::ResolveLanguagePair("a", "b");
  EXPECT_THAT(TheState().translateTargets, ElementsAre("at", "bt"));
}

TEST_F(LanguagePair, IsTranslatedToItselfWhereNothingElseIsSaid) {
  Load(kPairs);
  modI18N2::ResolveLanguagePair("alone", "absent");
  EXPECT_THAT(TheState().translateTargets, ElementsAre("alone", "absent"));
}

TEST_F(LanguagePair, TakesAnEmptyTranslationTargetAsItStands) {
  Load(R"(<language id="a" translateTo=""/>)");
  modI18N2::ResolveLanguagePair("a", "b");
  EXPECT_THAT(TheState().translateTargets, ElementsAre("", "b"));
}

TEST_F(LanguagePair, ForgetsTheChainsOfAnEarlierPair) {
  Load(kPairs);
  modI18N2::ResolveLanguagePair("a", "b");
  modI18N2::ResolveLanguagePair("alone", "alone");
  ExpectChain(TheState().firstChain, "alone", "", "");
  ExpectChain(TheState().secondChain, "alone", "", "");
}

TEST_F(LanguagePair, ChangesTheLanguagesAloneWithoutALanguageList) {
  TheState().firstChain = {"x", "x2", "x3"};
  TheState().secondChain = {"y", "y2", "y3"};
  modI18N2::ResolveLanguagePair("a", "b");
  ExpectChain(TheState().firstChain, "a", "x2", "x3");
  ExpectChain(TheState().secondChain, "b", "y2", "y3");
  EXPECT_THAT(TheState().translateTargets, ElementsAre("a", "b"));
}

TEST_F(LanguagePair, LeavesTheCurrentLanguageAlone) {
  Load(kPairs);
  TheState().current = {"x", "x2", "x3"};
  modI18N2::ResolveLanguagePair("a", "b");
  ExpectChain(TheState().current, "x", "x2", "x3");
}

TEST_F(LanguagePair, IsIncompleteAtANormalStart) {
  WriteLanguages(kPairs);
  StartIn("a", "b");
  ExpectChain(TheState().firstChain, "a", "", "");
  ExpectChain(TheState().secondChain, "b", "", "");
  EXPECT_THAT(TheState().translateTargets, ElementsAre("a", "b"));
  ExpectChain(TheState().current, "a", "a2", "a3");
}

TEST_F(LanguagePair, IsCompleteWhenTheDocumentsWereLoadedBeforeTheStart) {
  Load(kPairs);
  StartIn("a", "b");
  ExpectChain(TheState().firstChain, "a", "a2", "a3");
  ExpectChain(TheState().secondChain, "b", "b2", "b3");
  EXPECT_THAT(TheState().translateTargets, ElementsAre("at", "bt"));
}

class LocaleLanguage : public Resolution {
 protected:
  LocaleLanguage() { TheWorld().countryName = "Sweden"; }

  static void Expect(const std::string& language, std::int32_t locale) {
    EXPECT_EQ(modI18N2::DetectLocaleLanguage(), locale);
    EXPECT_EQ(TheState().current.language, language);
  }
};

TEST_F(LocaleLanguage, IsDetectedWhenTheListIsLoaded) {
  Load(R"(<language id="sv" localeID="1024" fallback="da"/>)");
  ExpectChain(TheState().current, "sv", "da", "");
}

TEST_F(LocaleLanguage, IsTheOneWithTheDesignatorOfTheUsersLocale) {
  Load(R"(<language id="sv" localeID="1024"/>)");
  Expect("sv", 1024);
}

TEST_F(LocaleLanguage, IsTheOneWithZeroWhereNoneHasTheDesignator) {
  Load(R"(<language id="sv" localeID="0"/>)");
  Expect("sv", 0);
}

TEST_F(LocaleLanguage, PrefersTheDesignatorToZero) {
  Load(R"(<language id="sv" localeID="0"/><language id="de" localeID="1024"/>)");
  Expect("de", 1024);
}

TEST_F(LocaleLanguage, IsEnglishWhereTheListHasNeither) {
  Load(R"(<language id="sv" localeID="1053"/><language id="us" localeID="1033"/>)"
       R"(<language id="en" fallback="en-gb"/>)");
  Expect("en", 1033);
  ExpectChain(TheState().current, "en", "en-gb", "");
}

TEST_F(LocaleLanguage, ComparesTheNumberAsText) {
  Load(R"(<language id="sv" localeID="01024"/><language id="de" localeID="00"/>)"
       R"(<language id="fr" localeID=" 0"/>)");
  Expect("en", 1033);
}

TEST_F(LocaleLanguage, IsEnglishWhereTheLocaleNamesNoCountry) {
  TheWorld().countryName = "";
  Load(R"(<language id="sv" localeID="1024"/><language id="en" fallback="en-gb"/>)");
  Expect("en", 1033);
  ExpectChain(TheState().current, "en", "en-gb", "");
}

TEST_F(LocaleLanguage, IsEmptyForAnElementWithoutAnId) {
  Load(R"(<language localeID="1024"/>)");
  Expect("", 1024);
}

class LanguageNode : public Resolution {
 protected:
  /// The name of the element that is found.
  static std::string Found(const LanguageChain& chain) {
    TheState().current = chain;
    const platform::XmlNode node = modI18N2::FindLanguageNode();
    return node ? node.Attribute("name").value_or("without name") : "none";
  }
};

TEST_F(LanguageNode, IsThatOfTheCurrentLanguage) {
  Load(R"(<language id="en" name="1"/><language id="de" name="2"/>)");
  EXPECT_EQ(Found({"de", "", ""}), "2");
}

TEST_F(LanguageNode, IsThatOfAFallbackWhereTheListLacksTheLanguage) {
  Load(R"(<language id="fr" name="1"/><language id="en" name="2"/>)");
  EXPECT_EQ(Found({"de", "en", ""}), "2");
  EXPECT_EQ(Found({"de", "da", "en"}), "2");
}

TEST_F(LanguageNode, IsTheFirstInTheListAndNotInTheChain) {
  Load(R"(<language id="en" name="1"/><language id="da" name="2"/><language id="de" name="3"/>)");
  EXPECT_EQ(Found({"de", "da", "en"}), "1");
  EXPECT_EQ(Found({"de", "da", ""}), "2");
}

TEST_F(LanguageNode, IsNotAnElementWithAnEmptyIdWhereFallbacksAreEmpty) {
  Load(R"(<language id="" name="1"/><language id="de" name="2"/>)");
  EXPECT_EQ(Found({"de", "", ""}), "2");
}

TEST_F(LanguageNode, IsNoneWhereTheListHasNoLanguageOfTheChain) {
  Load(R"(<language id="fr" name="1"/><language id="DE" name="2"/>)");
  EXPECT_EQ(Found({"de", "da", "en"}), "none");
}

TEST_F(LanguageNode, IsNoneForALanguageThatBreaksTheQuery) {
  Load(R"(<language id="de" name="1"/>)");
  EXPECT_EQ(Found({"d'e", "de", ""}), "none");
}

TEST_F(LanguageNode, IsNoneWithoutALanguageList) { EXPECT_EQ(Found({"de", "", ""}), "none"); }

}  // namespace
