// What only other processes can show: one running instance, and activation from another process.
//
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "platform/window/form.h"
#include "tests/contract/linux/window_roles.h"
#include "tests/contract/linux/window_widgets.h"
#include "tests/contract/window_driver.h"
#include "tests/support/temporary_folder.h"

namespace {

using roles::Player;

/// A runtime folder of its own for each case, since this process is a running instance too.
class Instances : public testing::Test {
 protected:
  Instances() { g_setenv("XDG_RUNTIME_DIR", mFolder.Path().c_str(), TRUE); }
  ~Instances() override { g_setenv("XDG_RUNTIME_DIR", mEarlier.c_str(), TRUE); }

 private:
  std::string mEarlier = platform::TextOf(g_getenv("XDG_RUNTIME_DIR"));
  support::TemporaryFolder mFolder;
};

TEST_F(Instances, OfThirtySimultaneousStartsExactlyOneIsTheFirst) {
  std::vector<std::unique_ptr<Player>> players;
  for (int i = 0; i < 30; ++i) players.push_back(std::make_unique<Player>("instance"));
  std::vector<std::string> answers;
  for (const auto& player : players) answers.push_back(player->ReadLine());
  EXPECT_EQ(std::ranges::count(answers, "first"), 1);
  EXPECT_EQ(std::ranges::count(answers, "second"), 29);
}

TEST_F(Instances, TheNextStartIsTheFirstAgainWhenTheFirstHasEnded) {
  Player first("instance");
  EXPECT_EQ(first.ReadLine(), "first");
  EXPECT_EQ(Player("instance").ReadLine(), "second");
  first.Dismiss();
  EXPECT_EQ(Player("instance").ReadLine(), "first");
}

TEST_F(Instances, ACrashReleasesTheLock) {
  Player first("instance");
  EXPECT_EQ(first.ReadLine(), "first");
  first.Kill();
  EXPECT_EQ(Player("instance").ReadLine(), "first");
}

TEST_F(Instances, AStartedProgramDoesNotHoldTheLockOn) {
  Player first("instance-with-child");
  EXPECT_EQ(first.ReadLine(), "first");
  const int child = std::stoi(first.ReadLine());
  first.Dismiss();
  EXPECT_EQ(Player("instance").ReadLine(), "first");
  EXPECT_EQ(kill(child, SIGTERM), 0) << "the child had ended before";
}

TEST_F(Instances, WithoutAPlaceForTheLockEveryStartIsTheFirst) {
  g_setenv("XDG_RUNTIME_DIR", "/proc/no/such/folder", TRUE);
  Player first("instance");
  EXPECT_EQ(first.ReadLine(), "first");
  EXPECT_EQ(Player("instance").ReadLine(), "first");
}

class Activation : public testing::Test {
 protected:
  Activation() {
    peer::Begin();
    form.SetCaption(kTitle);
    form.Show();
    EXPECT_TRUE(peer::RunUntil([this] { return IsActive(); }));
  }
  bool IsActive() { return gtk_window_is_active(widgets::WindowOf("activated")); }

  static constexpr const char* kTitle = "Velor röstinstallation";
  platform::Form form{"activated", 3000, 3000};
};

TEST_F(Activation, BringsTheWindowToTheForegroundFromAnotherProcess) {
  Player other("window:Another title");
  EXPECT_EQ(other.ReadLine(), "shown");
  ASSERT_TRUE(peer::RunUntil([this] { return !IsActive(); }));
  EXPECT_EQ(Player(std::string("activate:") + kTitle).ReadLine(), "activated");
  EXPECT_TRUE(peer::RunUntil([this] { return IsActive(); }));
}

TEST_F(Activation, OpensAMinimisedWindow) {
  peer::Minimise("activated");
  ASSERT_TRUE(peer::RunUntil([this] { return form.IsMinimised(); }));
  EXPECT_EQ(Player(std::string("activate:") + kTitle).ReadLine(), "activated");
  EXPECT_TRUE(peer::RunUntil([this] { return !form.IsMinimised() && IsActive(); }));
}

TEST_F(Activation, WantsTheExactTitle) {
  EXPECT_EQ(Player("activate:Velor").ReadLine(), "none");
  EXPECT_EQ(Player("activate:").ReadLine(), "none");
}

}  // namespace
