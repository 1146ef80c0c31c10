// The single user-interface thread's loop. A back end's entry point calls modMain::Main and then
// RunEventLoop.
//
// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

/// Handles events until no form is loaded.
void RunEventLoop();

/// Handles the events that are waiting, and returns without waiting for more.
void ProcessPendingEvents();

}  // namespace platform
