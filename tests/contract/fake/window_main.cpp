// Runs the window cases on the fake, so that it cannot drift from what the systems promise.
//
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
