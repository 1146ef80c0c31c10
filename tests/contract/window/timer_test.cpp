// Promises of Timer in platform/window/form.h.
//
// SPDX-License-Identifier: MIT
#include <optional>
#include <stdexcept>

#include "tests/contract/window_case.h"

namespace {

using Timer = WindowCase;

TEST_F(Timer, IsMadeDisabled) {
  int ticks = 0, others = 0;
  platform::Timer timer(5, [&] { ++ticks; });
  platform::Timer other(50, [&] { ++others; });
  EXPECT_FALSE(timer.Enabled());
  other.SetEnabled(true);
  ASSERT_TRUE(peer::RunUntil([&] { return others > 0; }));
  EXPECT_EQ(ticks, 0);
}

TEST_F(Timer, TicksAgainAndAgainWhileItIsEnabled) {
  int ticks = 0;
  platform::Timer timer(5, [&] { ++ticks; });
  timer.SetEnabled(true);
  EXPECT_TRUE(timer.Enabled());
  EXPECT_EQ(ticks, 0);
  EXPECT_TRUE(peer::RunUntil([&] { return ticks == 3; }));
}

TEST_F(Timer, StopsWhenItIsDisabledByItsOwnHandler) {
  int ticks = 0, others = 0;
  platform::Timer other(50, [&] { ++others; });
  platform::Timer timer(5, [&] {
    ++ticks;
    timer.SetEnabled(false);
  });
  timer.SetEnabled(true);
  ASSERT_TRUE(peer::RunUntil([&] { return ticks == 1; }));
  EXPECT_FALSE(timer.Enabled());
  other.SetEnabled(true);
  ASSERT_TRUE(peer::RunUntil([&] { return others > 0; }));
  EXPECT_EQ(ticks, 1);
  timer.SetEnabled(true);
  EXPECT_TRUE(peer::RunUntil([&] { return ticks == 2; }));
}

TEST_F(Timer, MayBeDestroyedByItsOwnHandler) {
  int ticks = 0, others = 0;
  platform::Timer other(50, [&] { ++others; });
  std::optional<platform::Timer> timer;
  timer.emplace(5, [&] {
    ++ticks;
    timer.reset();
  });
  timer->SetEnabled(true);
  ASSERT_TRUE(peer::RunUntil([&] { return ticks == 1; }));
  other.SetEnabled(true);
  ASSERT_TRUE(peer::RunUntil([&] { return others > 0; }));
  EXPECT_EQ(ticks, 1);
}

TEST_F(Timer, GoesOnWhenItsHandlerThrows) {
  int ticks = 0;
  platform::Timer timer(5, [&] {
    ++ticks;
    throw std::runtime_error("no");
  });
  timer.SetEnabled(true);
  EXPECT_TRUE(peer::RunUntil([&] { return ticks == 2; }));
}

}  // namespace
