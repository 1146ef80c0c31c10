// Ownership of what GLib gives out: references, memory, errors. Knows GObject only, so that every
// file of this folder can use it.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <glib-object.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

namespace platform {

/// One counted reference to a GObject; throws when an empty one is used.
template <class T>
class GRef {
 public:
  GRef() = default;
  GRef(const GRef& other) : mObject(other.mObject) {
    if (mObject) g_object_ref(mObject);
  }
  GRef(GRef&& other) noexcept : mObject(std::exchange(other.mObject, nullptr)) {}
  GRef& operator=(GRef other) noexcept {
    std::swap(mObject, other.mObject);
    return *this;
  }
  ~GRef() {
    if (mObject) g_object_unref(mObject);
  }

  /// Takes over a reference that the caller owns.
  static GRef Adopt(T* object) {
    GRef result;
    result.mObject = object;
    return result;
  }
  /// Adds a reference; a floating one (a fresh widget) is taken over.
  static GRef Share(T* object) { return Adopt(object ? RefSink(object) : nullptr); }

  T* Get() const {
    if (!mObject) throw std::logic_error("used after it has gone");
    return mObject;
  }
  explicit operator bool() const { return mObject != nullptr; }

 private:
  static T* RefSink(T* object) { return static_cast<T*>(g_object_ref_sink(object)); }

  T* mObject = nullptr;
};

struct GFree {
  void operator()(void* memory) const { g_free(memory); }
};
/// Memory that GLib allocated; null where it gave none.
template <class T>
using GMemory = std::unique_ptr<T, GFree>;

/// The text, or an empty one for null.
inline std::string TextOf(const char* text) { return text ? text : ""; }

/// The one place where a GError becomes an exception: pass it on with `&error`, then check.
///
///     GErrorCheck error;
///     GMemory<char> uri(g_filename_to_uri(path, nullptr, error.Out()));
///     error.Check();
class GErrorCheck {
 public:
  GErrorCheck() = default;
  GErrorCheck(const GErrorCheck&) = delete;
  GErrorCheck& operator=(const GErrorCheck&) = delete;
  ~GErrorCheck() { g_clear_error(&mError); }

  GError** Out() { return &mError; }
  void Check() const {
    if (mError) throw std::runtime_error(mError->message);
  }

 private:
  GError* mError = nullptr;
};

}  // namespace platform
