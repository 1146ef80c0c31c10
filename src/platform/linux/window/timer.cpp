// The timer, on GLib's event loop.
//
// SPDX-License-Identifier: MIT
#include <glib.h>

#include <utility>

#include "platform/linux/signals.h"
#include "platform/window/form.h"

namespace platform {

struct Timer::Impl {
  guint milliseconds;
  std::function<void()> handler;
  guint source = 0;
};

Timer::Timer(int milliseconds, std::function<void()> handler)
    : mImpl(std::make_unique<Impl>(Impl{static_cast<guint>(milliseconds), std::move(handler)})) {}

Timer::~Timer() { SetEnabled(false); }

bool Timer::Enabled() const { return mImpl->source != 0; }

void Timer::SetEnabled(bool enabled) {
  if (enabled == Enabled()) return;
  if (!enabled) {
    g_source_remove(std::exchange(mImpl->source, 0));
    return;
  }
  // The source owns a copy of the handler and keeps it while it runs, so the handler may disable or
  // even destroy its timer.
  mImpl->source = g_timeout_add_full(
      G_PRIORITY_DEFAULT, mImpl->milliseconds,
      [](gpointer data) -> gboolean {
        Guard(*static_cast<std::function<void()>*>(data));
        return G_SOURCE_CONTINUE;
      },
      new std::function<void()>(mImpl->handler),
      [](gpointer data) { delete static_cast<std::function<void()>*>(data); });
}

}  // namespace platform
