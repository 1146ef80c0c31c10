// What only Linux promises of files: links, pipes, rights.
//
// SPDX-License-Identifier: MIT
#include "platform/documents/files.h"

#include <sys/stat.h>

#include "platform/documents/xml_document.h"
#include "platform/system/profile.h"
#include "tests/contract/linux/services_driver.h"
#include "tests/contract/services_case.h"

namespace {

class FilesOnLinux : public ServiceCase {
 protected:
  static mode_t RightsOf(const std::filesystem::path& path) {
    struct stat status{};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    return status.st_mode & 0777;
  }

  static std::filesystem::path Native(const std::string& name) {
    return peer::NativeFolder() / name;
  }

  static void Save(const std::string& name) {
    platform::XmlDocument document;
    document.LoadXml("<queue/>");
    document.Save(In(name));
  }
};

TEST_F(FilesOnLinux, FollowALinkToAFile) {
  peer::WriteFile(In("file"), "");
  std::filesystem::create_symlink("file", Native("link"));
  EXPECT_TRUE(platform::FileExists(In("link")));
}

TEST_F(FilesOnLinux, FindNoFileBehindABrokenLinkOrAPipe) {
  std::filesystem::create_symlink("none", Native("link"));
  ASSERT_EQ(mkfifo(Native("pipe").c_str(), 0600), 0);
  EXPECT_FALSE(platform::FileExists(In("link")));
  EXPECT_FALSE(platform::FileExists(In("pipe")));
}

TEST_F(FilesOnLinux, AreNotHeldUpByAPipe) {
  ASSERT_EQ(mkfifo(Native("pipe").c_str(), 0600), 0);
  EXPECT_EQ(platform::ReadProfileString(In("pipe"), "S", "k", "absent", 256), "absent");
  platform::XmlDocument document;
  document.Load(In("pipe"));
  EXPECT_TRUE(peer::RunUntil([&] { return document.IsComplete(); }));
  EXPECT_NE(document.ParseErrorCode(), 0);
}

TEST_F(FilesOnLinux, AreNoDocumentsWhereTheyAreSomethingElse) {
  peer::WriteFile(In("empty"), "");
  peer::WriteFile(In("bytes"), std::string("\0\xFF<\x01/>", 6));
  peer::MakeFolder(In("folder"));
  std::filesystem::create_symlink("circle", Native("circle"));
  std::filesystem::create_symlink("/dev/zero", Native("device"));
  for (const char* name : {"empty", "bytes", "folder", "circle", "device"}) {
    platform::XmlDocument document;
    document.Load(In(name));
    EXPECT_TRUE(peer::RunUntil([&] { return document.IsComplete(); })) << name;
    EXPECT_NE(document.ParseErrorCode(), 0) << name;
  }
}

TEST_F(FilesOnLinux, AreLoadedAndSavedInAnotherLetterCase) {
  peer::WriteFile(In("Queue.xml"), "<queue/>");
  platform::XmlDocument document;
  document.Load(In("QUEUE.XML"));
  EXPECT_TRUE(peer::RunUntil([&] { return document.IsComplete(); }));
  EXPECT_EQ(document.ParseErrorCode(), 0);
  document.Save(In("queue.xml"));
  EXPECT_EQ(peer::CountIn(peer::Folder()), 1u);
}

TEST_F(FilesOnLinux, ReplaceALinkAndNotWhatItLeadsTo) {
  peer::WriteFile(In("elsewhere"), "kept");
  for (const char* name : {"queue.xml", "index.htm"}) {
    std::filesystem::create_symlink("elsewhere", Native(name));
  }
  Save("queue.xml");
  platform::WriteUtf16File(In("index.htm"), "A");
  EXPECT_FALSE(std::filesystem::is_symlink(Native("queue.xml")));
  EXPECT_FALSE(std::filesystem::is_symlink(Native("index.htm")));
  EXPECT_EQ(peer::FileBytes(In("elsewhere")), "kept");
}

TEST_F(FilesOnLinux, ReplaceALinkToAFolderOrToNothing) {
  std::filesystem::create_directory(Native("elsewhere"));
  std::filesystem::create_symlink("elsewhere", Native("queue.xml"));
  std::filesystem::create_symlink("nowhere", Native("index.htm"));
  Save("queue.xml");
  platform::WriteUtf16File(In("index.htm"), "A");
  EXPECT_EQ(peer::FileBytes(In("queue.xml")), "<queue/>");
  EXPECT_TRUE(std::filesystem::is_regular_file(Native("index.htm")));
  EXPECT_TRUE(std::filesystem::is_empty(Native("elsewhere")));
  EXPECT_FALSE(std::filesystem::exists(Native("nowhere")));
}

TEST_F(FilesOnLinux, ReplaceAnotherNameOfAFileAndNotTheFile) {
  peer::WriteFile(In("elsewhere"), "kept");
  for (const char* name : {"queue.xml", "index.htm"}) {
    std::filesystem::create_hard_link(Native("elsewhere"), Native(name));
  }
  Save("queue.xml");
  platform::WriteUtf16File(In("index.htm"), "A");
  EXPECT_EQ(peer::FileBytes(In("queue.xml")), "<queue/>");
  EXPECT_EQ(peer::FileBytes(In("elsewhere")), "kept");
}

TEST_F(FilesOnLinux, KeepThePageAndItsFolderToTheirOwner) {
  const mode_t earlier = umask(0);
  platform::CreateFolder(In("page"));
  platform::WriteUtf16File(In("page\\index.htm"), "A");
  umask(earlier);
  EXPECT_EQ(RightsOf(Native("page")), 0700u);
  EXPECT_EQ(RightsOf(Native("page/index.htm")), 0600u);
}

TEST_F(FilesOnLinux, KeepThePageToItsOwnerWhereAnEarlierOneWasForAll) {
  peer::WriteFile(In("index.htm"), "earlier");
  std::filesystem::permissions(Native("index.htm"), std::filesystem::perms(0644));
  platform::WriteUtf16File(In("index.htm"), "A");
  EXPECT_EQ(RightsOf(Native("index.htm")), 0600u);
}

TEST_F(FilesOnLinux, GiveSavedDocumentsTheRightsOfANewFile) {
  const mode_t earlier = umask(022);
  Save("queue.xml");
  umask(077);
  Save("products.xml");
  umask(earlier);
  EXPECT_EQ(RightsOf(Native("queue.xml")), 0644u);
  EXPECT_EQ(RightsOf(Native("products.xml")), 0600u);
}

TEST_F(FilesOnLinux, RefuseAProfileTooLongToBeOne) {
  peer::WriteFile(In("config.ini"), "[S]\nk=1\n" + std::string(2 << 20, '\n'));
  EXPECT_EQ(platform::ReadProfileString(In("config.ini"), "S", "k", "absent", 256), "absent");
}

TEST_F(FilesOnLinux, TellNoLetterCaseApartInProfileNamesBeyondAscii) {
  peer::WriteFile(In("config.ini"), "[\xD6]\n\xC4=1\n");
  EXPECT_EQ(platform::ReadProfileString(In("config.ini"), "\u00f6", "\u00e4", "absent", 256), "1");
}

}  // namespace
