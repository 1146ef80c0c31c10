// Runs the window cases on GTK and WebKit, and stands in for further starts of the program: given a
// role, the same program file does what a second instance would.
//
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <cstdio>
#include <string>

#include "platform/linux/window/toolkit.h"
#include "tests/contract/linux/window_roles.h"

int main(int argc, char** argv) {
  if (argc > 1 && std::string(argv[1]).starts_with("--role=")) return roles::Play(argv[1]);
  testing::InitGoogleTest(&argc, argv);
  if (!platform::StartToolkit()) {
    std::fputs("no display: run this through scripts/with-display\n", stderr);
    return 1;
  }
  // What GTK, WebKit and GLib find wrong in how they are used is a failure, not a line in the log.
  g_log_set_always_fatal(static_cast<GLogLevelFlags>(G_LOG_LEVEL_CRITICAL | G_LOG_FATAL_MASK));
  return RUN_ALL_TESTS();
}
