// The two readers: which file, how long a value, what becomes of an empty one. How an ini file is
// read at all is the platform's matter and tested there.
//
// SPDX-License-Identifier: MIT
#include "tests/unit/paths/fresh_program.h"

namespace {

using fake::TheWorld;
using modPath::ReadAppIni;
using modPath::ReadSettingsIni;

std::string Letters(std::size_t count) { return std::string(count, 'x'); }

// A file with one key, as long as is wanted.
std::string IniWith(const std::string& value) { return "[S]\r\nKey=" + value + "\r\n"; }

class SettingsIni : public unit::FreshProgram {
 protected:
  SettingsIni() { modPath::gSettingsPath = ProgramFolder() + "\\Settings"; }
  static void Write(std::string_view text) {
    TheWorld().WriteFile(modPath::gSettingsPath + "\\Some.ini", text);
  }
  static std::string Read(const std::string& fallback) {
    return ReadSettingsIni("Some", "S", "Key", fallback);
  }
};

TEST_F(SettingsIni, IsTheNamedFileInTheSettingsFolder) {
  Write(IniWith("found"));
  EXPECT_EQ(Read("fallback"), "found");
  EXPECT_EQ(ReadSettingsIni("Other", "S", "Key", "fallback"), "fallback");
}

TEST_F(SettingsIni, FollowsTheSettingsFolder) {
  Write(IniWith("found"));
  modPath::gSettingsPath += "\\Maker";
  EXPECT_EQ(Read("fallback"), "fallback");
}

TEST_F(SettingsIni, TakesSectionAndKeyWithoutRegardToCase) {
  Write("[s]\nKEY=found\n");
  EXPECT_EQ(Read("fallback"), "found");
}

TEST_F(SettingsIni, AnswersTheDefaultForAnAbsentKeyOrSection) {
  Write("[S]\nOther=1\n[T]\nKey=1\n");
  EXPECT_EQ(Read("fallback"), "fallback");
}

TEST_F(SettingsIni, AnswersTheDefaultForAMissingFile) { EXPECT_EQ(Read("fallback"), "fallback"); }

TEST_F(SettingsIni, AnswersTheDefaultForAnEmptyValue) {
  Write(IniWith(""));
  EXPECT_EQ(Read("fallback"), "fallback");
}

TEST_F(SettingsIni, AnswersTheDefaultUnchangedForAnEmptyValue) {
  Write(IniWith(""));
  EXPECT_EQ(Read(" \"fallback\" "), " \"fallback\" ");
}

TEST_F(SettingsIni, DoesNotTrimAValue) {
  Write(IniWith("\"  found  \""));
  EXPECT_EQ(Read("fallback"), "  found  ");
}

TEST_F(SettingsIni, CutsAValueAfter256Bytes) {
  Write(IniWith(Letters(256)));
  EXPECT_EQ(Read(""), Letters(256));
  Write(IniWith(Letters(257)));
  EXPECT_EQ(Read(""), Letters(256));
}

TEST_F(SettingsIni, CountsALetterOfTheCodePageAsOneByte) {
  std::string expected;
  for (int i = 0; i < 256; ++i) expected += "\u00E9";
  Write(IniWith(std::string(300, '\xE9')));
  EXPECT_EQ(Read(""), expected);
}

class AppIni : public unit::FreshProgram {
 protected:
  static std::string Read(const std::string& fallback) { return ReadAppIni("S", "Key", fallback); }
};

TEST_F(AppIni, LiesBesideTheProgramFileAndIsNamedAfterIt) {
  TheWorld().programName = "Twin";
  WriteOwnIni(IniWith("of VelorVoiceSetup"));
  TheWorld().WriteFile(ProgramFolder() + "\\Twin.ini", IniWith("of Twin"));
  EXPECT_EQ(Read("fallback"), "of Twin");
}

TEST_F(AppIni, LiesInTheProgramFolderWithOneSeparator) {
  WriteOwnIni(IniWith("found"));
  TheWorld().programFolder += "\\";
  EXPECT_EQ(Read("fallback"), "found");
}

TEST_F(AppIni, IsNotLookedForInTheSettingsFolder) {
  modPath::gSettingsPath = ProgramFolder() + "\\Settings";
  TheWorld().WriteFile(modPath::gSettingsPath + "\\VelorVoiceSetup.ini", IniWith("found"));
  EXPECT_EQ(Read("fallback"), "fallback");
}

TEST_F(AppIni, TakesSectionAndKeyWithoutRegardToCase) {
  WriteOwnIni("[s]\nKEY=found\n");
  EXPECT_EQ(Read("fallback"), "found");
}

TEST_F(AppIni, AnswersTheDefaultForAnAbsentKeyOrSection) {
  WriteOwnIni("[S]\nOther=1\n[T]\nKey=1\n");
  EXPECT_EQ(Read("fallback"), "fallback");
}

TEST_F(AppIni, AnswersTheDefaultForAMissingFile) { EXPECT_EQ(Read("fallback"), "fallback"); }

TEST_F(AppIni, TrimsTheDefault) { EXPECT_EQ(Read("\"  fallback  \""), "fallback"); }

TEST_F(AppIni, AnswersAnEmptyValueAsItIs) {
  WriteOwnIni(IniWith(""));
  EXPECT_EQ(Read("fallback"), "");
}

TEST_F(AppIni, AnswersNothingForAValueOfBlanks) {
  WriteOwnIni(IniWith("\"   \""));
  EXPECT_EQ(Read("fallback"), "");
}

TEST_F(AppIni, TrimsAValue) {
  WriteOwnIni(IniWith("\"  found  \""));
  EXPECT_EQ(Read("fallback"), "found");
}

TEST_F(AppIni, CutsAValueAfter255Bytes) {
  WriteOwnIni(IniWith(Letters(255)));
  EXPECT_EQ(Read(""), Letters(255));
  WriteOwnIni(IniWith(Letters(256)));
  EXPECT_EQ(Read(""), Letters(255));
}

TEST_F(AppIni, TrimsWhatACutLeftAtTheEnd) {
  WriteOwnIni(IniWith(Letters(254) + " more"));
  EXPECT_EQ(Read(""), Letters(254));
}

}  // namespace
