// How paths of the core become paths of Linux.
//
// SPDX-License-Identifier: MIT
#include "platform/linux/documents/native_path.h"

#include <stdexcept>

#include "platform/errors.h"
#include "tests/contract/linux/services_driver.h"
#include "tests/contract/services_case.h"

namespace {

using platform::CorePath;
using platform::NativePath;
using namespace std::string_literals;

class Paths : public ServiceCase {
 protected:
  static std::string Native(const std::string& below) {
    return (peer::NativeFolder() / below).string();
  }
};

TEST_F(Paths, TurnBackslashes) {
  peer::WriteFile(In("a\\b"), "");
  EXPECT_EQ(NativePath(In("a\\b")), Native("a/b"));
  EXPECT_EQ(CorePath("/a/b c/d"), "\\a\\b c\\d");
}

TEST_F(Paths, MatchEachComponentWithoutRegardToLetterCase) {
  peer::WriteFile(In("Velor Software\\Parvix\\Config.ini"), "");
  EXPECT_EQ(NativePath(In("VELOR SOFTWARE\\parvix\\config.INI")),
            Native("Velor Software/Parvix/Config.ini"));
}

TEST_F(Paths, PreferTheNameAsWritten) {
  peer::WriteFile(In("A"), "");
  peer::WriteFile(In("a"), "");
  EXPECT_EQ(NativePath(In("a")), Native("a"));
}

TEST_F(Paths, TakeTheFirstInByteOrderOfSeveralMatches) {
  for (const char* name : {"abc", "aBc", "Abc"}) peer::WriteFile(In(name), "");
  EXPECT_EQ(NativePath(In("ABC")), Native("Abc"));
}

TEST_F(Paths, KeepTheRestAsWrittenFromWhereNothingMatches) {
  peer::MakeFolder(In("Data"));
  EXPECT_EQ(NativePath(In("data\\New\\File")), Native("Data/New/File"));
}

TEST_F(Paths, MatchLettersBeyondAscii) {
  peer::WriteFile(In("\u00d6l"), "");
  EXPECT_EQ(NativePath(In("\u00f6L")), Native("\u00d6l"));
}

TEST_F(Paths, SurviveNamesThatAreNotUtf8) {
  peer::WriteFile(In("\xFF\x41"), "");
  EXPECT_EQ(NativePath(In("\xFF\x61")), Native("\xFF\x41"));
}

TEST_F(Paths, KeepEmptyAndRelativePaths) {
  EXPECT_EQ(NativePath(""), "");
  EXPECT_EQ(NativePath("\\"), "/");
  EXPECT_EQ(NativePath("no\\such"), "no/such");
}

TEST_F(Paths, ThrowForANul) { EXPECT_THROW(NativePath("\\tmp\0x"s), platform::Unsupported); }

}  // namespace
