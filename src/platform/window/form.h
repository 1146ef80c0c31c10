// A top-level window and its timer. Sizes are twips (1440 to the inch) of the client area.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/window/control.h"

namespace platform {

/// Call order: construct, AddControl, set the handlers, Show. The event loop runs while a form is
/// loaded, which it is from its construction to the end of Unload. What a handler throws ends
/// there: the form goes on as if it had returned.
class Form {
 public:
  Form(std::string name, float clientWidth, float clientHeight);
  ~Form();
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  /// Adds a control with its design size; its place is 0, 0 until it is set. Kinds: "PictureBox"
  /// (shows the program's logo), "WebBrowser", "CommandButton", "Label". Throws for another kind.
  Control AddControl(const std::string& kind, const std::string& name, float width, float height);

  /// In the order of adding, which is the tab order too.
  std::vector<Control> Controls() const;

  std::string Name() const;
  std::string Caption() const;
  void SetCaption(const std::string& caption);
  void SetFont(const Font& font);
  /// Mirrors the window: controls count from the right edge.
  void SetRightToLeft(bool rightToLeft);

  float ClientWidth() const;
  float ClientHeight() const;
  bool IsMinimised() const;

  /// Modeless, activated; the resize handler is told before the window is seen.
  void Show();
  void Hide();

  /// Tells the unload handler, then takes the window off the screen and ends it; the close button
  /// does the same. While the form is unloading, or has, this does nothing.
  void Unload();

  void OnResize(std::function<void()> handler);
  /// Told once, before the window goes; it may show a message. The form cannot be kept from going.
  void OnUnload(std::function<void()> handler);
  /// Told from the event loop after the window has gone, and before RunEventLoop returns for it:
  /// the owner may destroy the form in it.
  void OnUnloaded(std::function<void()> handler);

  struct Impl;

 private:
  std::shared_ptr<Impl> mImpl;
};

/// Twips in one pixel of the screen as it is now; 15 at 96 dots per inch.
float TwipsPerPixelX();
float TwipsPerPixelY();

/// Calls its handler from the event loop every `milliseconds` while it is enabled; made disabled.
class Timer {
 public:
  Timer(int milliseconds, std::function<void()> handler);
  ~Timer();
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;

  bool Enabled() const;
  void SetEnabled(bool enabled);

 private:
  struct Impl;
  std::unique_ptr<Impl> mImpl;
};

}  // namespace platform
