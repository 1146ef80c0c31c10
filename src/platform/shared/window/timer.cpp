// The timer: when it runs.
//
// SPDX-License-Identifier: MIT
#include <utility>

#include "platform/shared/window/event_queue.h"
#include "platform/window/form.h"

namespace platform {

struct Timer::Impl {
  unsigned milliseconds;
  std::function<void()> handler;
  unsigned running = 0;
};

Timer::Timer(int milliseconds, std::function<void()> handler)
    : mImpl(std::make_unique<Impl>(Impl{static_cast<unsigned>(milliseconds), std::move(handler)})) {
}

Timer::~Timer() { SetEnabled(false); }

bool Timer::Enabled() const { return mImpl->running != 0; }

void Timer::SetEnabled(bool enabled) {
  if (enabled == Enabled()) return;
  if (enabled) {
    mImpl->running = StartTimer(mImpl->milliseconds, mImpl->handler);
  } else {
    StopTimer(std::exchange(mImpl->running, 0));
  }
}

}  // namespace platform
