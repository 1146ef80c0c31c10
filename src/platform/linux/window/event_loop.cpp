// The event loop: GLib's, since GTK, WebKit and the downloads all live on it.
//
// SPDX-License-Identifier: MIT
#include "platform/window/event_loop.h"

#include <glib.h>

#include "platform/shared/window/form_impl.h"

namespace platform {
namespace {

/// Enough for every event that can be waiting, and an end where a source is ready again each time.
constexpr int kMostEventsAtOnce = 1000;

}  // namespace

void RunEventLoop() {
  while (LoadedForms() > 0) g_main_context_iteration(nullptr, TRUE);
}

void ProcessPendingEvents() {
  for (int i = 0; i < kMostEventsAtOnce && g_main_context_iteration(nullptr, FALSE); ++i) {
  }
}

}  // namespace platform
