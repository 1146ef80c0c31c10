// Timers, and steps that are run from the event loop. They go through a window that nobody sees, so
// that they are run as well while the system's own loop runs, as it does while a message is shown
// or the window is dragged.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "platform/shared/window/event_queue.h"

namespace platform {

/// Calls `step` again and again until StopTimer; answers the timer's number, which is never 0.
unsigned StartTimer(unsigned milliseconds, std::function<void()> step);
void StopTimer(unsigned timer);

}  // namespace platform
