// The text for a key: which language wins, and what the options of the lookup do.
//
// SPDX-License-Identifier: MIT
#include "tests/unit/i18n/language_files.h"

namespace {

using modI18N2::GetLanguageSetting;
using modI18N2::GetText;
using modI18N2::TheState;
using unit::Item;

class TextLookup : public unit::Localised {
 protected:
  TextLookup() {
    WriteLanguages(R"(<language id="de"/><language id="sv" fallback="da"/>)"
                   R"(<language id="da" fallback="nb"/><language id="lb" fallback="en"/>)"
                   R"(<language id="fr" fallback="it"/><language id="it" fallback="es"/>)");
  }

  /// The text of "Key" with these contents for the language.
  static std::string TextIn(
      const std::string& language,
      std::initializer_list<std::pair<std::string_view, std::string_view>> contents) {
    TheState() = {};
    WriteTexts(Item("Key", contents));
    StartIn(language);
    return GetText("Key");
  }

  static std::string Padded(const std::string& key) {
    return GetText(key, true, false, "1", false);
  }
  static std::string FromSettings(const std::string& key, const std::string& defaultText = "1") {
    return GetText(key, false, true, defaultText, false);
  }
  static std::string InSecondLanguage(const std::string& key) {
    return GetText(key, false, false, "1", true);
  }
};

// Which item

TEST_F(TextLookup, FindsTheItemByItsKey) {
  WriteTexts(Item("One", {{"de", "Eins"}}) + Item("Two", {{"de", "Zwei"}}) +
             Item("Three", {{"de", "Drei"}}));
  StartIn("de");
  EXPECT_EQ(GetText("Two"), "Zwei");
}

TEST_F(TextLookup, AnswersTheKeyItselfWhereItIsAbsent) {
  WriteTexts(Item("One", {{"de", "Eins"}}));
  StartIn("de");
  EXPECT_EQ(GetText("Two"), "Two");
}

TEST_F(TextLookup, AnswersTheKeyOfAnItemWithoutContents) { EXPECT_EQ(TextIn("de", {}), "Key"); }

TEST_F(TextLookup, AnswersNothingForTheEmptyKey) {
  WriteTexts(Item("", {{"de", "Leer"}}));
  WriteSettings(Item("", {{"de", "Leer"}}));
  StartIn("de");
  EXPECT_EQ(GetText(""), "");
  EXPECT_EQ(FromSettings(""), "");
}

TEST_F(TextLookup, TellsLetterCaseOfKeysApart) {
  WriteTexts(Item("KEY", {{"de", "Text"}}));
  StartIn("de");
  EXPECT_EQ(GetText("Key"), "Key");
}

TEST_F(TextLookup, ComparesKeysWithTheirBlanks) {
  WriteTexts(Item(" Key ", {{"de", "Text"}}));
  StartIn("de");
  EXPECT_EQ(GetText("Key"), "Key");
  EXPECT_EQ(GetText(" Key "), "Text");
}

TEST_F(TextLookup, FindsNothingForAKeyWithADoubleQuote) {
  WriteTexts(Item("a\"b", {{"de", "Text"}}));
  StartIn("de");
  EXPECT_EQ(GetText("a\"b"), "a\"b");
}

TEST_F(TextLookup, FindsNothingInALanguageWithADoubleQuote) {
  EXPECT_EQ(TextIn("d\"e", {{"en", "Text"}}), "Key");
}

TEST_F(TextLookup, FindsAKeyWithAnApostrophe) {
  WriteTexts(Item("don't", {{"de", "nicht"}}));
  StartIn("de");
  EXPECT_EQ(GetText("don't"), "nicht");
}

TEST_F(TextLookup, LooksOnlyAtContentsBelowTheRoot) {
  WriteProgramFile(kTextsFile, "<texts><more>" + ItemsDocument(Item("Key", {{"de", "Text"}})) +
                                   "</more>" + Item("Key", {{"de", "Text"}}) + "</texts>");
  StartIn("de");
  EXPECT_EQ(GetText("Key"), "Key");
}

// Which language

TEST_F(TextLookup, TakesTheCurrentLanguage) {
  EXPECT_EQ(TextIn("de", {{"fr", "Oui"}, {"de", "Ja"}}), "Ja");
}

TEST_F(TextLookup, TakesASingleContentInBritishEnglish) {
  EXPECT_EQ(TextIn("de", {{"en-gb", "Yes"}}), "Yes");
}

TEST_F(TextLookup, TakesASingleContentInEnglish) {
  EXPECT_EQ(TextIn("de", {{"en", "Yes"}}), "Yes");
}

TEST_F(TextLookup, TakesNeitherEnglishWhereThereAreBoth) {
  EXPECT_EQ(TextIn("de", {{"en", "Yes"}, {"en-gb", "Quite"}}), "Key");
}

TEST_F(TextLookup, TakesNeitherOfTwoContentsInEnglish) {
  EXPECT_EQ(TextIn("de", {{"en", "Yes"}, {"en", "Yes again"}}), "Key");
}

TEST_F(TextLookup, TakesEnglishAmongBothWhereItIsAFallback) {
  EXPECT_EQ(TextIn("lb", {{"en-gb", "Quite"}, {"en", "Yes"}}), "Yes");
}

TEST_F(TextLookup, TakesEnglishAmongBothWhereItIsTheLanguage) {
  EXPECT_EQ(TextIn("en", {{"en-gb", "Quite"}, {"en", "Yes"}}), "Yes");
  EXPECT_EQ(TextIn("en-gb", {{"en", "Yes"}, {"en-gb", "Quite"}}), "Quite");
}

TEST_F(TextLookup, PassesOverALanguageOutsideTheChain) {
  EXPECT_EQ(TextIn("de", {{"fr", "Oui"}}), "Key");
  EXPECT_EQ(TextIn("de", {{"fr", "Oui"}, {"en", "Yes"}}), "Yes");
}

TEST_F(TextLookup, PrefersTheLanguageToAFallbackThatComesFirst) {
  EXPECT_EQ(TextIn("sv", {{"da", "Jo da"}, {"en", "Yes"}, {"sv", "Ja"}}), "Ja");
}

TEST_F(TextLookup, StopsAtTheFirstContentInTheLanguage) {
  EXPECT_EQ(TextIn("sv", {{"sv", "Ja"}, {"sv", "Ja igen"}, {"da", "Jo da"}}), "Ja");
}

TEST_F(TextLookup, TakesTheLaterOfTwoContentsInTheFallback) {
  EXPECT_EQ(TextIn("sv", {{"da", "Jo"}, {"da", "Jo da"}, {"en", "Yes"}}), "Jo da");
}

TEST_F(TextLookup, PrefersTheFallbackToASecondFallbackThatComesFirst) {
  EXPECT_EQ(TextIn("sv", {{"nb", "Jau"}, {"da", "Jo"}}), "Jo");
}

TEST_F(TextLookup, PrefersTheFallbackToASecondFallbackThatComesLater) {
  EXPECT_EQ(TextIn("sv", {{"da", "Jo"}, {"nb", "Jau"}}), "Jo");
}

TEST_F(TextLookup, TakesTheFirstOfTwoContentsInTheSecondFallback) {
  EXPECT_EQ(TextIn("sv", {{"en", "Yes"}, {"nb", "Jau"}, {"nb", "Jau da"}}), "Jau");
}

TEST_F(TextLookup, TellsLetterCaseOfLanguagesApart) {
  EXPECT_EQ(TextIn("de", {{"DE", "Ja"}, {"en", "Yes"}}), "Yes");
}

TEST_F(TextLookup, MatchesExactlyAlsoUnderTheCaseSensitiveMark) {
  WriteLanguages(R"(<language id="de" caseSensitive="false"/>)");
  EXPECT_EQ(TextIn("de", {{"DE", "Ja"}}), "Key");
  EXPECT_EQ(TextIn("de", {{"de", "Ja"}}), "Ja");
}

TEST_F(TextLookup, ChoosesAmongTheContentsOfAllItemsWithTheKey) {
  WriteTexts(Item("Key", {{"da", "Jo"}}) + Item("Key", {{"sv", "Ja"}}));
  StartIn("sv");
  EXPECT_EQ(GetText("Key"), "Ja");
}

// What the text is

TEST_F(TextLookup, AnswersAllTextInsideTheContent) {
  EXPECT_EQ(TextIn("de", {{"de", "ein <b>fettes</b> Wort"}}), "ein fettes Wort");
}

TEST_F(TextLookup, AnswersTheTextWithoutBlanksAtItsEnds) {
  EXPECT_EQ(TextIn("de", {{"de", "\n  zwei  Worte\t "}}), "zwei  Worte");
}

TEST_F(TextLookup, AnswersAnEmptyTextAsItIs) { EXPECT_EQ(TextIn("de", {{"de", ""}}), ""); }

TEST_F(TextLookup, AnswersNothingForAnyKeyWithoutTheLanguageFile) {
  StartIn("de");
  EXPECT_EQ(GetText("Key"), "");
  EXPECT_EQ(Padded("Key"), "");
}

TEST_F(TextLookup, AnswersNothingForAnyKeyWithAMalformedLanguageFile) {
  WriteProgramFile(kTextsFile, "<texts>");
  StartIn("de");
  EXPECT_EQ(GetText("Key"), "");
}

// Padded

TEST_F(TextLookup, PutsOneBlankOnEachSideOfAPaddedText) {
  WriteTexts(Item("Tight", {{"de", "Text"}}) + Item("Wide", {{"de", "   zwei  Worte  "}}));
  StartIn("de");
  EXPECT_EQ(Padded("Tight"), " Text ");
  EXPECT_EQ(Padded("Wide"), " zwei  Worte ");
}

TEST_F(TextLookup, AnswersNothingForAnAbsentPaddedText) {
  WriteTexts("");
  StartIn("de");
  EXPECT_EQ(Padded("Key"), "");
}

TEST_F(TextLookup, PadsNoEmptyText) {
  WriteTexts(Item("Empty", {{"de", ""}}) + Item("Blank", {{"de", "  "}}));
  StartIn("de");
  EXPECT_EQ(Padded("Empty"), "");
  EXPECT_EQ(Padded("Blank"), "");
}

// From the settings of Parvix

TEST_F(TextLookup, SearchesTheSettingsOfParvixWhenAsked) {
  WriteTexts(Item("Key", {{"de", "aus den Texten"}}));
  WriteSettings(Item("Key", {{"de", "aus den Einstellungen"}}));
  StartIn("de");
  EXPECT_EQ(FromSettings("Key"), "aus den Einstellungen");
  EXPECT_EQ(GetText("Key"), "aus den Texten");
}

TEST_F(TextLookup, AnswersTheDefaultForAnAbsentSetting) {
  WriteTexts(Item("Key", {{"de", "aus den Texten"}}));
  WriteSettings("");
  StartIn("de");
  EXPECT_EQ(FromSettings("Key"), "1");
  EXPECT_EQ(FromSettings("Key", "other"), "other");
}

TEST_F(TextLookup, AnswersTheDefaultWithoutTheSettings) {
  StartIn("de");
  EXPECT_EQ(FromSettings("Key"), "1");
}

TEST_F(TextLookup, SearchesTheSettingsAlsoWithoutTheLanguageFile) {
  WriteSettings(Item("Key", {{"de", "Wert"}}));
  StartIn("de");
  EXPECT_EQ(FromSettings("Key"), "Wert");
}

TEST_F(TextLookup, TakesTheDefaultForSettingsAlone) {
  WriteTexts("");
  StartIn("de");
  EXPECT_EQ(GetText("Key", false, false, "other", false), "Key");
}

TEST_F(TextLookup, AnswersNothingForAnAbsentPaddedSetting) {
  WriteSettings("");
  StartIn("de");
  EXPECT_EQ(GetText("Key", true, true, "other", false), "");
}

// In the second language

TEST_F(TextLookup, SearchesInTheSecondLanguageWhenAsked) {
  WriteTexts(Item("Key", {{"sv", "Ja"}, {"fr", "Oui"}}));
  StartIn("sv", "fr");
  EXPECT_EQ(InSecondLanguage("Key"), "Oui");
  EXPECT_EQ(GetText("Key"), "Ja");
}

TEST_F(TextLookup, FollowsTheFallbacksOfTheSecondLanguage) {
  WriteTexts(Item("Two", {{"en", "Yes"}, {"da", "Jo"}, {"it", "Si"}}) +
             Item("Three", {{"en", "Yes"}, {"nb", "Jau"}, {"es", "Sí"}}));
  StartIn("sv", "fr");
  EXPECT_EQ(InSecondLanguage("Two"), "Si");
  EXPECT_EQ(InSecondLanguage("Three"), "Sí");
}

TEST_F(TextLookup, GoesBackToTheCurrentLanguageWithItsFallbacks) {
  WriteTexts("");
  StartIn("sv", "fr");
  InSecondLanguage("Key");
  EXPECT_EQ(TheState().current.language, "sv");
  EXPECT_EQ(TheState().current.fallback, "da");
  EXPECT_EQ(TheState().current.secondFallback, "nb");
}

TEST_F(TextLookup, RecordsTheCaseSensitiveMarkOfTheSecondLanguage) {
  WriteLanguages(R"(<language id="de"/><language id="fr" caseSensitive=""/>)");
  WriteTexts("");
  StartIn("de", "fr");
  EXPECT_FALSE(TheState().caseSensitive);
  InSecondLanguage("Key");
  EXPECT_TRUE(TheState().caseSensitive);
}

TEST_F(TextLookup, FindsEnglishAloneWhereNoSecondLanguageIsConfigured) {
  WriteTexts(Item("Both", {{"de", "Ja"}, {"en", "Yes"}}) + Item("German", {{"de", "Ja"}}));
  StartIn("de");
  EXPECT_EQ(InSecondLanguage("Both"), "Yes");
  EXPECT_EQ(InSecondLanguage("German"), "German");
}

TEST_F(TextLookup, TakesAllOptionsAtOnce) {
  WriteTexts(Item("Key", {{"fr", "des textes"}}));
  WriteSettings(Item("Key", {{"sv", "svenska"}, {"fr", " deux  mots "}}));
  StartIn("sv", "fr");
  EXPECT_EQ(GetText("Key", true, true, "other", true), " deux  mots ");
  EXPECT_EQ(GetText("Absent", true, true, "other", true), "");
  EXPECT_EQ(GetText("Absent", false, true, "other", true), "other");
}

class LanguageSetting : public unit::Localised {
 protected:
  /// Its languages' chains are known in full: the documents were loaded before the start.
  static void StartComplete(const std::string& first, const std::string& second) {
    WriteLanguages(R"(<language id="a" fallback="a2"/><language id="a2" fallback="a3"/>)"
                   R"(<language id="a3" fallback="a4"/>)"
                   R"(<language id="b" fallback="b2"/><language id="b2" fallback="b3"/>)");
    modI18N2::Initialise();
    StartIn(first, second);
  }

