// Promises of platform/documents/files.h.
//
// SPDX-License-Identifier: MIT
#include "platform/documents/files.h"

#include "tests/contract/services_case.h"

namespace {

using Files = ServiceCase;
using namespace std::string_literals;

TEST_F(Files, FindsAFile) {
  peer::WriteFile(In("queue.xml"), "");
  EXPECT_TRUE(platform::FileExists(In("queue.xml")));
}

TEST_F(Files, FindsAFileInAnotherLetterCase) {
  peer::WriteFile(In("Velor Software\\Queue.XML"), "");
  EXPECT_TRUE(platform::FileExists(In("velor software\\queue.xml")));
}

TEST_F(Files, FindsAFileWithLettersOfAnyLanguage) {
  peer::WriteFile(In("r\u00f6st.xml"), "");
  EXPECT_TRUE(platform::FileExists(In("r\u00f6st.xml")));
  EXPECT_TRUE(platform::FileExists(In("R\u00d6ST.xml")));
}

TEST_F(Files, DoesNotFindWhatIsNotThere) {
  EXPECT_FALSE(platform::FileExists(In("queue.xml")));
  EXPECT_FALSE(platform::FileExists(In("nowhere\\queue.xml")));
  EXPECT_FALSE(platform::FileExists(""));
}

TEST_F(Files, DoesNotTakeAFolderForAFile) { EXPECT_FALSE(platform::FileExists(peer::Folder())); }

TEST_F(Files, TakesNoPathThatHoldsANul) {
  peer::WriteFile(In("queue.xml"), "");
  EXPECT_FALSE(platform::FileExists(In("queue.xml\0.old"s)));
}

TEST_F(Files, CreatesAFolder) {
  platform::CreateFolder(In("Velor Software"));
  EXPECT_TRUE(peer::IsFolder(In("Velor Software")));
}

TEST_F(Files, LeavesAFolderThatExistsAsItIs) {
  peer::WriteFile(In("Velor Software\\queue.xml"), "kept");
  EXPECT_NO_THROW(platform::CreateFolder(In("Velor Software")));
  EXPECT_EQ(peer::FileBytes(In("Velor Software\\queue.xml")), "kept");
}

TEST_F(Files, CreatesNoSecondFolderThatDiffersInLetterCase) {
  peer::MakeFolder(In("Velor Software"));
  EXPECT_NO_THROW(platform::CreateFolder(In("VELOR software")));
  EXPECT_EQ(peer::CountIn(peer::Folder()), 1u);
}

TEST_F(Files, CreatesOneFolderAtATime) {
  EXPECT_ANY_THROW(platform::CreateFolder(In("one\\two")));
  EXPECT_FALSE(peer::IsFolder(In("one")));
}

TEST_F(Files, CreatesNoFolderWhereAFileStands) {
  peer::WriteFile(In("name"), "");
  EXPECT_ANY_THROW(platform::CreateFolder(In("name")));
}

TEST_F(Files, WritesUtf16WithAByteOrderMark) {
  platform::WriteUtf16File(In("index.htm"), "A\r\n\u00f6\U0001F600");
  EXPECT_EQ(peer::FileBytes(In("index.htm")),
            "\xFF\xFE"
            "A\0\r\0\n\0\xF6\0\x3D\xD8\x00\xDE"s);
}

TEST_F(Files, WritesAMarkAloneForAnEmptyText) {
  platform::WriteUtf16File(In("index.htm"), "");
  EXPECT_EQ(peer::FileBytes(In("index.htm")), "\xFF\xFE");
}

TEST_F(Files, ReplacesALongerFile) {
  peer::WriteFile(In("index.htm"), std::string(1000, 'x'));
  platform::WriteUtf16File(In("index.htm"), "A");
  EXPECT_EQ(peer::FileBytes(In("index.htm")),
            "\xFF\xFE"
            "A\0"s);
  EXPECT_EQ(peer::CountIn(peer::Folder()), 1u);
}

TEST_F(Files, KeepsTheEarlierFileWhenTheTextIsNotUtf8) {
  peer::WriteFile(In("index.htm"), "earlier");
  EXPECT_ANY_THROW(platform::WriteUtf16File(In("index.htm"), "\xFF\xFF"));
  EXPECT_EQ(peer::FileBytes(In("index.htm")), "earlier");
}

TEST_F(Files, WritesNothingWithoutAFolder) {
  EXPECT_ANY_THROW(platform::WriteUtf16File(In("nowhere\\index.htm"), "A"));
  EXPECT_FALSE(peer::IsFolder(In("nowhere")));
}

TEST_F(Files, WritesNothingOverAFolder) {
  peer::MakeFolder(In("index.htm"));
  EXPECT_ANY_THROW(platform::WriteUtf16File(In("index.htm"), "A"));
  EXPECT_EQ(peer::CountIn(peer::Folder()), 1u);
}

}  // namespace
