// The inside of a form as far as it is the same on every system: its controls, its handlers and the
// order of events from Show to the end. A back end's NativeForm derives from it.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/shared/window/control_impl.h"
#include "platform/window/form.h"

namespace platform {

/// In the units of the native window, from its leading edge.
struct PixelBounds {
  int left;
  int top;
  int width;
  int height;
};

struct Form::Impl : std::enable_shared_from_this<Form::Impl> {
  explicit Impl(std::string name) : name(std::move(name)) {}
  virtual ~Impl() = default;
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  // The native window. Except HasWindow and the size, called only while there is one.
  virtual bool HasWindow() const = 0;
  virtual float ClientWidth() const = 0;
  virtual float ClientHeight() const = 0;
  virtual bool IsMinimised() const = 0;
  virtual void SetTitle(const std::string& title) = 0;
  virtual void SetFont(const Font&) {}
  virtual void Mirror(bool rightToLeft) = 0;
  /// Puts a new control in the window; throws for a kind that there is none of.
  virtual std::shared_ptr<Control::Impl> MakeControl(const std::string& kind,
                                                     const std::string& controlName) = 0;
  /// The control's bounds have changed.
  virtual void PlaceControl(Control::Impl& control) = 0;
  /// Shows and activates the window, its controls in place.
  virtual void Present() = 0;
  virtual void Conceal() = 0;
  /// From here on no callback of the window reaches the form; calls DetachControls before the
  /// window is destroyed.
  virtual void DestroyNativeWindow() = 0;

  /// The form is loaded from here to the end of Unload, or to Release.
  void Load();
  void Show();
  void Unload();
  /// The Form is being destroyed.
  void Release();
  Control AddControl(const std::string& kind, const std::string& controlName, float width,
                     float height);
  /// Throws std::logic_error when the window was destroyed.
  void RequireWindow() const;

  const std::string name;
  std::string caption;
  std::vector<std::shared_ptr<Control::Impl>> controls;
  std::function<void()> onResize;
  std::function<void()> onUnload;
  std::function<void()> onUnloaded;

 protected:
  void DetachControls();

 private:
  void Close();
  void EndLoaded();

  bool mUnloading = false;
  bool mLoaded = false;
};

/// The form of this back end; throws when the system makes no window.
std::shared_ptr<Form::Impl> MakeForm(const std::string& name, float clientWidth,
                                     float clientHeight);

/// How many forms are loaded, including those whose unloaded handler has not been called.
int LoadedForms();

/// `place` with its edges, not its size, rounded by `pixels`: controls that meet in twips meet on
/// the screen.
template <class Round>
PixelBounds RoundedEdges(const Place& place, Round pixels) {
  const int left = pixels(place.left);
  const int top = pixels(place.top);
  return {left, top, pixels(static_cast<double>(place.left) + place.width) - left,
          pixels(static_cast<double>(place.top) + place.height) - top};
}

}  // namespace platform
