// What GLib calls back: signal connections, which let no exception out and end with their owner.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <glib-object.h>

#include <functional>
#include <type_traits>
#include <utility>

#include "core/attempt.h"
#include "platform/linux/g_ref.h"

namespace platform {

/// A signal connection that lasts as long as this object. It may end inside its own handler: the
/// library keeps the handler until the emission is over.
class SignalConnection {
 public:
  SignalConnection() = default;
  SignalConnection(GRef<GObject> instance, gulong id) : mInstance(std::move(instance)), mId(id) {}
  SignalConnection(SignalConnection&& other) noexcept
      : mInstance(std::move(other.mInstance)), mId(std::exchange(other.mId, 0)) {}
  SignalConnection& operator=(SignalConnection&& other) noexcept {
    std::swap(mInstance, other.mInstance);
    std::swap(mId, other.mId);
    return *this;
  }
  ~SignalConnection() {
    // A destroyed widget has dropped its connections already.
    if (mId != 0 && g_signal_handler_is_connected(mInstance.Get(), mId))
      g_signal_handler_disconnect(mInstance.Get(), mId);
  }

 private:
  GRef<GObject> mInstance;
  gulong mId = 0;
};

namespace detail {

template <class Signature>
struct SignalCall;

template <class Result, class... Arguments>
struct SignalCall<Result(Arguments...)> {
  using Handler = std::function<Result(Arguments...)>;

  static Result Run(gpointer, Arguments... arguments, gpointer handler) {
    const Handler& call = *static_cast<Handler*>(handler);
    if constexpr (std::is_void_v<Result>) {
      core::Attempt([&] { call(arguments...); });
    } else {
      return core::AttemptOr(Result{}, [&] { return call(arguments...); });
    }
  }
  static void Delete(gpointer handler, GClosure*) { delete static_cast<Handler*>(handler); }
};

}  // namespace detail

/// Connects a handler of the signal's own signature, without the instance:
///
///     Connect<gboolean(GdkEvent*)>(window, "delete-event", [](GdkEvent*) { return TRUE; });
///
/// A handler that throws answers zero, which to GTK is "not handled".
template <class Signature>
[[nodiscard]] SignalConnection Connect(gpointer instance, const char* signal,
                                       typename detail::SignalCall<Signature>::Handler handler) {
  using Call = detail::SignalCall<Signature>;
  const gulong id = g_signal_connect_data(instance, signal, G_CALLBACK(&Call::Run),
                                          new typename Call::Handler(std::move(handler)),
                                          &Call::Delete, static_cast<GConnectFlags>(0));
  return {GRef<GObject>::Share(G_OBJECT(instance)), id};
}

}  // namespace platform
