// The rules that reduce a voice's name, each in its turn.
//
// SPDX-License-Identifier: MIT
#include "catalogue/voice_names.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string Clean(std::string name) { return CleanVoiceName(name); }

/// What is left in the argument itself.
std::string LeftIn(std::string name) {
  CleanVoiceName(name);
  return name;
}

TEST(CleanVoiceName, DropsTheQualityTagAndKeepsTheBlankBeforeIt) {
  EXPECT_EQ(Clean("Serena 22k_HQ"), "Serena ");
}

TEST(CleanVoiceName, DropsEverythingAfterTheFirstQualityTag) {
  EXPECT_EQ(Clean("Anna22k_HQ and 22k_HQ more"), "Anna");
}

TEST(CleanVoiceName, IsDanielForTheQualityTagAlone) { EXPECT_EQ(Clean("22k_HQ"), "Daniel"); }

TEST(CleanVoiceName, IsDanielForAnEmptyName) { EXPECT_EQ(Clean(""), "Daniel"); }

TEST(CleanVoiceName, LooksForTheQualityTagBeforeAnythingElse) {
  EXPECT_EQ(Clean("English (UK) Serena 22k_HQ"), "English (UK) Serena ");
  EXPECT_EQ(Clean("VW Serena - Velor 22k_HQ"), "VW Serena - Velor ");
}

TEST(CleanVoiceName, TellsTheQualityTagByItsLetterCase) {
  EXPECT_EQ(Clean("Serena 22K_HQ"), "22K");
}

TEST(CleanVoiceName, KeepsWhatFollowsTheClosingParenthesis) {
  EXPECT_EQ(Clean("English (UK) Daniel"), "Daniel");
}

TEST(CleanVoiceName, KeepsWhatFollowsTheFirstClosingParenthesis) {
  EXPECT_EQ(Clean("(a) (b) Anna Maria_x"), "(b) Anna Maria_x");
}

TEST(CleanVoiceName, LooksForTheParenthesisBeforeTheMakersName) {
  EXPECT_EQ(Clean("English (UK) Julie - Velor"), "Julie - Velor");
}

TEST(CleanVoiceName, IsDanielWhenNothingFollowsTheParenthesis) {
  EXPECT_EQ(Clean("(x) "), "Daniel");
}

TEST(CleanVoiceName, NeedsABlankAfterTheParenthesis) { EXPECT_EQ(Clean("Anna(x)"), "Anna(x)"); }

TEST(CleanVoiceName, DropsTheMakersNameAndTheWordBefore) {
  EXPECT_EQ(Clean("VW Julie - Velor"), "Julie");
}

TEST(CleanVoiceName, DropsTheMakersNameAlsoFromOneWord) {
  EXPECT_EQ(Clean("Julie - Velor Software"), "Julie");
}

TEST(CleanVoiceName, DropsOneWordOnlyBeforeTheMakersName) {
  EXPECT_EQ(Clean("VW Julie Ann_x - Velor"), "Julie Ann_x");
}

TEST(CleanVoiceName, IsDanielForTheMakersNameAlone) { EXPECT_EQ(Clean(" - Velor"), "Daniel"); }

TEST(CleanVoiceName, TellsTheMakersNameByItsLetterCase) {
  EXPECT_EQ(Clean("Julie - velor"), "velor");
}

TEST(CleanVoiceName, DropsVendorAndEverythingFromTheUnderscore) {
  EXPECT_EQ(Clean("Vendor Daniel_Full_22kHz"), "Daniel");
}

TEST(CleanVoiceName, KeepsASingleWord) { EXPECT_EQ(Clean("Daniel"), "Daniel"); }

TEST(CleanVoiceName, DropsTheFirstTwoWordsOfThree) { EXPECT_EQ(Clean("A B C"), "C"); }

TEST(CleanVoiceName, KeepsTheRestAfterTwoWords) { EXPECT_EQ(Clean("A B C D"), "C D"); }

TEST(CleanVoiceName, CutsAtTheUnderscoreBeforeTheSecondBlankCounts) {
  EXPECT_EQ(Clean("A B_x C"), "B");
  EXPECT_EQ(Clean("A B C_x D"), "C");
}

TEST(CleanVoiceName, LooksForTheUnderscoreAfterTheFirstBlank) { EXPECT_EQ(Clean("A_x B"), "B"); }

TEST(CleanVoiceName, IsDanielWhenTheUnderscoreComesFirst) { EXPECT_EQ(Clean("_x"), "Daniel"); }

TEST(CleanVoiceName, CleansItsArgumentInPlace) {
  EXPECT_EQ(LeftIn("Vendor Daniel_Full_22kHz"), "Daniel");
  EXPECT_EQ(LeftIn("English (UK) Anna"), "Anna");
}

TEST(CleanVoiceName, LeavesTheArgumentEmptyWhereTheAnswerIsDaniel) {
  EXPECT_EQ(LeftIn("22k_HQ"), "");
  EXPECT_EQ(LeftIn("(x) "), "");
  EXPECT_EQ(LeftIn(""), "");
}

TEST(WithoutVendorWords, DropsTheWordsOfTheSuppliers) {
  EXPECT_EQ(WithoutVendorWords("Vocalizer Expressive Daniel Voice"), "Daniel");
  EXPECT_EQ(WithoutVendorWords("RealSpeak Anna Voice"), "Anna");
}

TEST(WithoutVendorWords, DropsEveryOccurrence) {
  EXPECT_EQ(WithoutVendorWords("Vocalizer Vocalizer Expressive Expressive RealSpeak RealSpeak "
                               "Anna Voice Voice"),
            "Anna");
}

TEST(WithoutVendorWords, TellsWordsByTheirLetterCase) {
  EXPECT_EQ(WithoutVendorWords("vocalizer expressive realspeak Anna voice"),
            "vocalizer expressive realspeak Anna voice");
}

TEST(WithoutVendorWords, NeedsTheBlankThatBelongsToAWord) {
  EXPECT_EQ(WithoutVendorWords("VoiceAnna RealSpeak"), "VoiceAnna RealSpeak");
  EXPECT_EQ(WithoutVendorWords("Anna Vocalizer"), "Anna Vocalizer");
}

TEST(WithoutVendorWords, DropsAWordAlsoFromInsideAnother) {
  EXPECT_EQ(WithoutVendorWords("Anna Voices"), "Annas");
}

TEST(WithoutVendorWords, GoesThroughTheWordsInTheirOrder) {
  // What an earlier word leaves behind, a later one finds; never the other way round.
  EXPECT_EQ(WithoutVendorWords("Vocal Voiceizer Anna"), "Anna");
  EXPECT_EQ(WithoutVendorWords("Anna VoVocalizer ice"), "Anna Voice");
  EXPECT_EQ(WithoutVendorWords("ExpreVocalizer ssive Anna"), "Anna");
  EXPECT_EQ(WithoutVendorWords("RealExpressive Speak Anna"), "Anna");
  EXPECT_EQ(WithoutVendorWords("VocalExpressive izer Anna"), "Vocalizer Anna");
  EXPECT_EQ(WithoutVendorWords("ExpresRealSpeak sive Anna"), "Expressive Anna");
}

TEST(WithoutVendorWords, KeepsAnEmptyName) { EXPECT_EQ(WithoutVendorWords(""), ""); }

}  // namespace
