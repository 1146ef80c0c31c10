// Runs the window cases on Windows, or on Wine, and stands in for a second start of the program:
// given a role, the same program file does what a second instance would.
//
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string_view>

#include "platform/system/program.h"
#include "platform/win32/com.h"

int main(int argc, char** argv) {
  if (argc > 1 && std::string_view(argv[1]) == "--role=second-instance") {
    return platform::IsPreviousInstanceRunning() ? 0 : 1;
  }
  testing::InitGoogleTest(&argc, argv);
  platform::EnterApartment();
  return RUN_ALL_TESTS();
}
