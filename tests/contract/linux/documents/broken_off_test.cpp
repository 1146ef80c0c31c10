// Writing that comes to no good end: the process is ended at any of its steps, the disk is full,
// the folder may not be written to. Each is tried in a process of its own.
//
// SPDX-License-Identifier: MIT
#include <grp.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <functional>
#include <optional>
#include <stdexcept>

#include "core/attempt.h"
#include "platform/documents/files.h"
#include "platform/documents/xml_document.h"
#include "tests/contract/linux/services_driver.h"
#include "tests/contract/services_case.h"

namespace {

using Step = std::function<void()>;

pid_t Apart(const Step& prepare, const Step& step) {
  const pid_t child = fork();
  if (child == 0) _exit(core::Attempt(prepare) ? core::Attempt(step) ? 0 : 1 : 2);
  if (child < 0) throw std::runtime_error("there is no further process to be had");
  return child;
}

int StatusOf(pid_t child) {
  int status = 0;
  if (waitpid(child, &status, 0) != child) throw std::runtime_error("the process is lost");
  return status;
}

void Check(long result, const char* what) {
  if (result < 0) throw std::runtime_error(what);
}

/// Ends the step at the beginning or end of one of its system calls: 1 is the first's beginning, 2
/// its end. False where the step was done before.
bool EndsAt(int stop, const Step& step) {
  const pid_t child = Apart(
      [] {
        Check(ptrace(PTRACE_TRACEME, 0, nullptr, nullptr), "no process may be watched here");
        raise(SIGSTOP);
      },
      step);
  int status = StatusOf(child);
  for (int i = 0; i < stop && WIFSTOPPED(status); ++i) {
    Check(ptrace(PTRACE_SYSCALL, child, nullptr, nullptr), "the process is lost");
    status = StatusOf(child);
  }
  if (!WIFSTOPPED(status)) {
    EXPECT_EQ(status, 0);
    return false;
  }
  kill(child, SIGKILL);
  StatusOf(child);
  return true;
}

bool Succeeds(const Step& prepare, const Step& step) {
  const int status = StatusOf(Apart(prepare, step));
  if (!WIFEXITED(status) || WEXITSTATUS(status) > 1) throw std::runtime_error("not prepared");
  return WEXITSTATUS(status) == 0;
}

class BrokenOff : public ServiceCase {
 protected:
  static void Save(const std::string& path, const std::string& text) {
    platform::XmlDocument document;
    document.LoadXml(text);
    document.Save(path);
  }

  /// What a reader finds after each possible end of writing, each in a folder of its own; in the
  /// order in which they were first found. (The count of system calls varies a little.)
  static std::vector<std::optional<std::string>> FoundWhenEnded(
      const std::optional<std::string>& earlier, const std::function<void(std::string)>& write) {
    std::vector<std::optional<std::string>> found;
    for (int stop = 1;; ++stop) {
      const std::string folder = In(std::to_string(stop));
      const std::string path = folder + "\\file";
      peer::MakeFolder(folder);
      if (earlier) peer::WriteFile(path, *earlier);
      const bool ended = EndsAt(stop, [&] { write(path); });
      const auto bytes = peer::FileBytes(path);
      if (std::ranges::find(found, bytes) == found.end()) found.push_back(bytes);
      EXPECT_LE(peer::CountIn(folder), 2u) << "more is left than one unfinished file";
      EXPECT_NO_THROW(write(path)) << "what is left is in the way of the next one";
      if (!ended) return found;
    }
  }
};

constexpr const char* kEarlier = "<queue><item>1</item></queue>";
constexpr const char* kNew = "<queue><item>2</item><item>3</item></queue>";

TEST_F(BrokenOff, SavingLeavesTheEarlierDocumentOrTheNewOne) {
  EXPECT_THAT(FoundWhenEnded(kEarlier, [](const std::string& path) { Save(path, kNew); }),
              testing::ElementsAre(kEarlier, kNew));
}

TEST_F(BrokenOff, SavingTheFirstDocumentLeavesNoneOrAllOfIt) {
  EXPECT_THAT(FoundWhenEnded(std::nullopt, [](const std::string& path) { Save(path, kNew); }),
              testing::ElementsAre(std::nullopt, kNew));
}

TEST_F(BrokenOff, WritingThePageLeavesTheEarlierOneOrTheNewOne) {
  using namespace std::string_literals;
  const auto write = [](const std::string& path) { platform::WriteUtf16File(path, "new"); };
  EXPECT_THAT(FoundWhenEnded("earlier", write),
              testing::ElementsAre("earlier", "\xFF\xFEn\0e\0w\0"s));
}

/// More than this does not fit into a file.
void FillTheDisk() {
  signal(SIGXFSZ, SIG_IGN);
  const rlimit room{100, 100};
  Check(setrlimit(RLIMIT_FSIZE, &room), "files cannot be limited");
}

TEST_F(BrokenOff, AFullDiskLeavesTheEarlierFilesAndNothingElse) {
  const std::string text = "<queue>" + std::string(10'000, ' ') + "</queue>";
  peer::WriteFile(In("queue.xml"), kEarlier);
  peer::WriteFile(In("index.htm"), "earlier");
  EXPECT_TRUE(Succeeds(FillTheDisk, [] { Save(In("short.xml"), kNew); }));
  EXPECT_FALSE(Succeeds(FillTheDisk, [&] { Save(In("queue.xml"), text); }));
  EXPECT_FALSE(Succeeds(FillTheDisk, [&] { platform::WriteUtf16File(In("index.htm"), text); }));
  EXPECT_EQ(peer::FileBytes(In("queue.xml")), kEarlier);
  EXPECT_EQ(peer::FileBytes(In("index.htm")), "earlier");
  EXPECT_EQ(peer::CountIn(peer::Folder()), 3u);
}

/// For whom rights count: the system's administrator may write everywhere.
void BecomeAnOrdinaryUser() {
  constexpr uid_t kNobody = 65534;
  if (geteuid() != 0) return;
  Check(setgroups(0, nullptr), "still in groups");
  Check(setgid(kNobody), "still the administrators' group");
  Check(setuid(kNobody), "still the administrator");
}

TEST_F(BrokenOff, AFolderThatMayOnlyBeReadKeepsWhatItHas) {
  const auto folder = peer::NativeFolder() / "shared";
  peer::WriteFile(In("shared\\queue.xml"), kEarlier);
  const Step save = [] { Save(In("shared\\queue.xml"), kNew); };
  chmod(folder.c_str(), 0555);
  EXPECT_FALSE(Succeeds(BecomeAnOrdinaryUser, save));
  EXPECT_FALSE(Succeeds(BecomeAnOrdinaryUser,
                        [] { platform::WriteUtf16File(In("shared\\index.htm"), "A"); }));
  EXPECT_FALSE(
      Succeeds(BecomeAnOrdinaryUser, [] { platform::CreateFolder(In("shared\\folder")); }));
  EXPECT_EQ(peer::FileBytes(In("shared\\queue.xml")), kEarlier);
  EXPECT_EQ(peer::CountIn(In("shared")), 1u);
  chmod(folder.c_str(), 0777);
  EXPECT_TRUE(Succeeds(BecomeAnOrdinaryUser, save)) << "it was not for the rights";
}

}  // namespace
