// What only other processes can show: one running instance, and activation from another process.
//
// SPDX-License-Identifier: MIT
#include <X11/Xlib.h>
#include <gdk/gdkx.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <vector>

#include "core/text.h"
#include "platform/window/form.h"
#include "tests/contract/linux/window_roles.h"
#include "tests/contract/linux/window_widgets.h"
#include "tests/contract/window_driver.h"
#include "tests/support/temporary_folder.h"

namespace {

using roles::Player;

constexpr int kStarts = 30;
constexpr std::array kVariables = {"XDG_RUNTIME_DIR", "HOME", "TMPDIR", "USER"};

/// What a start by another way (a service, another shell, cron) leaves in the environment.
class Instances : public testing::Test {
 protected:
  /// This process is an instance of its own program file; the cases are about a copy of it.
  Instances() { std::filesystem::copy_file(roles::OwnProgram(), mProgram); }
  ~Instances() override {
    for (std::size_t i = 0; i < kVariables.size(); ++i) Set(kVariables.at(i), mEarlier.at(i));
  }

  static void Set(const char* variable, const std::optional<std::string>& value) {
    if (value) {
      g_setenv(variable, value->c_str(), TRUE);
    } else {
      g_unsetenv(variable);
    }
  }
  void UseEnvironment(int number) {
    const std::string folder = mFolder.Path();
    const std::array<std::optional<std::string>, 4> values = {folder, std::nullopt, "/proc/no/such",
                                                              ""};
    for (const char* variable : kVariables)
      Set(variable, values.at(static_cast<std::size_t>(number) % values.size()));
  }

  /// What many starts at once find, each in the next of the environments.
  std::vector<std::string> StartMany() {
    std::vector<std::unique_ptr<Player>> players;
    for (int i = 0; i < kStarts; ++i) {
      UseEnvironment(i);
      players.push_back(std::make_unique<Player>("instance", mProgram));
    }
    std::vector<std::string> answers;
    for (const auto& player : players) answers.push_back(player->ReadLine());
    return answers;
  }

 private:
  static std::optional<std::string> Get(const char* variable) {
    const char* const value = g_getenv(variable);
    return value ? std::optional<std::string>(value) : std::nullopt;
  }

  support::TemporaryFolder mFolder;

 protected:
  const std::string mProgram = (mFolder.Path() / "program").string();

 private:
  const std::array<std::optional<std::string>, kVariables.size()> mEarlier = {
      Get(kVariables[0]), Get(kVariables[1]), Get(kVariables[2]), Get(kVariables[3])};
};

/// The names in the abstract socket namespace that begin as the program's lock does.
std::vector<std::string> LockNames() {
  std::vector<std::string> names;
  for (const std::string& line : core::Split(support::ReadBytes("/proc/net/unix"), "\n")) {
    const std::size_t at = line.find("@velor-voice-setup-" + std::to_string(getuid()) + "-");
    if (at != std::string::npos) names.push_back(line.substr(at + 1));
  }
  return names;
}

/// Holds a name there without listening, as a program that means harm might.
class HeldName {
 public:
  explicit HeldName(const std::string& name) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    name.copy(address.sun_path + 1, sizeof address.sun_path - 1);
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    if (bind(mSocket, reinterpret_cast<const sockaddr*>(&address), length) != 0)
      throw std::runtime_error("the name is taken");
  }
  ~HeldName() { close(mSocket); }
  HeldName(const HeldName&) = delete;
  HeldName& operator=(const HeldName&) = delete;

 private:
  const int mSocket = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

TEST_F(Instances, OfThirtySimultaneousStartsInAnyEnvironmentExactlyOneIsTheFirst) {
  const auto answers = StartMany();
  EXPECT_EQ(std::ranges::count(answers, "first"), 1);
  EXPECT_EQ(std::ranges::count(answers, "second"), kStarts - 1);
}

TEST_F(Instances, ExactlyOneIsTheFirstWhereTheSocketsNameIsHeldBySomebodyElse) {
  const auto before = LockNames();
  Player first("instance", mProgram);
  EXPECT_EQ(first.ReadLine(), "first");
  auto names = LockNames();
  std::erase_if(names, [&](const auto& name) { return std::ranges::count(before, name) > 0; });
  ASSERT_EQ(names.size(), 1U);
  first.Kill();
  const HeldName held(names.front());
  const auto answers = StartMany();
  EXPECT_EQ(std::ranges::count(answers, "first"), 1);
  EXPECT_EQ(std::ranges::count(answers, "second"), kStarts - 1);
}

TEST_F(Instances, TheNextStartIsTheFirstAgainWhenTheFirstHasEnded) {
  Player first("instance", mProgram);
  EXPECT_EQ(first.ReadLine(), "first");
  EXPECT_EQ(Player("instance", mProgram).ReadLine(), "second");
  first.Dismiss();
  EXPECT_EQ(Player("instance", mProgram).ReadLine(), "first");
}

TEST_F(Instances, ACrashReleasesTheLock) {
  Player first("instance", mProgram);
  EXPECT_EQ(first.ReadLine(), "first");
  first.Kill();
  EXPECT_EQ(Player("instance", mProgram).ReadLine(), "first");
}

TEST_F(Instances, AStartedProgramDoesNotHoldTheLockOn) {
  Player first("instance-with-child", mProgram);
  EXPECT_EQ(first.ReadLine(), "first");
  const int child = std::stoi(first.ReadLine());
  first.Dismiss();
  EXPECT_EQ(Player("instance", mProgram).ReadLine(), "first");
  EXPECT_EQ(kill(child, SIGTERM), 0) << "the child had ended before";
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

TEST_F(Activation, FindsNoWindowWithoutATitle) {
  form.SetCaption("");
  EXPECT_EQ(Player("activate:").ReadLine(), "none");
}

/// What programs say to the desktop about starting, one message after the other.
class StartUpMessages {
 public:
  StartUpMessages() {
    GdkWindow* const root = gdk_get_default_root_window();
    gdk_window_set_events(
        root, static_cast<GdkEventMask>(gdk_window_get_events(root) | GDK_PROPERTY_CHANGE_MASK));
    gdk_display_sync(gdk_display_get_default());
    gdk_window_add_filter(nullptr, Look, this);
  }
  ~StartUpMessages() { gdk_window_remove_filter(nullptr, Look, this); }
  StartUpMessages(const StartUpMessages&) = delete;
  StartUpMessages& operator=(const StartUpMessages&) = delete;

  const std::string& Text() const { return mText; }

 private:
  /// Messages come in pieces of 20 bytes.
  static GdkFilterReturn Look(GdkXEvent* native, GdkEvent*, gpointer data) {
    const auto& event = *static_cast<const XEvent*>(native);
    if (event.type != ClientMessage || event.xclient.format != 8) return GDK_FILTER_CONTINUE;
    static_cast<StartUpMessages*>(data)->mText.append(event.xclient.data.b, 20);
    return GDK_FILTER_CONTINUE;
  }

  std::string mText;
};

TEST_F(Activation, EndsTheStartUpNotificationOfTheSecondStart) {
  for (const char* title : {kTitle, "none"}) {
    const StartUpMessages messages;
    g_setenv("DESKTOP_STARTUP_ID", "velor-start_TIME1", TRUE);
    Player second(std::string("activate:") + title);
    g_unsetenv("DESKTOP_STARTUP_ID");
    second.ReadLine();
    EXPECT_TRUE(peer::RunUntil([&] {
      return messages.Text().find(R"(remove: ID="velor-start_TIME1")") != std::string::npos;
    })) << title;
  }
}

}  // namespace