  static std::string Voice(std::int16_t slot) {
    return GetLanguageSetting("Speech.Voice", slot, "");
  }
};

TEST_F(LanguageSetting, IsTheFirstLanguagesForSlotsUpToOne) {
  WriteSettings(Item("Speech.Voice", {{"a", "Anna"}, {"b", "Bert"}}));
  StartIn("a", "b");
  for (const std::int16_t slot : {-1, 0, 1}) EXPECT_EQ(Voice(slot), "Anna") << slot;
}

TEST_F(LanguageSetting, IsTheSecondLanguagesForSlotsFromTwo) {
  WriteSettings(Item("Speech.Voice", {{"a", "Anna"}, {"b", "Bert"}}));
  StartIn("a", "b");
  for (const std::int16_t slot : {2, 3, 100}) EXPECT_EQ(Voice(slot), "Bert") << slot;
}

TEST_F(LanguageSetting, IsTheLanguagesOwnBeforeThatOfAFallback) {
  WriteSettings(Item("Speech.Voice", {{"a3", "Third"}, {"a2", "Second"}, {"a", "First"}}));
  StartComplete("a", "b");
  EXPECT_EQ(Voice(1), "First");
}

TEST_F(LanguageSetting, IsThatOfTheFallbackWhereTheLanguageHasNone) {
  WriteSettings(Item("Speech.Voice", {{"a3", "Third"}, {"a2", "Second"}, {"b2", "Bert"}}));
  StartComplete("a", "b");
  EXPECT_EQ(Voice(1), "Second");
  EXPECT_EQ(Voice(2), "Bert");
}

TEST_F(LanguageSetting, IsThatOfTheSecondFallbackWhereTheFallbackHasNoneEither) {
  WriteSettings(Item("Speech.Voice", {{"a4", "Fourth"}, {"a3", "Third"}, {"b3", "Bert"}}));
  StartComplete("a", "b");
  EXPECT_EQ(Voice(1), "Third");
  EXPECT_EQ(Voice(2), "Bert");
}

TEST_F(LanguageSetting, IsNotThatOfAFourthLanguage) {
  WriteSettings(Item("Speech.Voice", {{"a4", "Fourth"}}));
  StartComplete("a", "b");
  EXPECT_EQ(Voice(1), "");
}

TEST_F(LanguageSetting, IsNotThatOfASecondFallbackWhereThereIsNoFallback) {
  WriteSettings(Item("Speech.Voice", {{"a3", "Third"}}));
  StartIn("a", "b");
  TheState().firstChain.secondFallback = "a3";
  EXPECT_EQ(Voice(1), "");
}

TEST_F(LanguageSetting, IsTheLanguagesOwnOrNothingAtANormalStart) {
  WriteLanguages(R"(<language id="a" fallback="a2"/>)");
  WriteSettings(Item("Speech.Voice", {{"a2", "Second"}}));
  StartIn("a");
  EXPECT_EQ(TheState().current.fallback, "a2");
  EXPECT_EQ(Voice(1), "");
}

TEST_F(LanguageSetting, IsNotThatOfEnglish) {
  WriteSettings(Item("Speech.Voice", {{"en", "Emma"}, {"en-gb", "Eve"}}));
  StartIn("a", "b");
  EXPECT_EQ(Voice(1), "");
}

TEST_F(LanguageSetting, IsEmptyAndNotTheKeyWhereTheItemIsAbsent) {
  WriteSettings(Item("Other", {{"a", "Anna"}}));
  StartIn("a", "b");
  EXPECT_EQ(Voice(1), "");
}

TEST_F(LanguageSetting, IsEmptyWithoutTheSettings) {
  WriteTexts(Item("Speech.Voice", {{"a", "Anna"}}));
  StartIn("a", "b");
  EXPECT_EQ(Voice(1), "");
}

TEST_F(LanguageSetting, IsEmptyWhereNoSecondLanguageIsConfigured) {
  WriteSettings(Item("Speech.Voice", {{"a", "Anna"}}));
  StartIn("a");
  EXPECT_EQ(Voice(2), "");
}

TEST_F(LanguageSetting, IsLookedForInTheFirstItemWithTheKeyAlone) {
  WriteSettings(Item("Speech.Voice", {{"b", "Bert"}}) + Item("Speech.Voice", {{"a", "Anna"}}));
  StartIn("a", "b");
  EXPECT_EQ(Voice(1), "");
  EXPECT_EQ(Voice(2), "Bert");
}

TEST_F(LanguageSetting, IsTheFirstContentInTheLanguage) {
  WriteSettings(Item("Speech.Voice", {{"a", "Anna"}, {"a", "Agnes"}}));
  StartIn("a", "b");
  EXPECT_EQ(Voice(1), "Anna");
}

TEST_F(LanguageSetting, TellsLetterCaseApart) {
  WriteSettings(Item("Speech.Voice", {{"A", "Anna"}}) + Item("speech.voice", {{"a", "Agnes"}}));
  StartIn("a", "b");
  EXPECT_EQ(Voice(1), "");
}

TEST_F(LanguageSetting, DoesNotDependOnTheThirdArgument) {
  WriteSettings(Item("Speech.Voice", {{"a", "Anna"}}));
  StartIn("a", "b");
  EXPECT_EQ(GetLanguageSetting("Speech.Voice", 1, "Bert"), "Anna");
  EXPECT_EQ(GetLanguageSetting("Absent", 1, "Bert"), "");
}

TEST_F(LanguageSetting, FindsNothingForAKeyWithAnApostrophe) {
  WriteSettings(Item("it's", {{"a", "Anna"}}) + Item("a\"b", {{"a", "Agnes"}}));
  StartIn("a", "b");
  EXPECT_EQ(GetLanguageSetting("it's", 1, ""), "");
  EXPECT_EQ(GetLanguageSetting("a\"b", 1, ""), "Agnes");
}

TEST_F(LanguageSetting, GoesOnToTheFallbackOfALanguageThatBreaksTheQuery) {
  WriteSettings(Item("Speech.Voice", {{"a2", "Second"}}));
  StartIn("a", "b");
  TheState().firstChain = {"a'", "a2", ""};
  EXPECT_EQ(Voice(1), "Second");
}

}  // namespace
