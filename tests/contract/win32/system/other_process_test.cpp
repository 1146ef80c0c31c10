// What only other processes can show: saving that is broken off, and what a started program has of
// the one that started it.
//
// SPDX-License-Identifier: MIT
#include <windows.h>

#include <random>
#include <set>
#include <vector>

#include "core/attempt.h"
#include "platform/documents/files.h"
#include "platform/documents/xml_document.h"
#include "platform/system/shell.h"
#include "platform/win32/documents/file_access.h"
#include "platform/win32/handle.h"
#include "platform/win32/wide_text.h"
#include "tests/contract/services_case.h"
#include "tests/contract/win32/services_roles.h"

namespace {

using platform::FileHandle;
using std::chrono::milliseconds;

/// This program once more, in the role that is given.
FileHandle Start(BOOL inherits) {
  std::wstring line = platform::WideText('"' + roles::ProgramFile() + '"');
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  PROCESS_INFORMATION process = {};
  CreateProcessW(nullptr, line.data(), nullptr, nullptr, inherits, 0, nullptr, nullptr, &start,
                 &process);
  const FileHandle thread(process.hThread);
  return FileHandle(process.hProcess);
}

class Saving : public ServiceCase {
 protected:
  /// As the installer reads it; empty where it is just being replaced.
  static std::string Read(const std::string& path) {
    std::string bytes;
    core::Attempt([&] { bytes = platform::ReadRegularFile(platform::SystemPath(path), 1000); });
    return bytes;
  }
};

TEST_F(Saving, BrokenOffAtAnyMomentLeavesAWholeDocument) {
  const std::string path = In("queue.xml");
  const roles::Given role(roles::SavingInTurns(path));
  peer::WriteFile(path, roles::kTurns[0]);
  std::mt19937 random(20261121);
  std::set<std::string> found;
  for (int i = 0; i < 12; ++i) {
    const std::string before = Read(path);
    const FileHandle process = Start(FALSE);
    ASSERT_TRUE(process);
    // It has begun when it has changed something; from then on it does nothing but save.
    ASSERT_TRUE(peer::RunUntil([&] { return Read(path) != before; }));
    const auto moment = milliseconds(random() % 20);
    peer::RunUntil([] { return false; }, moment);
    TerminateProcess(process.Get(), 1);
    WaitForSingleObject(process.Get(), INFINITE);
    found.insert(peer::FileBytes(path).value_or("nothing"));
  }
  EXPECT_THAT(found, testing::IsSubsetOf(roles::kTurns));
}

TEST_F(Saving, ReplacesAnotherNameOfAFileAndNotTheFile) {
  peer::WriteFile(In("elsewhere"), "kept");
  for (const char* name : {"queue.xml", "index.htm"}) {
    ASSERT_TRUE(CreateHardLinkW(platform::SystemPath(In(name)).c_str(),
                                platform::SystemPath(In("elsewhere")).c_str(), nullptr));
  }
  platform::XmlDocument document;
  document.LoadXml("<queue/>");
  document.Save(In("queue.xml"));
  platform::WriteUtf16File(In("index.htm"), "A");
  EXPECT_EQ(peer::FileBytes(In("queue.xml")), "<queue/>");
  EXPECT_EQ(peer::FileBytes(In("elsewhere")), "kept");
}

TEST_F(Saving, KeepsTheEarlierFileThatSomebodyReads) {
  peer::WriteFile(In("queue.xml"), "earlier");
  const FileHandle reader(CreateFileW(platform::SystemPath(In("queue.xml")).c_str(), GENERIC_READ,
                                      FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(reader);
  platform::XmlDocument document;
  document.LoadXml("<queue/>");
  EXPECT_ANY_THROW(document.Save(In("queue.xml")));
  EXPECT_EQ(peer::FileBytes(In("queue.xml")), "earlier");
  EXPECT_EQ(peer::CountIn(peer::Folder()), 1u);
}

class Instances : public ServiceCase {
 protected:
  ~Instances() override { EndAll(); }

  void Start(int count) {
    for (int i = 0; i < count; ++i) mProcesses.push_back(::Start(FALSE));
  }

  /// However much they had done.
  void EndAll() {
    for (const FileHandle& process : mProcesses) {
      TerminateProcess(process.Get(), 1);
      WaitForSingleObject(process.Get(), INFINITE);
    }
    mProcesses.clear();
  }

  const std::string mFolder = In("instances");
  const roles::Given mRole{roles::AskingWhoIsFirst(mFolder)};

 private:
  std::vector<FileHandle> mProcesses;
};

TEST_F(Instances, OfThirtySimultaneousStartsExactlyOneIsTheFirst) {
  constexpr int kMany = 30;
  peer::MakeFolder(mFolder);
  Start(kMany);
  // A second one that is the first too would make no folder of its own.
  EXPECT_TRUE(peer::RunUntil([&] { return peer::CountIn(mFolder) == kMany; }));
  EXPECT_TRUE(peer::IsFolder(mFolder + "\\first"));
}

TEST_F(Instances, OneThatIsEndedAtAnyMomentLeavesNoMark) {
  for (const int moment : {0, 10, 30, 60, 100}) {
    Start(1);
    peer::RunUntil([] { return false; }, milliseconds(moment));
    EndAll();
  }
  peer::MakeFolder(mFolder);
  Start(1);
  EXPECT_TRUE(peer::RunUntil([&] { return peer::IsFolder(mFolder + "\\first"); }));
}

using Starting = ServiceCase;

TEST_F(Starting, HandsDownNoHandle) {
  SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
  const FileHandle event(CreateEventW(&inheritable, TRUE, FALSE, nullptr));
  const auto reaches = [&](const std::string& mark, const auto& start) {
    const roles::Given role(
        roles::SettingAnEvent(reinterpret_cast<std::uintptr_t>(event.Get()), In(mark)));
    start();
    EXPECT_TRUE(peer::RunUntil([&] { return peer::IsFolder(In(mark)); })) << mark;
    return WaitForSingleObject(event.Get(), 0) == WAIT_OBJECT_0;
  };
  EXPECT_FALSE(
      reaches("command", [] { platform::RunCommandLine('"' + roles::ProgramFile() + '"'); }));
  EXPECT_FALSE(
      reaches("elevated", [] { platform::RunElevated(roles::ProgramFile(), peer::Folder()); }));
  EXPECT_TRUE(reaches("inheriting", [] { Start(TRUE); })) << "a program that inherits reaches it";
}

}  // namespace
