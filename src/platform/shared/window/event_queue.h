// Steps that each back end's event loop runs later, and handlers that may end their owner.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "core/attempt.h"

namespace platform {

/// Calls `step` once from the event loop of the user-interface thread, also from one that the
/// system runs while a message is shown. Any thread may call it.
void Post(std::function<void()> step);

/// Posts `call(object)`. Nothing is called if the object has been destroyed by then; during the
/// call it is kept.
template <class Object, std::invocable<Object&> Call>
void PostTo(std::weak_ptr<Object> object, Call call) {
  Post([object = std::move(object), call = std::move(call)] {
    if (const auto kept = object.lock()) call(*kept);
  });
}

/// Calls `step` every `milliseconds` from the event loop until StopTimer. Returns the timer's
/// number, which is never 0. A step may stop its own timer.
unsigned StartTimer(unsigned milliseconds, std::function<void()> step);
void StopTimer(unsigned timer);

/// Calls a handler, if there is one. By value: it may replace itself or destroy its owner.
inline void Notify(std::function<void()> handler) {  // NOLINT(performance-*)
  if (handler) core::Attempt(std::move(handler));
}

}  // namespace platform
