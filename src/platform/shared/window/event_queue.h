// Steps that are run later, by each back end's event loop.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace platform {

/// Calls `step` once from the event loop of the user-interface thread, also from one that the
/// system runs while a message is shown. Any thread may call it.
void Post(std::function<void()> step);

}  // namespace platform
