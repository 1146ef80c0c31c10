// Font, character set and direction of the current language.
//
// SPDX-License-Identifier: MIT
#include "tests/unit/i18n/language_files.h"

namespace {

using fake::TheWorld;
using modI18N2::GetLanguageCharset;
using modI18N2::GetLanguageFont;
using modI18N2::IsRightToLeft;
using modI18N2::IsVistaOrLater;

class Appearance : public unit::Localised {
 protected:
  /// Starts in "de", whose element has these attributes.
  static void StartWith(const std::string& attributes) {
    modI18N2::TheState() = {};
    WriteLanguages("<language id=\"de\" " + attributes + "/>");
    StartIn("de");
  }

  static int CharsetOf(const std::string& value) {
    StartWith("charset=\"" + value + "\"");
    return GetLanguageCharset();
  }

  static bool RightToLeftFor(const std::string& value) {
    StartWith("direction=\"" + value + "\"");
    return IsRightToLeft();
  }
};

class SystemVersion : public Appearance {};

TEST_F(SystemVersion, IsVistaOrLaterFromSix) {
  for (const int version : {6, 7, 10}) {
    TheWorld().systemMajorVersion = version;
    EXPECT_TRUE(IsVistaOrLater()) << version;
  }
}

TEST_F(SystemVersion, IsEarlierBelowSix) {
  for (const int version : {0, 4, 5}) {
    TheWorld().systemMajorVersion = version;
    EXPECT_FALSE(IsVistaOrLater()) << version;
  }
}

TEST_F(SystemVersion, IsEarlierWhereTheSystemDoesNotSay) {
  TheWorld().systemMajorVersion.reset();
  EXPECT_FALSE(IsVistaOrLater());
}

class LanguageFont : public Appearance {};

TEST_F(LanguageFont, IsTheNewerFaceFromVersionSix) {
  TheWorld().systemMajorVersion = 6;
  StartWith(R"(font="Old" vistaFont="New")");
  EXPECT_EQ(GetLanguageFont(), "New");
}

TEST_F(LanguageFont, IsTheOlderFaceBelowVersionSix) {
  TheWorld().systemMajorVersion = 5;
  StartWith(R"(font="Old" vistaFont="New")");
  EXPECT_EQ(GetLanguageFont(), "Old");
}

TEST_F(LanguageFont, IsTheOlderFaceWhereTheSystemDoesNotSayItsVersion) {
  TheWorld().systemMajorVersion.reset();
  StartWith(R"(font="Old" vistaFont="New")");
  EXPECT_EQ(GetLanguageFont(), "Old");
}

TEST_F(LanguageFont, IsSegoeUiWhereTheNewerFaceIsMissingOrEmpty) {
  TheWorld().systemMajorVersion = 6;
  StartWith(R"(font="Old")");
  EXPECT_EQ(GetLanguageFont(), "Segoe UI");
  StartWith(R"(font="Old" vistaFont="")");
  EXPECT_EQ(GetLanguageFont(), "Segoe UI");
}

TEST_F(LanguageFont, IsTahomaWhereTheOlderFaceIsMissingOrEmpty) {
  TheWorld().systemMajorVersion = 5;
  StartWith(R"(vistaFont="New")");
  EXPECT_EQ(GetLanguageFont(), "Tahoma");
  StartWith(R"(vistaFont="New" font="")");
  EXPECT_EQ(GetLanguageFont(), "Tahoma");
}

TEST_F(LanguageFont, IsTheDefaultWhereTheListLacksTheLanguage) {
  WriteLanguages(R"(<language id="fr" font="Old" vistaFont="New"/>)");
  StartIn("de");
  EXPECT_EQ(GetLanguageFont(), "Segoe UI");
  TheWorld().systemMajorVersion = 5;
  EXPECT_EQ(GetLanguageFont(), "Tahoma");
}

TEST_F(LanguageFont, IsTheDefaultWithoutALanguageList) {
  StartIn("de");
  EXPECT_EQ(GetLanguageFont(), "Segoe UI");
}

TEST_F(LanguageFont, IsThatOfTheFirstElementOfTheChain) {
  WriteLanguages(R"(<language id="en" vistaFont="English face"/>)"
                 R"(<language id="de" vistaFont="German face" fallback="en"/>)");
  StartIn("de");
  EXPECT_EQ(GetLanguageFont(), "English face");
}

class Charset : public Appearance {};

TEST_F(Charset, IsTheNumberOfTheLanguage) {
  EXPECT_EQ(CharsetOf("177"), 177);
  EXPECT_EQ(CharsetOf("0"), 0);
  EXPECT_EQ(CharsetOf("-1"), -1);
  EXPECT_EQ(CharsetOf("+177"), 177);
  EXPECT_EQ(CharsetOf(" 177 "), 177);
  EXPECT_EQ(CharsetOf("32767"), 32767);
}

TEST_F(Charset, IsZeroForATextThatIsNoNumber) {
  for (const char* value : {"abc", "", "177x", "0x10", "1.5"}) {
    SCOPED_TRACE(value);
    EXPECT_EQ(CharsetOf(value), 0);
  }
}

TEST_F(Charset, IsZeroForANumberBeyondSixteenBits) {
  EXPECT_EQ(CharsetOf("32768"), 0);
  EXPECT_EQ(CharsetOf("-32769"), 0);
}

TEST_F(Charset, IsZeroWhereTheAttributeTheElementOrTheListIsMissing) {
  StartWith("");
  EXPECT_EQ(GetLanguageCharset(), 0);
  modI18N2::TheState() = {};
  WriteLanguages(R"(<language id="fr" charset="177"/>)");
  StartIn("de");
  EXPECT_EQ(GetLanguageCharset(), 0);
  modI18N2::TheState() = {};
  WriteProgramFile("Languages.xml", "<languages>");
  StartIn("de");
  EXPECT_EQ(GetLanguageCharset(), 0);
}

class PseudoLanguage : public Appearance {
 protected:
  PseudoLanguage() {
    WriteLanguages(R"(<language id="xx" font="Old" vistaFont="New" charset="177" direction="rtl"/>)"
                   R"(<language id="XX" font="Old" vistaFont="New" charset="177"/>)");
  }
};

TEST_F(PseudoLanguage, HasAFaceOfItsOwnOnAnySystem) {
  StartIn("xx");
  for (const int version : {5, 6, 10}) {
    TheWorld().systemMajorVersion = version;
    EXPECT_EQ(GetLanguageFont(), "Comic Sans MS") << version;
  }
}

TEST_F(PseudoLanguage, HasCharacterSetZero) {
  StartIn("xx");
  EXPECT_EQ(GetLanguageCharset(), 0);
}

TEST_F(PseudoLanguage, HasTheDirectionOfItsElement) {
  StartIn("xx");
  EXPECT_TRUE(IsRightToLeft());
}

TEST_F(PseudoLanguage, IsNotTheOneInCapitals) {
  StartIn("XX");
  EXPECT_EQ(GetLanguageFont(), "New");
  EXPECT_EQ(GetLanguageCharset(), 177);
}

class Direction : public Appearance {};

TEST_F(Direction, IsRightToLeftForThatWordAlone) { EXPECT_TRUE(RightToLeftFor("rtl")); }

TEST_F(Direction, IsLeftToRightForAnyOtherText) {
  for (const char* value : {"Rtl", "RTL", "ltr", "", " rtl", "rtl "}) {
    SCOPED_TRACE(value);
    EXPECT_FALSE(RightToLeftFor(value));
  }
}

TEST_F(Direction, IsLeftToRightWhereTheAttributeOrTheElementIsMissing) {
  StartWith("");
  EXPECT_FALSE(IsRightToLeft());
  modI18N2::TheState() = {};
  WriteLanguages(R"(<language id="ar" direction="rtl"/>)");
  StartIn("de");
  EXPECT_FALSE(IsRightToLeft());
}

TEST_F(Direction, IsLeftToRightWithoutALanguageList) {
  StartIn("ar");
  EXPECT_FALSE(IsRightToLeft());
}

}  // namespace
