// The reader of the ini files of others: how long a value, what becomes of an empty one.
//
// SPDX-License-Identifier: MIT
#include "tests/unit/i18n/language_files.h"

namespace {

using fake::TheWorld;
using modI18N2::ReadIniValue;

std::string Letters(std::size_t count) { return std::string(count, 'x'); }

// A file with one key, as long as is wanted.
std::string IniWith(const std::string& value) { return "[S]\r\nKey=" + value + "\r\n"; }

class IniValue : public unit::FreshProgram {
 protected:
  static std::string File() { return TheWorld().specialFolders.at(26) + "\\any.ini"; }
  static void Write(std::string_view text) { TheWorld().WriteFile(File(), text); }
  static std::string Read() { return ReadIniValue(File(), "S", "Key"); }
};

TEST_F(IniValue, IsReadFromTheFileThatIsGiven) {
  Write(IniWith("found"));
  EXPECT_EQ(Read(), "found");
}

TEST_F(IniValue, TakesSectionAndKeyWithoutRegardToCase) {
  Write("[s]\nKEY=found\n");
  EXPECT_EQ(Read(), "found");
}

TEST_F(IniValue, IsEmptyForAnAbsentKeyOrSection) {
  Write("[S]\nOther=1\n[T]\nKey=1\n");
  EXPECT_EQ(Read(), "");
}

TEST_F(IniValue, IsEmptyForAMissingFile) { EXPECT_EQ(Read(), ""); }

TEST_F(IniValue, IsEmptyForAnEmptyValue) {
  Write(IniWith(""));
  EXPECT_EQ(Read(), "");
}

TEST_F(IniValue, IsNotTrimmed) {
  Write(IniWith("\"  found  \""));
  EXPECT_EQ(Read(), "  found  ");
}

TEST_F(IniValue, EndsAtANul) {
  Write(IniWith(std::string("found\0lost", 10)));
  EXPECT_EQ(Read(), "found");
}

TEST_F(IniValue, IsCutAfter254Bytes) {
  Write(IniWith(Letters(254)));
  EXPECT_EQ(Read(), Letters(254));
  Write(IniWith(Letters(255)));
  EXPECT_EQ(Read(), Letters(254));
}

}  // namespace
