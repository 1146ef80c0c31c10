// Promises of platform/window/event_loop.h, and of platform/system/program.h about instances and
// their windows.
//
// SPDX-License-Identifier: MIT
#include "platform/system/program.h"
#include "tests/contract/window_case.h"

namespace {

using EventLoop = WindowCase;

TEST_F(EventLoop, HandlesWaitingEventsWithoutWaitingForMore) {
  platform::Timer timer(1000 * 3600, [] {});
  timer.SetEnabled(true);
  platform::ProcessPendingEvents();
  SUCCEED();  // a loop that waits for the timer runs into the time limit
}

using Instance = WindowCase;

TEST_F(Instance, IsTheFirstWhereNoOtherRunsHoweverOftenItAsks) {
  EXPECT_FALSE(platform::IsPreviousInstanceRunning());
  EXPECT_FALSE(platform::IsPreviousInstanceRunning());
}

TEST_F(Instance, CannotActivateAWindowThatDoesNotExist) {
  EXPECT_ANY_THROW(platform::ActivateWindow("A title that no window has"));
}

}  // namespace
