// The roles of other processes.
//
// SPDX-License-Identifier: MIT
#include "tests/contract/linux/window_roles.h"

#include <gtk/gtk.h>

#include <filesystem>
#include <iostream>

#include "core/attempt.h"
#include "platform/linux/window/toolkit.h"
#include "platform/system/program.h"
#include "platform/window/form.h"

namespace roles {
namespace {

void Say(const std::string& line) { std::cout << line << std::endl; }

/// Stays until it is dismissed: until its input ends.
void Stay() {
  std::string line;
  std::getline(std::cin, line);
}

int AskForInstance() {
  Say(platform::IsPreviousInstanceRunning() ? "second" : "first");
  Stay();
  return 0;
}

/// Starts a program that goes on after this one has ended.
int AskForInstanceAndLeaveAChild() {
  Say(platform::IsPreviousInstanceRunning() ? "second" : "first");
  const char* child[] = {"/bin/sleep", "20", nullptr};
  GPid pid = 0;
  g_spawn_async(nullptr, const_cast<char**>(child), nullptr, G_SPAWN_DEFAULT, nullptr, nullptr,
                &pid, nullptr);
  Say(std::to_string(pid));
  Stay();
  return 0;
}

int ShowWindow(const std::string& title) {
  if (!platform::StartToolkit()) return 1;
  platform::Form form("other", 3000, 3000);
  form.SetCaption(title);
  form.Show();
  GMainLoop* loop = g_main_loop_new(nullptr, FALSE);
  g_io_add_watch(
      g_io_channel_unix_new(0), static_cast<GIOCondition>(G_IO_IN | G_IO_HUP),
      [](GIOChannel*, GIOCondition, gpointer data) -> gboolean {
        g_main_loop_quit(static_cast<GMainLoop*>(data));
        return FALSE;
      },
      loop);
  Say("shown");
  g_main_loop_run(loop);
  return 0;
}

int Activate(const std::string& title) {
  if (!platform::StartToolkit()) return 1;
  const bool activated = core::Attempt([&] { platform::ActivateWindow(title); });
  Say(activated ? "activated" : "none");
  return 0;
}

}  // namespace

int Play(const std::string& argument) {
  const std::string role = argument.substr(argument.find('=') + 1);
  const std::string what = role.substr(0, role.find(':'));
  const std::string detail = what == role ? "" : role.substr(what.size() + 1);
  if (what == "instance") return AskForInstance();
  if (what == "instance-with-child") return AskForInstanceAndLeaveAChild();
  if (what == "window") return ShowWindow(detail);
  if (what == "activate") return Activate(detail);
  return 2;
}

std::string OwnProgram() { return std::filesystem::read_symlink("/proc/self/exe").string(); }

Player::Player(const std::string& role, const std::string& program) {
  const std::string argument = "--role=" + role;
  platform::GErrorCheck error;
  mProcess = platform::GRef<GSubprocess>::Adopt(g_subprocess_new(
      static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDIN_PIPE | G_SUBPROCESS_FLAGS_STDOUT_PIPE),
      error.Out(), program.c_str(), argument.c_str(), nullptr));
  error.Check();
  mOutput = platform::GRef<GDataInputStream>::Adopt(
      g_data_input_stream_new(g_subprocess_get_stdout_pipe(mProcess.Get())));
}

Player::~Player() { Kill(); }

std::string Player::ReadLine() {
  platform::GErrorCheck error;
  const platform::GMemory<char> line(
      g_data_input_stream_read_line(mOutput.Get(), nullptr, nullptr, error.Out()));
  error.Check();
  return platform::TextOf(line.get());
}

void Player::Dismiss() {
  g_output_stream_close(g_subprocess_get_stdin_pipe(mProcess.Get()), nullptr, nullptr);
  g_subprocess_wait(mProcess.Get(), nullptr, nullptr);
}

void Player::Kill() {
  g_subprocess_force_exit(mProcess.Get());
  g_subprocess_wait(mProcess.Get(), nullptr, nullptr);
}

}  // namespace roles
