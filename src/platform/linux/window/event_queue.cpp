// Steps and timers of GLib's main loop.
//
// SPDX-License-Identifier: MIT
#include "platform/shared/window/event_queue.h"

#include <glib.h>

#include <utility>

#include "core/attempt.h"

namespace platform {
namespace {

using Step = std::function<void()>;

template <gboolean kAnswer>
gboolean Run(gpointer step) {
  core::Attempt(*static_cast<Step*>(step));
  return kAnswer;
}

void Delete(gpointer step) { delete static_cast<Step*>(step); }

}  // namespace

void Post(Step step) {
  g_idle_add_full(G_PRIORITY_DEFAULT, Run<G_SOURCE_REMOVE>, new Step(std::move(step)), Delete);
}

// The source keeps its step while it runs, so the step may end the source.
unsigned StartTimer(unsigned milliseconds, Step step) {
  return g_timeout_add_full(G_PRIORITY_DEFAULT, milliseconds, Run<G_SOURCE_CONTINUE>,
                            new Step(std::move(step)), Delete);
}

void StopTimer(unsigned timer) { g_source_remove(timer); }

}  // namespace platform
