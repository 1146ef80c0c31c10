// Promises of platform/system/profile.h: what Windows' own reader of ini files answers.
//
// SPDX-License-Identifier: MIT
#include "platform/system/profile.h"

#include "core/text.h"
#include "tests/contract/services_case.h"

namespace {

using namespace std::string_literals;

class Profile : public ServiceCase {
 protected:
  static constexpr std::size_t kSize = 256;

  /// The value of `key` in section "S" of a file with these bytes.
  static std::string Read(std::string_view bytes, const std::string& key = "k",
                          const std::string& section = "S", std::size_t size = kSize) {
    peer::WriteFile(In("config.ini"), bytes);
    return platform::ReadProfileString(In("config.ini"), section, key, "absent", size);
  }

  static std::string Fallback(const std::string& fallback, std::size_t size = kSize) {
    return platform::ReadProfileString(In("none.ini"), "S", "k", fallback, size);
  }
};

TEST_F(Profile, AnswersTheValue) { EXPECT_EQ(Read("[S]\r\nk=value\r\n"), "value"); }

TEST_F(Profile, AnswersTheDefaultWhenTheFileIsAbsent) { EXPECT_EQ(Fallback("absent"), "absent"); }

TEST_F(Profile, AnswersTheDefaultWhenAFolderStandsThere) {
  peer::MakeFolder(In("none.ini"));
  EXPECT_EQ(Fallback("absent"), "absent");
}

TEST_F(Profile, AnswersTheDefaultWhenTheSectionIsAbsent) {
  EXPECT_EQ(Read("[T]\nk=value\n"), "absent");
}

TEST_F(Profile, AnswersTheDefaultWhenTheKeyIsAbsent) {
  EXPECT_EQ(Read("[S]\nother=value\n[T]\nk=value\n"), "absent");
}

TEST_F(Profile, AnswersTheDefaultForAnEmptyFile) { EXPECT_EQ(Read(""), "absent"); }

TEST_F(Profile, AnswersAnEmptyValueAsEmpty) { EXPECT_EQ(Read("[S]\nk=\n"), ""); }

TEST_F(Profile, FindsTheFileInAnotherLetterCase) {
  peer::WriteFile(In("Config.INI"), "[S]\nk=value\n");
  EXPECT_EQ(platform::ReadProfileString(In("config.ini"), "S", "k", "", kSize), "value");
}

TEST_F(Profile, TellsNoLetterCaseApartInSections) {
  EXPECT_EQ(Read("[i18n]\nk=1", "k", "I18N"), "1");
}

TEST_F(Profile, TellsNoLetterCaseApartInKeys) {
  EXPECT_EQ(Read("[S]\nLANGUAGE1=en", "Language1"), "en");
}

TEST_F(Profile, DropsBlanksAroundNamesAndValues) {
  EXPECT_EQ(Read(" \t[ S ]\n \tk\t =\t a b \t\n"), "a b");
}

TEST_F(Profile, DropsBlanksAroundTheNamesAskedFor) {
  EXPECT_EQ(Read("[S]\nk=1", " k ", " S "), "1");
}

TEST_F(Profile, TakesVerticalTabFormFeedAndCtrlZForBlanks) {
  EXPECT_EQ(Read("[S]\nk=\v\f\x1a"
                 "value\x1a\f\v\n"),
            "value");
}

TEST_F(Profile, DoesNotTakeTheNoBreakSpaceForABlank) {
  EXPECT_EQ(Read("[S]\nk=\xA0value\xA0\n"), "\u00A0value\u00A0");
}

TEST_F(Profile, DropsOnePairOfQuotes) {
  EXPECT_EQ(Read("[S]\nk=\"a b\"\n"), "a b");
  EXPECT_EQ(Read("[S]\nk='a b'\n"), "a b");
  EXPECT_EQ(Read("[S]\nk='\"a\"'\n"), "\"a\"");
}

TEST_F(Profile, KeepsBlanksInsideQuotes) { EXPECT_EQ(Read("[S]\nk= \" a \" \n"), " a "); }

TEST_F(Profile, KeepsQuotesThatDoNotMatch) {
  EXPECT_EQ(Read("[S]\nk=\"a'\n"), "\"a'");
  EXPECT_EQ(Read("[S]\nk=\"\n"), "\"");
  EXPECT_EQ(Read("[S]\nk=a\"\n"), "a\"");
}

TEST_F(Profile, AnswersEmptyForQuotesAroundNothing) { EXPECT_EQ(Read("[S]\nk=\"\"\n"), ""); }

TEST_F(Profile, DropsQuotesAroundTheDefault) { EXPECT_EQ(Fallback("\"a b\""), "a b"); }

TEST_F(Profile, DropsBlanksAtTheEndOfTheDefaultOnly) { EXPECT_EQ(Fallback("  a  "), "  a"); }

TEST_F(Profile, CountsTheFirstSectionOfANameOnly) {
  EXPECT_EQ(Read("[S]\nother=1\n[S]\nk=2\n"), "absent");
  EXPECT_EQ(Read("[S]\nk=1\n[S]\nk=2\n"), "1");
}

TEST_F(Profile, CountsTheFirstKeyOfANameOnly) { EXPECT_EQ(Read("[S]\nk=1\nK=2\n"), "1"); }

TEST_F(Profile, TakesASemicolonInAValueForText) { EXPECT_EQ(Read("[S]\nk=a ; b\n"), "a ; b"); }

TEST_F(Profile, TakesASemicolonBeforeAKeyForAPartOfItsName) {
  EXPECT_EQ(Read("[S]\n;k=1\nk=2\n"), "2");
  EXPECT_EQ(Read("[S]\n;k=1\nk=2\n", ";k"), "1");
}

TEST_F(Profile, PassesOverTextBehindASectionsName) { EXPECT_EQ(Read("[S] ; text\nk=1\n"), "1"); }

TEST_F(Profile, EndsASectionsNameAtTheLastBracket) {
  EXPECT_EQ(Read("[S]]x\nk=1\n", "k", "S]"), "1");
}

TEST_F(Profile, TakesAnOpenBracketWithoutItsOtherForAKey) {
  EXPECT_EQ(Read("[S\nk=1\n"), "absent");
  EXPECT_EQ(Read("[S]\n[T=1\nk=2\n", "[T"), "1");
  EXPECT_EQ(Read("[S]\n[T\nk=2\n"), "2");
}

TEST_F(Profile, HidesLaterLinesOfAKeyThatStandsWithoutEquals) {
  EXPECT_EQ(Read("[S]\nk\nk=1\n"), "absent");
}

TEST_F(Profile, EndsLinesAtEveryKindOfLineEnd) {
  for (const std::string end : {"\n", "\r\n", "\r", "\n\r", "\r\r\n"}) {
    const std::string text = core::ReplaceAll("[S]|j=1|k=2|", "|", end);
    EXPECT_EQ(Read(text), "2") << testing::PrintToString(end);
    EXPECT_EQ(Read(text, "j"), "1") << testing::PrintToString(end);
  }
}

TEST_F(Profile, EndsALineAtACarriageReturnAmongOtherLineEnds) {
  EXPECT_EQ(Read("[S]\r\nj=1\rk=2\nl=3\r\n"), "2");
  EXPECT_EQ(Read("[S]\r\nj=1\rk=2\nl=3\r\n", "j"), "1");
}

TEST_F(Profile, KeepsWhatStandsBeforeTheFirstSectionApart) {
  EXPECT_EQ(Read("k=1\n[S]\nk=2\n"), "2");
}

TEST_F(Profile, ReadsALastLineWithoutALineEnd) { EXPECT_EQ(Read("[S]\nk=1"), "1"); }

TEST_F(Profile, EndsAValueAtANul) { EXPECT_EQ(Read("[S]\nk=a\0b\nj=2\n"s), "a"); }

TEST_F(Profile, GoesOnBehindANul) { EXPECT_EQ(Read("[S]\nk=a\0b\nj=2\n"s, "j"), "2"); }

TEST_F(Profile, EndsNamesAskedForAtANul) {
  EXPECT_EQ(Read("[S]\nk=1\n", "k\0"s, "S\0"s), "1");
  EXPECT_EQ(Fallback("a\0b"s), "a");
}

TEST_F(Profile, ReadsBytesOfTheCodePage) {
  EXPECT_EQ(Read("[S]\nk=\xE5\xE4\xF6 \x80\n"), "\u00e5\u00e4\u00f6 \u20ac");
}

TEST_F(Profile, ReadsUtf8WithAMark) {
  EXPECT_EQ(Read("\xEF\xBB\xBF[S]\nk=\u00f6\u20ac\n"), "\u00f6\u20ac");
}

TEST_F(Profile, ReadsUtf16LittleEndianWithAMark) {
  EXPECT_EQ(Read("\xFF\xFE[\0S\0]\0\n\0k\0=\0\xF6\0\n\0"s), "\u00f6");
}

TEST_F(Profile, ReadsUtf16BigEndianWithAMark) {
  EXPECT_EQ(Read("\xFE\xFF\0[\0S\0]\0\n\0k\0=\0\xF6\0\n"s), "\u00f6");
}

TEST_F(Profile, AnswersAQuestionMarkForWhatTheCodePageLacks) {
  EXPECT_EQ(Read("\xEF\xBB\xBF[S]\nk=a\u4e2d"
                 "b\n"),
            "a?b");
}

TEST_F(Profile, CutsTheValueToTheSizeLessOne) {
  EXPECT_EQ(Read("[S]\nk=abcdef\n", "k", "S", 4), "abc");
  EXPECT_EQ(Read("[S]\nk=abc\n", "k", "S", 4), "abc");
  EXPECT_EQ(Read("[S]\nk=" + std::string(300, 'x') + "\n").size(), 255u);
}

TEST_F(Profile, CutsBytesOfTheCodePageAndNotOfUtf8) {
  EXPECT_EQ(Read("[S]\nk=\xE5\xE4\xF6\n", "k", "S", 3), "\u00e5\u00e4");
}

TEST_F(Profile, CutsTheDefaultToo) { EXPECT_EQ(Fallback("abcdef", 4), "abc"); }

TEST_F(Profile, AnswersNothingForASizeWithoutRoom) {
  EXPECT_EQ(Read("[S]\nk=abc\n", "k", "S", 0), "");
  EXPECT_EQ(Read("[S]\nk=abc\n", "k", "S", 1), "");
}

TEST_F(Profile, SurvivesBytesOfEveryKind) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  EXPECT_EQ(Read(all + "\n[S]\nk=1\n"), "1");
  EXPECT_NO_THROW(Read("\xFF\xFE" + all));
  EXPECT_NO_THROW(
      Read("\xFF\xFE"
           "x"));
  EXPECT_NO_THROW(Read("\xEF\xBB\xBF" + all));
  EXPECT_NO_THROW(Read("\xFE\xFF\xD8\0\xD8\0"s));
}

}  // namespace
