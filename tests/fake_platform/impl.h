// What stands behind the handles of the fake platform.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/window/control.h"
#include "platform/window/form.h"
#include "tests/fake_platform/fake.h"

struct platform::Control::Impl {
  std::shared_ptr<fake::Control> control;
};

namespace fake {

struct ScheduledTimer {
  int milliseconds;
  int due;
  bool enabled = false;
  std::function<void()> handler;
};

/// Timers of the world, in the order of making; the ones that are gone are expired.
std::vector<std::weak_ptr<ScheduledTimer>>& Timers();
bool IsTimerEnabled();

/// Tells a handler, if there is one. As on the systems, what it throws ends here, and it may
/// replace itself meanwhile.
void Tell(std::function<void()> handler);

}  // namespace fake
