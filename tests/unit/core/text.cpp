// Texts and numbers as the modules take them apart. No platform: the helpers know none.
//
// SPDX-License-Identifier: MIT
#include "core/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

namespace {

using ::testing::ElementsAre;

constexpr std::int16_t kLeast16 = std::numeric_limits<std::int16_t>::min();
constexpr std::int16_t kMost16 = std::numeric_limits<std::int16_t>::max();

TEST(Trim, TakesBlanksFromBothEndsAndKeepsThoseInside) { EXPECT_EQ(core::Trim("  a b  "), "a b"); }

TEST(Trim, LeavesNothingOfATextOfBlanks) {
  EXPECT_EQ(core::Trim("   "), "");
  EXPECT_EQ(core::Trim(""), "");
}

TEST(Trim, TakesOnlyBlanksUnlessToldOtherwise) {
  EXPECT_EQ(core::Trim("\ta\n"), "\ta\n");
  EXPECT_EQ(core::Trim("\t\r\n a \n", core::kXmlBlanks), "a");
}

TEST(Trim, TakesNoBlankThatIsMoreThanOneByte) {
  EXPECT_EQ(core::Trim("\u00A0a\u00A0", core::kXmlBlanks), "\u00A0a\u00A0");
}

TEST(UpperCase, KnowsAsciiLettersAlone) {
  EXPECT_EQ(core::UpperCase("parvix###azAZ09 \u00E4"), "PARVIX###AZAZ09 \u00E4");
}

TEST(ContainsIgnoringCase, FindsAPartInAnyLetterCase) {
  EXPECT_TRUE(core::ContainsIgnoringCase("/q pArViX###x", "PARVIX###"));
  EXPECT_TRUE(core::ContainsIgnoringCase("PARVIX###", "parvix###"));
}

TEST(ContainsIgnoringCase, MissesAPartThatIsNotWhole) {
  EXPECT_FALSE(core::ContainsIgnoringCase("PARVIX##", "PARVIX###"));
  EXPECT_FALSE(core::ContainsIgnoringCase("", "PARVIX###"));
}

TEST(ContainsIgnoringCase, FindsNothingInEveryText) {
  EXPECT_TRUE(core::ContainsIgnoringCase("a", ""));
  EXPECT_TRUE(core::ContainsIgnoringCase("", ""));
}

TEST(ReplaceAll, ReplacesEveryOccurrence) {
  EXPECT_EQ(core::ReplaceAll("a.b.c", ".", "--"), "a--b--c");
  EXPECT_EQ(core::ReplaceAll("a.b.", ".", ""), "ab");
}

TEST(ReplaceAll, DoesNotLookIntoWhatItPutThere) {
  EXPECT_EQ(core::ReplaceAll("aa", "a", "aa"), "aaaa");
}

TEST(ReplaceAll, FindsOverlappingOccurrencesFromLeftToRight) {
  EXPECT_EQ(core::ReplaceAll("aaa", "aa", "b"), "ba");
}

TEST(ReplaceAll, TellsLetterCaseApart) { EXPECT_EQ(core::ReplaceAll("aA", "a", "b"), "bA"); }

TEST(ReplaceAll, FindsNoEmptyPart) { EXPECT_EQ(core::ReplaceAll("ab", "", "x"), "ab"); }

TEST(Split, AnswersTheWholeTextWhereTheSeparatorIsAbsent) {
  EXPECT_THAT(core::Split("a##b", "###"), ElementsAre("a##b"));
  EXPECT_THAT(core::Split("", "###"), ElementsAre(""));
}

TEST(Split, KeepsEmptyPieces) {
  EXPECT_THAT(core::Split("###a######b###", "###"), ElementsAre("", "a", "", "b", ""));
}

TEST(Split, DoesNotTrimThePieces) {
  EXPECT_THAT(core::Split(" a ### b ", "###"), ElementsAre(" a ", " b "));
}

TEST(Split, FindsNoEmptySeparator) { EXPECT_THAT(core::Split("ab", ""), ElementsAre("ab")); }

TEST(NumberFromText, TakesAnOptionalSignAndDecimalDigits) {
  EXPECT_EQ(core::Int32FromText("1033"), 1033);
  EXPECT_EQ(core::Int32FromText("+7"), 7);
  EXPECT_EQ(core::Int32FromText("-12"), -12);
  EXPECT_EQ(core::Int32FromText("007"), 7);
}

TEST(NumberFromText, AllowsBlanksAround) { EXPECT_EQ(core::Int32FromText(" \t\r\n42 \t\r\n"), 42); }

TEST(NumberFromText, RefusesAnythingElse) {
  for (const char* text : {"", " ", "+", "-", "+-1", "-+1", "++1", "--1", "- 1", "1 2", "12a",
                           "a12", "1.0", "1,000", "0x10", "1e3", "\u0663"}) {
    SCOPED_TRACE(text);
    EXPECT_THROW(core::Int32FromText(text), std::runtime_error);
    EXPECT_THROW(core::Int16FromText(text), std::runtime_error);
  }
}

TEST(NumberFromText, ReachesToTheEndsOfItsType) {
  EXPECT_EQ(core::Int32FromText("2147483647"), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(core::Int32FromText("-2147483648"), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(core::Int16FromText("32767"), kMost16);
  EXPECT_EQ(core::Int16FromText("-32768"), kLeast16);
}

TEST(NumberFromText, RefusesANumberBeyondItsType) {
  EXPECT_THROW(core::Int32FromText("2147483648"), std::overflow_error);
  EXPECT_THROW(core::Int32FromText("-2147483649"), std::overflow_error);
  EXPECT_THROW(core::Int16FromText("32768"), std::overflow_error);
  EXPECT_THROW(core::Int16FromText("-32769"), std::overflow_error);
}

TEST(LeadingNumber, TakesTheNumberThatATextBeginsWith) {
  EXPECT_EQ(core::LeadingNumber("2"), 2);
  EXPECT_EQ(core::LeadingNumber("2 and more"), 2);
  EXPECT_EQ(core::LeadingNumber("2.9"), 2);
  EXPECT_EQ(core::LeadingNumber("-3x"), -3);
  EXPECT_EQ(core::LeadingNumber("+4"), 4);
}

TEST(LeadingNumber, PassesOverLeadingBlanks) { EXPECT_EQ(core::LeadingNumber(" \t5"), 5); }

TEST(LeadingNumber, IsNothingWhereATextBeginsWithNone) {
  for (const char* text : {"", "  ", "a1", "-", "+", "- 1", "+-1"}) {
    SCOPED_TRACE(text);
    EXPECT_EQ(core::LeadingNumber(text), 0);
  }
}

TEST(LeadingNumber, EndsAtTheEndsOfItsType) {
  EXPECT_EQ(core::LeadingNumber("32767"), kMost16);
  EXPECT_EQ(core::LeadingNumber("99999999999999999999"), kMost16);
  EXPECT_EQ(core::LeadingNumber("-99999999999999999999"), kLeast16);
}

TEST(Add16, AddsUpToTheEndsOfSixteenBits) {
  EXPECT_EQ(core::Add16(32766, 1), kMost16);
  EXPECT_EQ(core::Add16(-32767, -1), kLeast16);
  EXPECT_EQ(core::Add16(kMost16, kLeast16), -1);
}

TEST(Add16, RefusesASumThatNeedsMore) {
  EXPECT_THROW(core::Add16(kMost16, 1), std::overflow_error);
  EXPECT_THROW(core::Add16(kLeast16, -1), std::overflow_error);
}

}  // namespace
