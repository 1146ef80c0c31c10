// Steps that GLib's main loop runs.
//
// SPDX-License-Identifier: MIT
#include "platform/shared/window/event_queue.h"

#include <glib.h>

#include <utility>

#include "platform/linux/signals.h"

namespace platform {

void Post(std::function<void()> step) {
  g_idle_add_full(
      G_PRIORITY_DEFAULT,
      [](gpointer data) -> gboolean {
        Guard(*static_cast<std::function<void()>*>(data));
        return G_SOURCE_REMOVE;
      },
      new std::function<void()>(std::move(step)),
      [](gpointer data) { delete static_cast<std::function<void()>*>(data); });
}

}  // namespace platform
